#include <utility>

#include "algebra/Matriu.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/Vectors.h"

namespace kestol {

namespace {

using Numbers = std::vector<double>;

constexpr int kLargest = 2147483647;

void ExpectShape(const Matriu& M, int rows, int columns) {
  EXPECT_EQ(M.nrows, rows);
  EXPECT_EQ(M.ncols, columns);
  EXPECT_EQ(M.size, static_cast<unsigned>(rows * columns));
}

// --- storage ---------------------------------------------------------------------------------

TEST(Matriu, NewMatricesAreZero) {
  const Matriu M(2, 3);
  ExpectShape(M, 2, 3);
  EXPECT_EQ(Entries(M), Numbers(6, 0.0));
}

TEST(Matriu, RefusesNegativeSizes) {
  EXPECT_FATAL(Matriu(-1, 2), "Can't create a Matriu of size -1,2");
  EXPECT_FATAL(Matriu(3, -4), "Can't create a Matriu of size 3,-4");
}

TEST(Matriu, ZeroSizeKeepsItsShape) {
  ExpectShape(Matriu(0, 3), 0, 3);
  ExpectShape(Matriu(3, 0), 3, 0);
  EXPECT_EQ(Matriu(3, 0).data, nullptr);
  const Matriu M(3, 0);
  const Matriu copy = M;
  ExpectShape(copy, 3, 0);
}

TEST(Matriu, SizesBeyondTheFieldCountAsExhaustedHeap) {
  EXPECT_NO_MEMORY(Matriu(65536, 65536));
  EXPECT_NO_MEMORY(Matriu(kLargest, kLargest));
}

TEST(Matriu, EntriesLieRowByRow) {
  Matriu M(2, 3);
  M(1, 1) = 11;
  M(1, 3) = 13;
  M(2, 1) = 21;
  M(2, 3) = 23;
  EXPECT_EQ(Entries(M), (Numbers{11, 0, 13, 21, 0, 23}));
}

TEST(Matriu, CopiesAreIndependent) {
  const Matriu M = Mat(1, 2, {1, 2});
  Matriu copy = M;
  copy(1, 1) = 9;
  EXPECT_EQ(M(1, 1), 1.0);
  EXPECT_EQ(copy(1, 1), 9.0);
}

TEST(Matriu, CopyAssignmentKeepsTheBufferForEqualEntryCounts) {
  Matriu M(3, 2);
  const double* const buffer = M.begin();
  const Matriu other = Mat(2, 3, {1, 2, 3, 4, 5, 6});
  M = other;
  EXPECT_EQ(M.begin(), buffer);
  EXPECT_EQ(M, other);
  M = std::as_const(M);
  EXPECT_EQ(M, other);
  const Matriu small = Mat(1, 1, {7});
  M = small;
  EXPECT_EQ(M, small);
}

TEST(Matriu, TemporariesGiveTheirBufferAwayAndAreCleared) {
  Matriu M = Mat(2, 3, {1, 2, 3, 4, 5, 6});
  const double* const buffer = M.begin();
  Matriu taken = std::move(M);
  EXPECT_EQ(taken.begin(), buffer);
  ExpectShape(M, 0, 0);        // NOLINT(bugprone-use-after-move)
  EXPECT_EQ(M.data, nullptr);  // NOLINT(bugprone-use-after-move)
  Matriu target(2, 3);
  target = std::move(taken);
  EXPECT_EQ(target.begin(), buffer);
  ExpectShape(taken, 0, 0);  // NOLINT(bugprone-use-after-move)
  Matriu& same = target;
  target = std::move(same);
  ExpectShape(target, 2, 3);
}

TEST(Matriu, VectorsBecomeColumns) {
  const Matriu long5(Vec({1, 2, 3, 4, 5}));
  ExpectShape(long5, 5, 1);
  EXPECT_EQ(Entries(long5), (Numbers{1, 2, 3, 4, 5}));
  Matriu M(ReaVec3(1, 2, 3));
  ExpectShape(M, 3, 1);
  EXPECT_EQ(Entries(M), (Numbers{1, 2, 3}));
  M = Vec({8, 9});
  ExpectShape(M, 2, 1);
  M = Vec<ReaVec3>({4});
  EXPECT_EQ(Entries(M), (Numbers{4}));
}

// --- shape and content -----------------------------------------------------------------------

TEST(Matriu, FillSetsEveryEntry) {
  Matriu M(2, 2);
  M.Fill(1.5);
  EXPECT_EQ(Entries(M), Numbers(4, 1.5));
}

TEST(Matriu, FillRefusesZeroSize) {
  EXPECT_FATAL(Matriu().Fill(1.5), "Can't fill with 1.5 a zero size Matriu");
}

TEST(Matriu, RedimensionWithTheSameCountKeepsBufferAndEntries) {
  Matriu M = Mat(2, 3, {1, 2, 3, 4, 5, 6});
  const double* const buffer = M.begin();
  M.Redimension(3, 2);
  ExpectShape(M, 3, 2);
  EXPECT_EQ(M.begin(), buffer);
  EXPECT_EQ(Entries(M), (Numbers{1, 2, 3, 4, 5, 6}));
}

TEST(Matriu, RedimensionToAnotherCountGivesAnotherBuffer) {
  Matriu M(2, 3);
  M.Redimension(4, 5);
  ExpectShape(M, 4, 5);
  M(4, 5) = 1.0;
  M.Redimension(0, 5);
  ExpectShape(M, 0, 5);
  EXPECT_EQ(M.data, nullptr);
}

TEST(Matriu, RedimensionRefusesNegativeSizes) {
  Matriu M(2, 3);
  EXPECT_FATAL(M.Redimension(-2, -3), "Can't redimension to a negative values");
  EXPECT_FATAL(M.Redimension(2, -3), "Can't redimension to a negative values");
}

TEST(Matriu, IsZeroWantsEveryEntryExactlyZero) {
  EXPECT_TRUE(Matriu(2, 2).IsZero());
  EXPECT_TRUE(Mat(1, 2, {0.0, -0.0}).IsZero());
  EXPECT_FALSE(Mat(1, 2, {0.0, 1e-300}).IsZero());
}

TEST(Matriu, ZeroSizeIsNotZero) {
  EXPECT_FALSE(Matriu().IsZero());
  EXPECT_FALSE(Matriu(0, 4).IsZero());
}

TEST(Matriu, IdentityHasAUnitDiagonal) {
  EXPECT_EQ(Matriu::Identity(2), Mat(2, 2, {1, 0, 0, 1}));
  EXPECT_FATAL(Matriu::Identity(0), "Can't construct an identity Matriu of size 0");
  EXPECT_FATAL(Matriu::Identity(-2), "Can't construct an identity Matriu of size -2");
}

TEST(Matriu, TransposeExchangesRowsAndColumns) {
  EXPECT_EQ(Transpose(Mat(2, 3, {1, 2, 3, 4, 5, 6})), Mat(3, 2, {1, 4, 2, 5, 3, 6}));
  ExpectShape(Transpose(Matriu(0, 3)), 3, 0);
}

TEST(Matriu, SubMatriuTakesInclusiveBoundsFromOne) {
  const Matriu M = Mat(3, 3, {1, 2, 3, 4, 5, 6, 7, 8, 9});
  EXPECT_EQ(M.subMatriu(2, 3, 1, 2), Mat(2, 2, {4, 5, 7, 8}));
  EXPECT_EQ(M.subMatriu(3, 3, 3, 3), Mat(1, 1, {9}));
  EXPECT_EQ(M.subMatriu(1, 3, 1, 3), M);
}

TEST(Matriu, SubMatriuRefusesBoundsOutsideTheMatrix) {
  const Matriu M(3, 4);
  EXPECT_FATAL(M.subMatriu(0, 2, 1, 3),
               "subMatriu incorrect size :\n\tMatriu size nrows=3, ncols=4\n"
               "\tsubMatriu start: row=0, col=1, end: row=2, col=3");
  struct Bounds {
    int rowStart, rowEnd, colStart, colEnd;
  };
  const Bounds kRefused[] = {
      {1, 2, 0, 3},
      {1, 4, 1, 3},
      {1, 2, 1, 5},
      {3, 2, 1, 3},
      {1, 2, 4, 3}
  };
  for (const Bounds& b : kRefused) {
    std::ostringstream text;
    text << "subMatriu incorrect size :\n\tMatriu size nrows=3, ncols=4\n\tsubMatriu start: row="
         << b.rowStart << ", col=" << b.colStart << ", end: row=" << b.rowEnd
         << ", col=" << b.colEnd;
    EXPECT_FATAL(M.subMatriu(b.rowStart, b.rowEnd, b.colStart, b.colEnd), text.str());
  }
}

TEST(Matriu, PlaceBlockInsideOverwritesOnlyTheBlock) {
  Matriu M(3, 3);
  const double* const buffer = M.begin();
  M.PlaceBlock(2, 2, Mat(1, 2, {1, 2}));
  EXPECT_EQ(M, Mat(3, 3, {0, 0, 0, 0, 1, 2, 0, 0, 0}));
  EXPECT_EQ(M.begin(), buffer);
}

TEST(Matriu, PlaceBlockBeyondTheEdgeGrowsAndKeepsPlaces) {
  Matriu M = Mat(2, 2, {1, 2, 3, 4});
  M.PlaceBlock(2, 3, Mat(2, 2, {5, 6, 7, 8}));
  EXPECT_EQ(M, Mat(3, 4, {1, 2, 0, 0, 3, 4, 5, 6, 0, 0, 7, 8}));
}

TEST(Matriu, PlaceBlockGrowsInOneDirectionOnly) {
  Matriu M = Mat(2, 2, {1, 2, 3, 4});
  M.PlaceBlock(1, 3, Mat(1, 1, {9}));
  EXPECT_EQ(M, Mat(2, 3, {1, 2, 9, 3, 4, 0}));
  M.PlaceBlock(3, 1, Mat(1, 1, {8}));
  EXPECT_EQ(M, Mat(3, 3, {1, 2, 9, 3, 4, 0, 8, 0, 0}));
}

TEST(Matriu, PlaceBlockOfItselfIsCopiedFirst) {
  Matriu M = Mat(2, 2, {1, 2, 3, 4});
  M.PlaceBlock(2, 2, M);
  EXPECT_EQ(M, Mat(3, 3, {1, 2, 0, 3, 1, 2, 0, 3, 4}));
}

TEST(Matriu, PlaceBlockIntoZeroSizeMakesRoom) {
  Matriu M;
  M.PlaceBlock(1, 1, Mat(1, 1, {5}));
  EXPECT_EQ(M, Mat(1, 1, {5}));
  M.PlaceBlock(1, 2, Mat(1, 1, {6}));
  EXPECT_EQ(M, Mat(1, 2, {5, 6}));
  Matriu rowsOnly(2, 0);
  rowsOnly.PlaceBlock(1, 2, Mat(1, 1, {5}));
  EXPECT_EQ(rowsOnly, Mat(2, 2, {0, 5, 0, 0}));
}

TEST(Matriu, PlaceBlockOfZeroSizeDoesNothing) {
  Matriu M(2, 2);
  M.PlaceBlock(5, 5, Matriu(3, 0));
  ExpectShape(M, 2, 2);
}

TEST(Matriu, PlaceBlockRefusesPlacesBeforeTheFirstEntry) {
  Matriu M(2, 2);
  EXPECT_FATAL(M.PlaceBlock(0, 1, Matriu(1, 1)), "Can't place a block at row=0, col=1");
  EXPECT_FATAL(M.PlaceBlock(1, -1, Matriu(1, 1)), "Can't place a block at row=1, col=-1");
}

TEST(Matriu, PlaceBlockBeyondTheLargestRowCountsAsExhaustedHeap) {
  Matriu M(2, 2);
  EXPECT_NO_MEMORY(M.PlaceBlock(kLargest, 1, Matriu(2, 1)));
}

// --- concatenation ---------------------------------------------------------------------------

TEST(Matriu, HorizontalConcatenationPutsColumnsSideBySide) {
  EXPECT_EQ(HorizontalConcatenation(Mat(2, 1, {1, 2}), Mat(2, 2, {3, 4, 5, 6})),
            Mat(2, 3, {1, 3, 4, 2, 5, 6}));
  EXPECT_FATAL(HorizontalConcatenation(Matriu(2, 3), Matriu(4, 5)),
               "Horizontal concatenation with diferent number of rows\n"
               "\tMatriu 1 : nrows=2, ncols=3\n\tMatriu 2 : nrows=4, ncols=5");
}

TEST(Matriu, VerticalConcatenationPutsRowsBelowEachOther) {
  EXPECT_EQ(VerticalConcatenation(Mat(1, 2, {1, 2}), Mat(2, 2, {3, 4, 5, 6})),
            Mat(3, 2, {1, 2, 3, 4, 5, 6}));
  EXPECT_FATAL(VerticalConcatenation(Matriu(2, 3), Matriu(4, 5)),
               "Vertical concatenation with diferent number of columns\n"
               "\tMatriu 1 : nrows=2, ncols=3\n\tMatriu 2 : nrows=4, ncols=5");
}

TEST(Matriu, ConcatenationsRefuseZeroSizeBeforeTheyLookAtShapes) {
  const char* const text = "Can't concatenate a zero size Matriu";
  EXPECT_FATAL(HorizontalConcatenation(Matriu(), Matriu(2, 2)), text);
  EXPECT_FATAL(HorizontalConcatenation(Matriu(2, 2), Matriu(2, 0)), text);
  EXPECT_FATAL(VerticalConcatenation(Matriu(), Matriu(2, 2)), text);
  EXPECT_FATAL(VerticalConcatenation(Matriu(2, 2), Matriu(0, 2)), text);
}

}  // namespace

}  // namespace kestol
