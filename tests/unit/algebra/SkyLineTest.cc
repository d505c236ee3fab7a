#include <algorithm>
#include <cmath>
#include <numeric>
#include <sstream>

#include "algebra/Matriu.h"
#include "algebra/ReaVecT.h"
#include "algebra/SkyLine.h"
#include "tests/support/FatalExit.h"
#include "tests/support/FlushCounter.h"

namespace {

using testing::ElementsAre;

/// Springs of stiffness 1 in a row, both ends held: 2 on the diagonal, -1 beside it.
SkyLine Chain(int n) {
  SkyLine K(n);
  for (int i = 1; i < n; ++i) K.AddDegreePair(i, i + 1);
  K.Allocate(1);
  for (int i = 1; i <= n; ++i) K.Entry(i, i) = 2.0;
  for (int i = 1; i < n; ++i) K.Entry(i, i + 1) = -1.0;
  return K;
}

/// All n x n entries stored, the given upper triangle row by row.
SkyLine Full(int n, std::initializer_list<double> upperRows) {
  SkyLine K(n);
  K.AddDegreePair(1, n);
  for (int j = 2; j < n; ++j) K.AddDegreePair(1, j);
  K.Allocate(1);
  const double* next = upperRows.begin();
  for (int i = 1; i <= n; ++i) {
    for (int j = i; j <= n; ++j) K.Entry(i, j) = *next++;
  }
  return K;
}

ReaVecT Vector(std::initializer_list<double> values) {
  ReaVecT v(static_cast<int>(values.size()));
  std::copy(values.begin(), values.end(), v.begin());
  return v;
}

std::vector<double> Entries(const ReaVecT& v) {
  return {v.begin(), v.end()};
}

std::vector<double> Entries(SkyLine& K) {
  Matriu dense;
  K.CopyFromYouToMat(dense);
  return {dense.data.get(), dense.data.get() + dense.size};
}

// --- structure -----------------------------------------------------------------------------------

TEST(SkyLine, BeginsWithoutStorage) {
  const SkyLine K(3);
  EXPECT_EQ(K.NumDegrees(), 3);
  EXPECT_THAT(K.heights, ElementsAre(0, 0, 0));
  EXPECT_THAT(K.columns, ElementsAre(nullptr, nullptr, nullptr));
  EXPECT_FALSE(K.factorised);
}

TEST(SkyLine, NodePairCouplesAllDegreesOfBothNodes) {
  SkyLine K(9);
  K.AddNodePair(1, 3, 3);
  EXPECT_THAT(K.heights, ElementsAre(0, 0, 0, 0, 0, 0, 7, 8, 9));
}

TEST(SkyLine, NodePairIsTheSameInEitherOrder) {
  SkyLine K(9);
  K.AddNodePair(3, 2, 3);
  EXPECT_THAT(K.heights, ElementsAre(0, 0, 0, 0, 0, 0, 4, 5, 6));
}

TEST(SkyLine, NodeCoupledWithItselfHasItsOwnBlock) {
  SkyLine K(6);
  K.AddNodePair(2, 2, 3);
  EXPECT_THAT(K.heights, ElementsAre(0, 0, 0, 1, 2, 3));
}

TEST(SkyLine, LaterShorterCouplingLeavesTheHeight) {
  SkyLine K(5);
  K.AddDegreePair(5, 1);
  K.AddDegreePair(4, 5);
  EXPECT_THAT(K.heights, ElementsAre(0, 0, 0, 0, 5));
}

TEST(SkyLine, UnconnectedNodesStillStoreTheirDiagonalBlocks) {
  SkyLine K(7);
  K.Allocate(3);
  EXPECT_THAT(K.heights, ElementsAre(1, 2, 3, 1, 2, 3, 1));
}

TEST(SkyLine, AllocateKeepsHigherColumns) {
  SkyLine K(6);
  K.AddDegreePair(2, 6);
  K.AddDegreePair(4, 5);
  K.Allocate(3);
  EXPECT_THAT(K.heights, ElementsAre(1, 2, 3, 1, 2, 5));
}

TEST(SkyLine, AllocatedEntriesAreZero) {
  SkyLine K(6);
  K.AddNodePair(1, 2, 3);
  K.Allocate(3);
  EXPECT_THAT(Entries(K), testing::Each(0.0));
}

TEST(SkyLine, ColumnsHoldTheDiagonalFirstAndGoUpwards) {
  SkyLine K = Full(3, {11, 12, 13, 22, 23, 33});
  EXPECT_EQ(K.columns[2][0], 33);
  EXPECT_EQ(K.columns[2][1], 23);
  EXPECT_EQ(K.columns[2][2], 13);
}

TEST(SkyLine, SecondAllocateBeginsAnew) {
  SkyLine K = Chain(3);
  K.AddDegreePair(1, 3);
  K.Allocate(1);
  EXPECT_THAT(K.heights, ElementsAre(1, 2, 3));
  EXPECT_THAT(Entries(K), testing::Each(0.0));
}

TEST(SkyLine, MatrixWithoutDegreesIsSolved) {
  SkyLine K(0);
  K.Allocate(3);
  K.SetZero();
  ReaVecT f;
  EXPECT_EQ(K.Solve(f, nullptr), 0);
}

// --- entries -------------------------------------------------------------------------------------

TEST(SkyLine, EntryIsTheSamePlaceInEitherOrder) {
  SkyLine K = Chain(4);
  EXPECT_EQ(&K.Entry(2, 3), &K.Entry(3, 2));
  EXPECT_EQ(K.Entry(3, 2), -1.0);
}

TEST(SkyLine, EntryOutsideTheProfileReadsZeroAndKeepsNoWrite) {
  SkyLine K = Chain(4);
  K.Entry(1, 4) = 7.0;
  EXPECT_EQ(K.Entry(1, 4), 0.0);
  EXPECT_EQ(K.Entry(3, 1), 0.0);
}

TEST(SkyLine, EntryOutOfRangeEndsTheRun) {
  const std::string text = "error in SkyLine::Entry. Index out of range\n";
  SkyLine K = Chain(4);
  EXPECT_FATAL(K.Entry(0, 1), text);
  EXPECT_FATAL(K.Entry(1, 0), text);
  EXPECT_FATAL(K.Entry(5, 1), text);
  EXPECT_FATAL(K.Entry(1, 5), text);
}

TEST(SkyLine, FullBlockTouchesItsUpperEntriesOnly) {
  SkyLine K(7);
  K.AddNodePair(1, 1, 7);
  K.Allocate(7);
  Matriu block(6, 6);
  block.Fill(1.0);
  K.AddBlock(1, 1, block);
  double stored = 0.0;
  for (int j = 1; j <= 7; ++j)
    stored += std::accumulate(K.columns[j - 1], K.columns[j - 1] + j, 0.0);
  EXPECT_EQ(stored, 21.0);
  EXPECT_EQ(K.Entry(6, 1), 1.0);
  EXPECT_EQ(K.Entry(7, 1), 0.0);
}

TEST(SkyLine, BlocksAddUpAtTheirPlace) {
  SkyLine K(4);
  K.AddNodePair(1, 2, 2);
  K.Allocate(2);
  Matriu block(2, 2);
  for (int i = 1; i <= 2; ++i) {
    for (int j = 1; j <= 2; ++j) block(i, j) = 10 * i + j;
  }
  K.AddBlock(1, 3, block);
  K.AddBlock(1, 3, block);
  EXPECT_THAT(Entries(K), ElementsAre(0, 0, 22, 24,  //
                                      0, 0, 42, 44,  //
                                      22, 42, 0, 0,  //
                                      24, 44, 0, 0));
}

TEST(SkyLine, BlockBelowTheDiagonalIsIgnored) {
  SkyLine K(4);
  K.AddNodePair(1, 2, 2);
  K.Allocate(2);
  Matriu block(2, 2);
  block.Fill(1.0);
  K.AddBlock(3, 1, block);
  EXPECT_THAT(Entries(K), testing::Each(0.0));
}

TEST(SkyLine, PartOfABlockAboveTheProfileIsLost) {
  SkyLine K = Chain(4);
  K.SetZero();
  Matriu block(3, 2);
  block.Fill(1.0);
  K.AddBlock(1, 3, block);
  EXPECT_THAT(Entries(K), ElementsAre(0, 0, 0, 0,  //
                                      0, 0, 1, 0,  //
                                      0, 1, 1, 1,  //
                                      0, 0, 1, 0));
}

TEST(SkyLine, BlockOutOfRangeEndsTheRun) {
  const std::string text = "error in SkyLine::Entry. Index out of range\n";
  SkyLine K = Chain(4);
  Matriu block(2, 2);
  EXPECT_FATAL(K.AddBlock(4, 4, block), text);
  EXPECT_FATAL(K.AddBlock(0, 1, block), text);
  EXPECT_FATAL(K.AddBlock(1, 0, block), text);
}

TEST(SkyLine, SetZeroKeepsTheStructure) {
  SkyLine K = Chain(4);
  K.SetZero();
  EXPECT_THAT(K.heights, ElementsAre(1, 2, 2, 2));
  EXPECT_THAT(Entries(K), testing::Each(0.0));
}

TEST(SkyLine, CopyMirrorsTheUpperTriangle) {
  SkyLine K = Full(3, {1, 2, 3, 4, 5, 6});
  EXPECT_THAT(Entries(K), ElementsAre(1, 2, 3, 2, 4, 5, 3, 5, 6));
}

TEST(SkyLine, CopyGivesTheDenseMatrixItsOwnShape) {
  SkyLine K = Full(3, {1, 2, 3, 4, 5, 6});
  for (const int columns : {0, 2, 9, 12}) {  // as many entries as K has, fewer and more
    Matriu dense(1, columns);
    if (columns != 0) dense.Fill(-7.0);
    K.CopyFromYouToMat(dense);
    EXPECT_EQ(dense.nrows, 3);
    EXPECT_EQ(dense.ncols, 3);
    EXPECT_EQ(dense(2, 3), 5.0);
    EXPECT_EQ(dense(3, 1), 3.0);
  }
}

TEST(SkyLine, CopyHasZerosOutsideTheProfile) {
  SkyLine K = Chain(3);
  EXPECT_THAT(Entries(K), ElementsAre(2, -1, 0, -1, 2, -1, 0, -1, 2));
}

// --- rows ----------------------------------------------------------------------------------------

TEST(SkyLine, RowTimesVectorTakesBothTriangles) {
  SkyLine K = Full(3, {1, 2, 3, 4, 5, 6});
  const ReaVecT x = Vector({1, 10, 100});
  EXPECT_EQ(K.RowTimesVector(1, x), 321);
  EXPECT_EQ(K.RowTimesVector(2, x), 542);
  EXPECT_EQ(K.RowTimesVector(3, x), 653);
}

TEST(SkyLine, RowTimesVectorFindsAFarColumnBehindShortOnes) {
  SkyLine K(6);
  K.AddDegreePair(2, 6);
  K.AddDegreePair(1, 3);
  K.Allocate(1);
  K.Entry(2, 6) = 3.0;
  K.Entry(1, 3) = 5.0;
  const ReaVecT x = Vector({1, 2, 3, 4, 5, 6});
  EXPECT_EQ(K.RowTimesVector(2, x), 18.0);
  EXPECT_EQ(K.RowTimesVector(1, x), 15.0);
}

TEST(SkyLine, PrescribedValueMovesToTheRightHandSide) {
  SkyLine K = Full(3, {4, 1, 2, 5, 3, 6});
  ReaVecT f = Vector({10, 20, 30});
  K.Prescribe(2, 2.0, f);
  EXPECT_THAT(Entries(K), ElementsAre(4, 0, 2, 0, 1, 0, 2, 0, 6));
  EXPECT_THAT(Entries(f), ElementsAre(8, 2, 24));
}

TEST(SkyLine, PrescribedDegreesComeBackAndTheOthersBalance) {
  SkyLine K = Chain(4);
  SkyLine free = Chain(4);
  ReaVecT f = Vector({1, 2, 3, 4});
  K.Prescribe(3, -0.5, f);
  ASSERT_EQ(K.Solve(f, nullptr), 0);
  EXPECT_EQ(f(3), -0.5);
  EXPECT_NEAR(free.RowTimesVector(1, f), 1.0, 1e-14);
  EXPECT_NEAR(free.RowTimesVector(2, f), 2.0, 1e-14);
  EXPECT_NEAR(free.RowTimesVector(4, f), 4.0, 1e-14);
}

TEST(SkyLine, PrescribedZeroChangesTheRightHandSideAtItsPlaceOnly) {
  for (const double value : {0.0, 1e-16, -1e-16, 1e-15}) {
    SkyLine K = Full(2, {1e18, 1e18, 1e18});
    ReaVecT f = Vector({7, 8});
    K.Prescribe(1, value, f);
    EXPECT_THAT(Entries(f), ElementsAre(value, 8));
    EXPECT_THAT(Entries(K), ElementsAre(1, 0, 0, 1e18));
  }
}

TEST(SkyLine, PrescribedValueAboveZeroIsEliminated) {
  SkyLine K = Full(2, {1e15, 1e15, 1e15});
  ReaVecT f = Vector({7, 8});
  K.Prescribe(1, 2e-15, f);
  EXPECT_THAT(Entries(f), ElementsAre(2e-15, 6));
}

TEST(SkyLine, PrescribingWithoutAValueLeavesTheRightHandSideToTheCaller) {
  SkyLine K = Full(3, {4, 1, 2, 5, 3, 6});
  K.Prescribe(1);
  EXPECT_THAT(Entries(K), ElementsAre(1, 0, 0, 0, 5, 3, 0, 3, 6));
}

// --- solution ------------------------------------------------------------------------------------

TEST(SkyLine, ChainWithUnitEndLoadIsLinear) {
  const int n = 1200;
  SkyLine K = Chain(n);
  ReaVecT f(n);
  f(n) = 1.0;
  ASSERT_EQ(K.Solve(f, nullptr), 0);
  for (int i = 1; i <= n; ++i) EXPECT_NEAR(f(i), i / (n + 1.0), 1e-12);
}

TEST(SkyLine, ChainHasItsClosedPivots) {
  const int n = 700;
  SkyLine K = Chain(n);
  ReaVecT f(n);
  ASSERT_EQ(K.Solve(f, nullptr), 0);
  for (int i = 1; i <= n; ++i) EXPECT_NEAR(K.Entry(i, i), (i + 1.0) / i, 1e-13);
  for (int i = 1; i < n; ++i) EXPECT_NEAR(K.Entry(i, i + 1), -i / (i + 1.0), 1e-13);
  EXPECT_TRUE(K.factorised);
}

TEST(SkyLine, NegativePivotsAreAllowed) {
  SkyLine K = Full(2, {-2, 4, 1});
  ReaVecT f = Vector({2, 5});
  ASSERT_EQ(K.Solve(f, nullptr), 0);
  EXPECT_THAT(Entries(f), ElementsAre(1, 1));
}

TEST(SkyLine, OnesMatrixFailsAtDegreeTwo) {
  SkyLine K = Full(2, {1, 1, 1});
  ReaVecT f = Vector({1, 1});
  EXPECT_EQ(K.Solve(f, nullptr), 2);
  EXPECT_EQ(K.Entry(2, 2), 0.0);
  EXPECT_FALSE(K.factorised);
}

TEST(SkyLine, PivotTestIsAbsolute) {
  for (const double small : {0.9e-15, -0.9e-15, 0.0, std::nan("")}) {
    SkyLine K = Full(2, {1, 0, small});
    ReaVecT f = Vector({1, 1});
    EXPECT_EQ(K.Solve(f, nullptr), 2);
  }
  for (const double enough : {1e-15, -1e-15}) {
    SkyLine K = Full(2, {1, 0, enough});
    ReaVecT f = Vector({1, enough});
    EXPECT_EQ(K.Solve(f, nullptr), 0);
    EXPECT_THAT(Entries(f), ElementsAre(1, 1));
  }
}

TEST(SkyLine, UncoupledDegreeWithoutStiffnessFailsAtItsNumber) {
  SkyLine K(1000);
  K.Allocate(3);
  for (int i = 1; i <= 1000; ++i) K.Entry(i, i) = i == 777 ? 0.0 : 1.0;
  ReaVecT f(1000);
  EXPECT_EQ(K.Solve(f, nullptr), 777);
}

TEST(SkyLine, SolvesOnceOnly) {
  SkyLine K = Chain(3);
  ReaVecT f = Vector({1, 1, 1});
  ASSERT_EQ(K.Solve(f, nullptr), 0);
  EXPECT_FATAL(K.Solve(f, nullptr), "error in SkyLine::Solve. Matrix already factorised\n");
}

TEST(SkyLine, SolvesAgainAfterSetZeroAndAnotherAssembly) {
  SkyLine K = Chain(2);
  ReaVecT f = Vector({1, 1});
  ASSERT_EQ(K.Solve(f, nullptr), 0);
  K.SetZero();
  K.Entry(1, 1) = 2.0;
  K.Entry(2, 2) = 4.0;
  f = Vector({1, 1});
  ASSERT_EQ(K.Solve(f, nullptr), 0);
  EXPECT_THAT(Entries(f), ElementsAre(0.5, 0.25));
}

TEST(SkyLine, ReportsProgressEvery500DegreesOnly) {
  SkyLine K = Chain(1200);
  ReaVecT f(1200);
  FlushCounter info;
  ASSERT_EQ(K.Solve(f, &info), 0);
  EXPECT_EQ(info.Flushes(), 5);
  EXPECT_EQ(info.Text(),
            "Solving degree 500 of 1200\n"
            "Solving degree 1000 of 1200\n"
            "Txolesky finished\n"
            "Beginning 1st substitution in LU system\n"
            "Beginning 2nd substitution in LU system\n");
}

TEST(SkyLine, ReportsProgressOfADegreeBeforeItFails) {
  SkyLine K = Chain(1200);
  K.Entry(499, 500) = K.Entry(500, 501) = K.Entry(500, 500) = 0.0;
  ReaVecT f(1200);
  std::ostringstream info;
  EXPECT_EQ(K.Solve(f, &info), 500);
  EXPECT_EQ(info.str(), "Solving degree 500 of 1200\n");
}

}  // namespace
