#include <numeric>

#include "tests/support/ExpectFatal.h"
#include "tests/support/SmallSkyLine.h"

namespace kestol {

namespace {

using testing::ElementsAre;

// --- structure -----------------------------------------------------------------------------------

TEST(SkyLine, BeginsWithoutStorage) {
  const SkyLine K(3);
  EXPECT_EQ(K.NumDegrees(), 3);
  EXPECT_THAT(K.Heights(), ElementsAre(0, 0, 0));
  EXPECT_TRUE(K.Column(1).empty());
  EXPECT_FALSE(K.IsFactorised());
}

TEST(SkyLine, NodePairCouplesAllDegreesOfBothNodes) {
  SkyLine K(9);
  K.AddNodePair(1, 3, 3);
  EXPECT_THAT(K.Heights(), ElementsAre(0, 0, 0, 0, 0, 0, 7, 8, 9));
}

TEST(SkyLine, NodePairIsTheSameInEitherOrder) {
  SkyLine K(9);
  K.AddNodePair(3, 2, 3);
  EXPECT_THAT(K.Heights(), ElementsAre(0, 0, 0, 0, 0, 0, 4, 5, 6));
}

TEST(SkyLine, NodeCoupledWithItselfHasItsOwnBlock) {
  SkyLine K(6);
  K.AddNodePair(2, 2, 3);
  EXPECT_THAT(K.Heights(), ElementsAre(0, 0, 0, 1, 2, 3));
}

TEST(SkyLine, LaterShorterCouplingLeavesTheHeight) {
  SkyLine K(5);
  K.AddDegreePair(5, 1);
  K.AddDegreePair(4, 5);
  EXPECT_THAT(K.Heights(), ElementsAre(0, 0, 0, 0, 5));
}

TEST(SkyLine, UnconnectedNodesStillStoreTheirDiagonalBlocks) {
  SkyLine K(7);
  K.Allocate(3);
  EXPECT_THAT(K.Heights(), ElementsAre(1, 2, 3, 1, 2, 3, 1));
}

TEST(SkyLine, AllocateKeepsHigherColumns) {
  SkyLine K(6);
  K.AddDegreePair(2, 6);
  K.AddDegreePair(4, 5);
  K.Allocate(3);
  EXPECT_THAT(K.Heights(), ElementsAre(1, 2, 3, 1, 2, 5));
}

TEST(SkyLine, AllocatedEntriesAreZero) {
  SkyLine K(6);
  K.AddNodePair(1, 2, 3);
  K.Allocate(3);
  EXPECT_THAT(Entries(K), testing::Each(0.0));
}

TEST(SkyLine, ColumnsHoldTheDiagonalFirstAndGoUpwards) {
  SkyLine K = Full(3, {11, 12, 13, 22, 23, 33});
  EXPECT_EQ(K.Column(3)[0], 33);
  EXPECT_EQ(K.Column(3)[1], 23);
  EXPECT_EQ(K.Column(3)[2], 13);
}

TEST(SkyLine, SecondAllocateBeginsAnew) {
  SkyLine K = Chain(3);
  K.AddDegreePair(1, 3);
  K.Allocate(1);
  EXPECT_THAT(K.Heights(), ElementsAre(1, 2, 3));
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
    stored += std::accumulate(K.Column(j).begin(), K.Column(j).end(), 0.0);
  EXPECT_EQ(stored, 21.0);
  EXPECT_EQ(K.Entry(6, 1), 1.0);
  EXPECT_EQ(K.Entry(7, 1), 0.0);
}

TEST(SkyLine, BlocksAddUpAtTheirPlace) {
  SkyLine K(4);
  K.AddNodePair(1, 2, 2);
  K.Allocate(2);
  Matriu block(2, 2);
  for (int i = 1; i <= 2; ++i)
    for (int j = 1; j <= 2; ++j) block(i, j) = 10 * i + j;
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
  EXPECT_THAT(K.Heights(), ElementsAre(1, 2, 2, 2));
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

}  // namespace

}  // namespace kestol
