#include <climits>
#include <sstream>

#include "tests/support/ExpectFatal.h"
#include "tests/support/FlushCounter.h"
#include "tests/support/SmallSparse.h"

namespace kestol {

namespace {

TEST(SparseSolver, DefaultsAimAtTenDigitsWithinTenIterationsPerDegree) {
  const SparseSolver small(30);
  EXPECT_EQ(small.NumDegrees(), 30);
  EXPECT_EQ(small.tolerance1, 1e-10);
  EXPECT_EQ(small.tolerance2, 1e-6);
  EXPECT_EQ(small.MaxIterations, 1000);
  EXPECT_EQ(SparseSolver(101).MaxIterations, 1010);
  EXPECT_EQ(SparseSolver(INT_MAX / 5).MaxIterations, INT_MAX);
}

TEST(SparseSolver, RoomIsForTheNodeAndItsNeighbours) {
  SparseSolver K(12);
  K.AddNodePair(1, 2, 3);
  K.AddNodePair(2, 1, 3);
  K.AddNodePair(2, 4, 3);
  K.AddNodePair(2, 2, 3);  // a node is its own neighbour anyway
  K.Allocate(3);
  EXPECT_EQ(K.Matrix().Length(0), 6);
  EXPECT_EQ(K.Matrix().Length(4), 9);
  EXPECT_EQ(K.Matrix().Length(8), 3);
  EXPECT_EQ(K.Matrix().Length(11), 6);
  EXPECT_EQ(K.Matrix().nnz, 3 * (6 + 9 + 3 + 6));
}

TEST(SparseSolver, NodesOfThreeAndSixDegreesAreStoredInBlocks) {
  for (const int dofs : {1, 2, 3, 6}) {
    SparseSolver K(4 * dofs);
    K.Allocate(dofs);
    EXPECT_EQ(K.Matrix().blockSize, dofs < 3 ? 1 : dofs);
  }
}

TEST(SparseSolver, RefusesThe201stNeighbourOfANode) {
  SparseSolver K(3 * 300);
  for (int other = 2; other <= 201; ++other) K.AddNodePair(1, other, 3);
  K.AddNodePair(1, 201, 3);  // known already
  EXPECT_FATAL(K.AddNodePair(1, 202, 3),
               "error: increase parameter MAXNUMNODESAROUNDNODE node=1\n");
  SparseSolver second(3 * 300);
  for (int other = 1; other <= 200; ++other) second.AddNodePair(other, 250, 3);
  EXPECT_FATAL(second.AddNodePair(201, 250, 3),
               "error: increase parameter MAXNUMNODESAROUNDNODE node=250\n");
}

TEST(SparseSolver, BlocksOffTheDiagonalAreMirrored) {
  Chain K(3);
  EXPECT_EQ(K.Entry(1, 2), -1.0);
  EXPECT_EQ(K.Entry(2, 1), -1.0);
  EXPECT_EQ(K.Entry(2, 2), 2.0);
}

TEST(SparseSolver, EntryIsAStoredPlaceOrRefused) {
  Chain K(3);
  K.Entry(1, 1) += 4.0;
  EXPECT_EQ(K.Entry(1, 1), 6.0);
  EXPECT_FATAL(K.Entry(1, 3),
               "Sparse Matrix element (0,2) not in sparse structure -- cannot assign.");
  EXPECT_FATAL(K.Entry(4, 1), "Sparse Matrix accessing exception -- out of bounds.");
}

TEST(SparseSolver, AFreeDegreeWithoutElementsHasNoEntry) {
  SparseSolver K(3);
  K.Allocate(3);
  EXPECT_FATAL(K.Entry(2, 2),
               "Sparse Matrix element (1,1) not in sparse structure -- cannot assign.");
}

TEST(SparseSolver, ChainWithUnitEndLoadIsLinear) {
  Chain K(10);
  ReaVecT f = Filled(10, 0.0);
  f(10) = 1.0;
  EXPECT_EQ(K.Solve(f, nullptr), 0);
  for (int i = 1; i <= 10; ++i) EXPECT_NEAR(f(i), i, 1e-9);
}

TEST(SparseSolver, PrescribedValuesComeBackExactly) {
  for (int dofs : {1, 2, 3, 6}) {
    const GridModel grid = SmallGrid(dofs);
    SparseSolver K(grid.NumDegrees());
    grid.Structure(K);
    grid.Assemble(K);
    ReaVecT f = Filled(grid.NumDegrees(), 0.0);
    grid.Hold(K, 0.005, f);
    ASSERT_EQ(K.Solve(f, nullptr), 0) << dofs;
    for (int i = 1; i <= 12 * dofs; ++i) EXPECT_EQ(f(i), 0.005);
    // A rigid shift of all degrees strains nothing.
    for (int i = 1; i <= f.n; ++i) EXPECT_NEAR(f(i), 0.005, 1e-10) << dofs;
  }
}

TEST(SparseSolver, PrescribeReplacesTheRowAndLeavesTheColumn) {
  Chain K(3);
  ReaVecT f = Filled(3, 7.0);
  K.Prescribe(2, 0.25, f);
  EXPECT_EQ(K.Entry(2, 2), 1.0);
  EXPECT_EQ(K.Entry(2, 1), 0.0);
  EXPECT_EQ(K.Entry(2, 3), 0.0);
  EXPECT_EQ(K.Entry(1, 2), -1.0);
  EXPECT_EQ(K.Entry(3, 2), -1.0);
  EXPECT_EQ(f(1), 7.0);  // Deliberate: the right-hand side is not corrected
  EXPECT_EQ(f(2), 0.25);
  EXPECT_EQ(f(3), 7.0);
  EXPECT_EQ(K.Start()[1], 0.25);
}

TEST(SparseSolver, PrescribedValuesOutrankTheStartingVector) {
  Chain K(3);
  ReaVecT f = Filled(3, 0.0);
  K.SetInitialValues(Filled(3, 1.0));
  K.Prescribe(3, 6.0, f);
  ASSERT_EQ(K.Solve(f, nullptr), 0);
  EXPECT_EQ(f(3), 6.0);
  EXPECT_NEAR(f(1), 2.0, 1e-11);
  EXPECT_NEAR(f(2), 4.0, 1e-11);
}

TEST(SparseSolver, ASecondAssemblyOnTheSameStructureGivesTheReactions) {
  const GridModel grid = SmallGrid(3);
  ReaVecT f;
  Held K(grid, f, 1e-12, 1e-6, 1000);
  ASSERT_EQ(K.Solve(f, nullptr), 0);
  K.SetZero();
  grid.Assemble(K);
  const int held = grid.nx * grid.ny * 3;
  for (int d = 1; d <= 3; ++d) {
    double sum = 0.0;
    for (int i = d; i <= held; i += 3) sum += K.RowTimesVector(i, f);
    EXPECT_NEAR(sum, -(grid.NumNodes() - 12.0), 1e-8);  // the unit loads of the free nodes
    EXPECT_NEAR(K.RowTimesVector(held + d, f), 1.0, 1e-8);
  }
}

TEST(SparseSolver, PrintsItsSizeAndTheEntries) {
  Chain K(2);
  std::ostringstream text;
  K.Print(text);
  EXPECT_EQ(text.str(),
            "\nprinting Sparse Matrix size=2x2\n(0,0)=2    (0,1)=-1\n(1,1)=1    (1,0)=-1\n\n");
}

TEST(SparseSolver, TimesIsAllRows) {
  const GridModel grid = SmallGrid(3);
  ReaVecT x;
  const Held K(grid, x, 1e-12, 1e-6, 1000);
  for (int i = 1; i <= x.n; ++i) x(i) = 1.0 / i;
  ReaVecT y;
  K.Times(x, y);
  ASSERT_EQ(y.n, x.n);
  for (int i = 1; i <= x.n; ++i) EXPECT_EQ(y(i), K.RowTimesVector(i, x));
}

TEST(SparseSolver, RefusesADenseCopyAPictureAndAShift) {
  Chain K(2);
  EXPECT_FATAL(K.ScaleAndShift(Filled(2, 1.0), 1.0),
               "error SparseSolver::ScaleAndShift not implemented\n");
  Matriu dense;
  std::ostringstream picture;
  EXPECT_FATAL(K.CopyFromYouToMat(dense), "error SparseSolver::CopyFromYouToMat not implemented\n");
  EXPECT_FATAL(K.WriteForVemo(picture), "error SparseSolver::WriteForVemo not implemented\n");
}

TEST(SparseSolver, StorageReportCountsTwelveBytesAnEntryAndFourARow) {
  const GridModel grid{12, 11, 10, 6};
  SparseSolver K(grid.NumDegrees());
  grid.Structure(K);
  const int nnz = K.Matrix().nnz;
  FlushCounter info;
  K.PrintInfo(info);
  char memory[80];
  std::snprintf(memory, sizeof memory, "Amount of memory= %.1fMb\n\n",
                (12.0 * nnz + 4.0 * 7920) / 1048576);
  EXPECT_EQ(info.Text(),
            "\nINFORMATION ABOUT STIFFNESS MATRIX\n"
            "Sparse matrix storage with Conjugate gradients\n"
            "Degrees of freedom= 7920\n"
            "Total number of positions= " +
                std::to_string(nnz) + "\n" + memory);
  EXPECT_GE(info.Flushes(), 1);
}

}  // namespace

}  // namespace kestol
