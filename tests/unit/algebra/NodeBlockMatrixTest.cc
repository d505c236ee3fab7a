#include <cmath>
#include <sstream>

#include "algebra/NodeBlockMatrix.h"
#include "algebra/SkyLine.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/FlushCounter.h"
#include "tests/support/GridModel.h"
#include "tests/support/Vectors.h"

namespace kestol {

namespace {

using testing::ElementsAre;

/// Nodes of two degrees, of which 1 and 3 are coupled; entries in the order of the rows.
struct Small : NodeBlockMatrix {
  Small() : NodeBlockMatrix(6) {
    AddNodePair(3, 1, 2);
    Allocate(2);
    AddBlock(1, 1, Mat(2, 2, {10, 1, 1, 11}));
    AddBlock(1, 5, Mat(2, 2, {2, 3, 4, 5}));
    AddBlock(3, 3, Mat(2, 2, {20, 6, 6, 21}));
    AddBlock(5, 5, Mat(2, 2, {30, 7, 7, 31}));
  }
};

std::vector<double> Dense(const StiffnessMatrix& K) {
  Matriu dense;
  K.CopyFromYouToMat(dense);
  return Entries(dense);
}

ReaVecT Waves(int n) {
  ReaVecT x(n);
  for (int i = 1; i <= n; ++i) x(i) = std::sin(1.7 * i);
  return x;
}

TEST(NodeBlockMatrix, BlocksStandInBothTriangles) {
  EXPECT_THAT(Dense(Small()), ElementsAre(10, 1, 0, 0, 2, 3,  //
                                          1, 11, 0, 0, 4, 5,  //
                                          0, 0, 20, 6, 0, 0,  //
                                          0, 0, 6, 21, 0, 0,  //
                                          2, 4, 0, 0, 30, 7,  //
                                          3, 5, 0, 0, 7, 31));
}

TEST(NodeBlockMatrix, IsTheMatrixThatTheSkylineAssembles) {
  for (const int dofs : {1, 2, 3, 6}) {
    const GridModel grid{4, 3, 3, dofs};
    NodeBlockMatrix K(grid.NumDegrees());
    SkyLine sky(grid.NumDegrees());
    ReaVecT f = Waves(grid.NumDegrees());
    ReaVecT g = f;
    for (StiffnessMatrix* const each :
         {static_cast<StiffnessMatrix*>(&K), static_cast<StiffnessMatrix*>(&sky)}) {
      grid.Structure(*each);
      grid.Assemble(*each);
    }
    EXPECT_EQ(Dense(K), Dense(sky));
    for (const int dof : {1, 5, dofs + 2, 30}) {
      K.Prescribe(dof, 0.5 * dof, f);
      sky.Prescribe(dof, 0.5 * dof, g);
    }
    EXPECT_EQ(Dense(K), Dense(sky));
    EXPECT_EQ(Entries(f), Entries(g));
    K.ScaleAndShift(Waves(K.NumDegrees()), -0.75);
    sky.ScaleAndShift(Waves(K.NumDegrees()), -0.75);
    const std::vector<double> scaled = Dense(K);
    EXPECT_THAT(scaled, testing::Pointwise(testing::DoubleNear(1e-15), Dense(sky)));
  }
}

TEST(NodeBlockMatrix, TimesAndItsRowsAreTheProduct) {
  for (const int dofs : {1, 2, 3, 6}) {
    const GridModel grid{4, 3, 3, dofs};
    NodeBlockMatrix K(grid.NumDegrees());
    grid.Structure(K);
    grid.Assemble(K);
    Matriu dense;
    K.CopyFromYouToMat(dense);
    const ReaVecT x = Waves(K.NumDegrees());
    const ReaVecT wanted = dense * x;
    ReaVecT y = Vec({99, 99});
    K.Times(x, y);
    ASSERT_EQ(y.n, x.n);
    for (int i = 1; i <= x.n; ++i) {
      EXPECT_NEAR(y(i), wanted(i), 1e-13);
      EXPECT_NEAR(K.RowTimesVector(i, x), wanted(i), 1e-13);
    }
  }
}

TEST(NodeBlockMatrix, EntryIsAPlaceInEitherOrderOrRefused) {
  Small K;
  K.Entry(5, 2) += 100.0;
  EXPECT_EQ(K.Entry(2, 5), 104.0);
  K.Entry(4, 3) = 0.5;
  EXPECT_EQ(K.Entry(3, 4), 0.5);
  EXPECT_FATAL(K.Entry(3, 1), "error in NodeBlockMatrix::Entry. (1,3) is not stored\n");
  EXPECT_FATAL(K.Entry(0, 1), "error in NodeBlockMatrix::Entry. (0,1) is not stored\n");
  EXPECT_FATAL(K.Entry(5, 7), "error in NodeBlockMatrix::Entry. (5,7) is not stored\n");
}

TEST(NodeBlockMatrix, BlocksMayLieAnywhereWithinTheStructure) {
  Small K;
  K.AddBlock(2, 5, Mat(1, 2, {100, 200}));
  EXPECT_EQ(K.Entry(2, 5), 104.0);
  EXPECT_EQ(K.Entry(2, 6), 205.0);
  K.AddBlock(1, 1, Mat(1, 1, {1000}));
  EXPECT_EQ(K.Entry(1, 1), 1010.0);
  EXPECT_FATAL(K.AddBlock(1, 3, Mat(2, 2, {1, 2, 3, 4})),
               "error in NodeBlockMatrix::Entry. (1,3) is not stored\n");
}

TEST(NodeBlockMatrix, OfABlockOnTheDiagonalTheUpperTriangleCounts) {
  NodeBlockMatrix K(2);
  K.Allocate(2);
  K.AddBlock(1, 1, Mat(2, 2, {1, 2, 99, 3}));
  EXPECT_THAT(Dense(K), ElementsAre(1, 2, 2, 3));
  NodeBlockMatrix single(2);
  single.AddNodePair(1, 2, 1);
  single.Allocate(1);
  single.AddBlock(1, 1, Mat(2, 2, {1, 2, 99, 3}));
  EXPECT_THAT(Dense(single), ElementsAre(1, 2, 2, 3));
}

TEST(NodeBlockMatrix, PrescribedZeroLeavesTheOtherLoads) {
  Small K;
  ReaVecT f = Vec({1, 2, 3, 4, 5, 6});
  K.Prescribe(6, 0.0, f);
  EXPECT_THAT(Entries(f), ElementsAre(1, 2, 3, 4, 5, 0));
  EXPECT_EQ(K.Entry(6, 6), 1.0);
  EXPECT_EQ(K.Entry(2, 6), 0.0);
}

TEST(NodeBlockMatrix, SetZeroKeepsTheStructure) {
  Small K;
  K.SetZero();
  EXPECT_THAT(Dense(K), testing::Each(0.0));
  K.Entry(1, 6) = 1.0;
  EXPECT_EQ(K.Entry(6, 1), 1.0);
}

TEST(NodeBlockMatrix, DegreesMustFillTheNodes) {
  NodeBlockMatrix K(7);
  EXPECT_FATAL(K.Allocate(3), "error in NodeBlockMatrix::Allocate. 7 degrees in nodes of 3\n");
}

TEST(NodeBlockMatrix, HasNoFactorAndNoPicture) {
  Small K;
  ReaVecT f(6);
  std::ostringstream picture;
  EXPECT_FATAL(K.Factorise(nullptr), "error NodeBlockMatrix::Factorise not implemented\n");
  EXPECT_FATAL(K.Substitute(f, nullptr), "error NodeBlockMatrix::Substitute not implemented\n");
  EXPECT_FATAL(K.WriteForVemo(picture), "error NodeBlockMatrix::WriteForVemo not implemented\n");
}

TEST(NodeBlockMatrix, PrintsTheUpperTriangle) {
  std::ostringstream text;
  Small().Print(text);
  EXPECT_EQ(text.str(),
            "\nprinting NodeBlockMatrix size=6x6\n"
            "(1,1)=10    (1,2)=1    (1,5)=2    (1,6)=3\n"
            "(2,2)=11    (2,5)=4    (2,6)=5\n"
            "(3,3)=20    (3,4)=6\n"
            "(4,4)=21\n"
            "(5,5)=30    (5,6)=7\n"
            "(6,6)=31\n\n");
}

TEST(NodeBlockMatrix, StorageReportCountsValuesAndBlockNumbers) {
  const GridModel grid{12, 11, 10, 6};
  NodeBlockMatrix K(grid.NumDegrees());
  grid.Structure(K);
  // Springs along the edges, the faces' diagonals and the bodies' diagonals of the grid.
  const int springs = 11 * 11 * 10 + 12 * 10 * 10 + 12 * 11 * 9 +
                      2 * (11 * 10 * 10 + 11 * 11 * 9 + 12 * 10 * 9) + 4 * 11 * 10 * 9;
  const int nodes = 12 * 11 * 10;
  FlushCounter info;
  K.PrintInfo(info);
  char memory[80];
  std::snprintf(memory, sizeof memory, "Amount of memory= %.1fMb\n\n",
                ((nodes + springs) * (36 * 8.0 + 4) + springs * 8.0) / 1048576);
  EXPECT_EQ(info.Text(),
            "\nINFORMATION ABOUT STIFFNESS MATRIX\n"
            "Node block storage\n"
            "Degrees of freedom= 7920\n"
            "Total number of positions= " +
                std::to_string(36 * (nodes + springs)) + "\n" + memory);
  EXPECT_GE(info.Flushes(), 1);
}

}  // namespace

}  // namespace kestol
