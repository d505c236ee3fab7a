#include <climits>
#include <cmath>
#include <sstream>

#include "algebra/ConjugateGradient.h"
#include "algebra/ILUPreconditioner.h"
#include "algebra/Matriu.h"
#include "algebra/Preconditioner.h"
#include "algebra/ReaVecT.h"
#include "algebra/SparseSolver.h"
#include "tests/support/FatalExit.h"
#include "tests/support/FlushCounter.h"
#include "tests/support/GridModel.h"
#include "tests/support/ScalarSparse.h"

namespace {

Matriu Single(double value) {
  Matriu M(1, 1);
  M(1, 1) = value;
  return M;
}

Matriu Scaled(int n, double value) {
  Matriu M(n, n);
  M.Fill(0.0);
  for (int i = 1; i <= n; ++i) M(i, i) = value;
  return M;
}

ReaVecT Filled(int n, double value) {
  ReaVecT v(n);
  v.Fill(value);
  return v;
}

/// Springs of stiffness 1 from node to node, one degree each, the first node tied to the ground.
struct Chain : SparseSolver {
  explicit Chain(int nodes, double target = 1e-12, double accepted = 1e-6, int limit = 100)
      : SparseSolver(nodes, target, accepted, limit) {
    for (int i = 1; i < n; ++i) AddNodePair(i, i + 1, 1);
    Allocate(1);
    AddBlock(1, 1, Single(1.0));
    for (int i = 1; i < n; ++i) {
      AddBlock(i, i, Single(1.0));
      AddBlock(i + 1, i + 1, Single(1.0));
      AddBlock(i, i + 1, Single(-1.0));
    }
  }
};

/// A model whose incomplete factors are not exact.
GridModel SmallGrid(int dofs) {
  return {4, 3, 3, dofs};
}

/// The grid, held at its lower plane, and unit loads on all free degrees.
struct Held : SparseSolver {
  Held(const GridModel& grid, ReaVecT& rhs, double target, double accepted, int limit)
      : SparseSolver(grid.NumDegrees(), target, accepted, limit) {
    grid.Structure(*this);
    grid.Assemble(*this);
    rhs = Filled(n, 1.0);
    grid.Hold(*this, 0.0, rhs);
  }
};

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
  EXPECT_EQ(K.matrix->Length(0), 6);
  EXPECT_EQ(K.matrix->Length(4), 9);
  EXPECT_EQ(K.matrix->Length(8), 3);
  EXPECT_EQ(K.matrix->Length(11), 6);
  EXPECT_EQ(K.matrix->nnz, 3 * (6 + 9 + 3 + 6));
  EXPECT_TRUE(K.adjacency.empty());
}

TEST(SparseSolver, NodesOfThreeAndSixDegreesAreStoredInBlocks) {
  for (const int dofs : {1, 2, 3, 6}) {
    SparseSolver K(4 * dofs);
    K.Allocate(dofs);
    EXPECT_EQ(K.matrix->blockSize, dofs < 3 ? 1 : dofs);
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
  EXPECT_EQ(K.x[1], 0.25);
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

TEST(SparseSolver, TheSolutionAsStartingVectorNeedsNoIteration) {
  Chain K(4);
  ReaVecT f = Filled(4, 0.0);
  f(4) = 1.0;
  ReaVecT start(4);
  for (int i = 1; i <= 4; ++i) start(i) = i;
  K.SetInitialValues(start);
  start.Fill(99.0);  // the solver has its own copy
  std::ostringstream info;
  ASSERT_EQ(K.Solve(f, &info), 0);
  EXPECT_EQ(info.str(), "iteration number 0 OK resid=0 tol=1e-12\n");
  EXPECT_EQ(f(4), 4.0);
}

TEST(SparseSolver, AllocateClearsTheStartOnlyWhereThereIsNone) {
  SparseSolver cleared(2);
  cleared.Allocate(1);
  EXPECT_THAT(cleared.x, testing::ElementsAre(0.0, 0.0));
  SparseSolver given(2);
  given.SetInitialValues(Filled(2, 3.0));
  given.Allocate(1);
  EXPECT_THAT(given.x, testing::ElementsAre(3.0, 3.0));
}

TEST(SparseSolver, StartsFromZerosAfterASolution) {
  Chain K(4);
  ReaVecT f = Filled(4, 1.0);
  ASSERT_EQ(K.Solve(f, nullptr), 0);
  EXPECT_TRUE(K.x.empty());
  EXPECT_EQ(K.preconditioner, nullptr);
  ReaVecT none = Filled(4, 0.0);
  std::ostringstream info;
  ASSERT_EQ(K.Solve(none, &info), 0);
  EXPECT_EQ(info.str(), "iteration number 0 OK resid=0 tol=1e-12\n");
  EXPECT_EQ(none(4), 0.0);
}

/// The residual after `iterations` on the small grid.
double ResidualAfter(const GridModel& grid, int iterations) {
  ReaVecT f;
  Held K(grid, f, 1e-14, 1.0, iterations);
  const ILUPreconditioner M(*K.matrix);
  double residual = 1e-14;
  ConjugateGradient(*K.matrix, K.x.data(), f.begin(), M, iterations, residual, nullptr);
  return residual;
}

TEST(SparseSolver, AcceptsTheWeakerToleranceWithANotice) {
  const GridModel grid = SmallGrid(3);
  const double residual = ResidualAfter(grid, 3);
  ASSERT_GT(residual, 1e-6);
  ReaVecT f;
  Held K(grid, f, 1e-14, residual, 3);
  std::ostringstream info;
  EXPECT_EQ(K.Solve(f, &info), 0);
  char line[80];
  std::snprintf(line, sizeof line, "After 3 Iterations, accepted tolerance of %lf\n", residual);
  EXPECT_EQ(info.str(), line);
  EXPECT_NE(f(f.n), 1.0);  // the solution so far
}

TEST(SparseSolver, TheAcceptedLineShowsSixDecimals) {
  const GridModel grid = SmallGrid(3);
  int iterations = 1;
  while (ResidualAfter(grid, iterations) > 1.5e-5) ++iterations;
  ReaVecT f;
  Held K(grid, f, 1e-14, 1e-3, iterations);
  std::ostringstream info;
  EXPECT_EQ(K.Solve(f, &info), 0);
  EXPECT_THAT(
      info.str(),
      testing::ContainsRegex("After [0-9]+ Iterations, accepted tolerance of 0\\.0000[01][0-9]\n"));
}

TEST(SparseSolver, BeyondTheWeakerToleranceReturnsMinusTheLimit) {
  const GridModel grid = SmallGrid(6);
  ReaVecT f;
  Held K(grid, f, 1e-14, 1e-12, 3);
  FlushCounter info;  // the run ends here: what is not flushed is lost
  EXPECT_EQ(K.Solve(f, &info), -3);
  EXPECT_EQ(info.Text(), "Not Solved after 3 Iterations\n");
  EXPECT_EQ(info.Flushes(), 1);
  EXPECT_TRUE(K.x.empty());
  EXPECT_EQ(f(f.n), 1.0);  // still the load
}

TEST(SparseSolver, LimitsOfZeroAndOneReturnMinusOne) {
  const GridModel grid = SmallGrid(3);
  for (const int limit : {0, 1}) {
    ReaVecT f;
    Held K(grid, f, 1e-14, 1e-12, limit);
    EXPECT_EQ(K.Solve(f, nullptr), -1) << limit;
  }
}

TEST(SparseSolver, AnInfiniteResidualIsNotConvergedAndNoBreakdown) {
  Chain K(1, 1e-12, 1e-6, 0);
  K.SetInitialValues(Filled(1, 1e200));  // its square overflows
  ReaVecT f = Filled(1, 1.0);
  std::ostringstream info;
  EXPECT_LT(K.Solve(f, &info), 0);
  EXPECT_EQ(info.str(), "Not Solved after 0 Iterations\n");
}

TEST(SparseSolver, ARowWithoutADiagonalIsABreakdown) {
  SparseSolver K(6);
  K.Allocate(3);
  K.AddBlock(1, 1, Scaled(3, 2.0));
  ReaVecT f = Filled(6, 0.0);
  std::ostringstream info;
  EXPECT_EQ(K.Solve(f, &info), -1);
  EXPECT_EQ(info.str(), "");
  EXPECT_TRUE(K.x.empty());
}

TEST(SparseSolver, AnIsolatedNodeThatIsFixedAltogetherSolvesExactly) {
  for (int dofs : {1, 3, 6}) {
    SparseSolver K(2 * dofs);
    K.Allocate(dofs);
    K.AddBlock(1, 1, Scaled(dofs, 2.0));
    ReaVecT f = Filled(2 * dofs, 4.0);
    for (int d = 1; d <= dofs; ++d) K.Prescribe(dofs + d, 0.5 * d, f);
    ASSERT_EQ(K.Solve(f, nullptr), 0);
    for (int d = 1; d <= dofs; ++d) {
      EXPECT_NEAR(f(d), 2.0, 1e-12);
      EXPECT_EQ(f(dofs + d), 0.5 * d);
    }
  }
}

TEST(SparseSolver, AnEntryThatIsNotANumberIsABreakdown) {
  Chain K(3);
  K.Entry(2, 2) = std::nan("");
  ReaVecT f = Filled(3, 1.0);
  EXPECT_EQ(K.Solve(f, nullptr), -1);
  EXPECT_TRUE(K.x.empty());
}

// [1 1 .; 1 1 1; . 1 -1] is regular, but its second pivot is 0; with a negative diagonal there is
// no second preconditioner.
TEST(SparseSolver, AZeroPivotIsDividedByAndEndsAsABreakdown) {
  SparseSolver K(3, 1e-10, 1e-6, 50);
  K.AddNodePair(1, 2, 1);
  K.AddNodePair(2, 3, 1);
  K.Allocate(1);
  K.AddBlock(1, 1, Single(1.0));
  K.AddBlock(2, 2, Single(1.0));
  K.AddBlock(3, 3, Single(-1.0));
  K.AddBlock(1, 2, Single(1.0));
  K.AddBlock(2, 3, Single(1.0));
  ReaVecT f = Filled(3, 1.0);
  EXPECT_EQ(K.Solve(f, nullptr), -1);
}

TEST(SparseSolver, AnInfiniteResidualIsNotSolved) {
  const GridModel grid = SmallGrid(3);
  ReaVecT f;
  Held K(grid, f, 1e-10, 1e-6, 3);
  for (double& value : K.matrix->values) value *= 1e200;  // the squares of residuals overflow
  for (int i = 36; i < K.n; ++i) K.x[i] = 1.0;
  std::ostringstream info;
  EXPECT_EQ(K.Solve(f, &info), -3);
  EXPECT_EQ(info.str(), "Not Solved after 3 Iterations\n");
}

// Two springs that hang free: the pivot of the last degree vanishes, the system has no solution.
TEST(SparseSolver, AZeroPivotUnderALoadIsNotASuccess) {
  Chain K(2, 1e-12, 1e-6, 100);
  K.Entry(1, 1) = 1.0;
  ReaVecT f = Filled(2, 1.0);
  std::ostringstream info;
  EXPECT_LT(K.Solve(f, &info), 0);
}

// A ring with the diagonal 3 and -2, -2, -2, +2 between neighbours: its eigenvalues are
// 3 +- 2 sqrt 2, but the pivots of its incomplete factors are 3, 5/3, 3/5 and then negative.
TEST(SparseSolver, FactorsThatAreNotPositiveGiveWayToTheDiagonal) {
  const double entries[4][4] = {
      {3.0,  -2.0, 0.0,  2.0 },
      {-2.0, 3.0,  -2.0, 0.0 },
      {0.0,  -2.0, 3.0,  -2.0},
      {2.0,  0.0,  -2.0, 3.0 }
  };
  SparseSolver K(4, 1e-10, 1e-6, 100);
  for (int i = 1; i < 4; ++i) K.AddNodePair(i, i + 1, 1);
  K.AddNodePair(1, 4, 1);
  K.Allocate(1);
  for (int i = 0; i < 4; ++i) {
    for (int j = i; j < 4; ++j) {
      if (entries[i][j] != 0.0) K.AddBlock(i + 1, j + 1, Single(entries[i][j]));
    }
  }
  ASSERT_FALSE(ILUPreconditioner(*K.matrix).IsPositive());
  ReaVecT f(4);
  for (int i = 0; i < 4; ++i) {
    f(i + 1) = 0.0;
    for (int j = 0; j < 4; ++j) f(i + 1) += entries[i][j] * (j + 1);
  }
  std::ostringstream info;
  ASSERT_EQ(K.Solve(f, &info), 0);
  for (int i = 1; i <= 4; ++i) EXPECT_NEAR(f(i), i, 1e-8);
  // A constant diagonal leaves plain conjugate gradients, which take a step per eigenvalue.
  EXPECT_THAT(info.str(), testing::StartsWith("Converged it number. 2 resid="));
}

TEST(SparseSolver, IterationsAreThoseOfTheScalarAlgorithm) {
  for (int dofs : {1, 2, 3, 6}) {
    const GridModel grid{6, 5, 7, dofs};
    ReaVecT f;
    Held K(grid, f, 1e-10, 1e-6, 1000);
    std::vector<double> x(f.n, 0.0);
    const std::vector<double> b(f.begin(), f.end());
    const int iterations = ScalarSparse(*K.matrix).ConjugateGradient(x, b, 1e-10, 1000);
    std::ostringstream info;
    ASSERT_EQ(K.Solve(f, &info), 0);
    const std::string converged = "Converged it number. " + std::to_string(iterations) + " resid=";
    EXPECT_THAT(info.str(), testing::HasSubstr(converged)) << dofs;
    for (int i = 1; i <= f.n; ++i) EXPECT_NEAR(f(i), x[i - 1], 1e-8 * (1.0 + std::abs(f(i))));
  }
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

TEST(SparseSolver, RefusesADenseCopyAndAPicture) {
  Chain K(2);
  Matriu dense;
  std::ostringstream picture;
  EXPECT_FATAL(K.CopyFromYouToMat(dense), "error SparseSolver::CopyFromYouToMat not implemented\n");
  EXPECT_FATAL(K.WriteForVemo(picture), "error SparseSolver::WriteForVemo not implemented\n");
}

TEST(SparseSolver, StorageReportCountsTwelveBytesAnEntryAndFourARow) {
  const GridModel grid{12, 11, 10, 6};
  SparseSolver K(grid.NumDegrees());
  grid.Structure(K);
  const int nnz = K.matrix->nnz;
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
