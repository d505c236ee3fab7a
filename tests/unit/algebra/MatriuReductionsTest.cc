#include <limits>

#include "algebra/Matriu.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/Vectors.h"

namespace kestol {

namespace {

const Matriu kM = Mat(2, 3, {1, -2, 3, -4, 5, -7});

TEST(Matriu, TraceSumsTheDiagonal) {
  EXPECT_EQ(Mat(2, 2, {1, 2, 3, 4}).Trace(), 5.0);
}

TEST(Matriu, TraceRefusesZeroSizeBeforeRectangles) {
  EXPECT_FATAL(Matriu(0, 3).Trace(), "Can't compute the trace of a zero size Matriu");
  EXPECT_FATAL(kM.Trace(), "Can't compute the trace of a non square Matriu");
}

TEST(Matriu, NormsAreTheLargestSignedSums) {
  EXPECT_EQ(kM.rowNorm(), 2.0);
  EXPECT_EQ(kM.colNorm(), 3.0);
}

TEST(Matriu, NormsLookAtEveryRowAndColumn) {
  for (int i = 1; i <= 3; ++i)
    for (int j = 1; j <= 3; ++j) {
      Matriu M(3, 3);
      M(i, j) = 5.0;
      EXPECT_EQ(M.rowNorm(), 5.0) << i << " " << j;
      EXPECT_EQ(M.colNorm(), 5.0) << i << " " << j;
    }
}

TEST(Matriu, NormsOfNegativeSumsAreZero) {
  const Matriu M = Mat(2, 2, {-1, -2, 1, -5});
  EXPECT_EQ(M.rowNorm(), 0.0);
  EXPECT_EQ(M.colNorm(), 0.0);
}

TEST(Matriu, SumsOverAllEntries) {
  EXPECT_EQ(kM.sumSquare(), 1.0 + 4 + 9 + 16 + 25 + 49);
  EXPECT_EQ(kM.sumAbsVal(), 22.0);
  EXPECT_EQ(kM.maxAbsVal(), 7.0);
}

TEST(Matriu, ScornClearsEntriesUpToTheTolerance) {
  Matriu M = Mat(1, 4, {0.5, -0.5, 0.75, -2});
  M.scorn(0.5);
  EXPECT_EQ(M, Mat(1, 4, {0, 0, 0.75, -2}));
}

TEST(Matriu, ReductionsRefuseZeroSize) {
  Matriu empty;
  EXPECT_FATAL(empty.rowNorm(), "Can't compute the rowNorm of a zero size Matriu");
  EXPECT_FATAL(empty.colNorm(), "Can't compute the colNorm of a zero size Matriu");
  EXPECT_FATAL(empty.sumSquare(), "Can't compute the sumSquare of a zero size Matriu");
  EXPECT_FATAL(empty.sumAbsVal(), "Can't compute the sumAbsVal of a zero size Matriu");
  EXPECT_FATAL(empty.maxAbsVal(), "Can't compute the maxAbsVal of a zero size Matriu");
  EXPECT_FATAL(empty.scorn(1.0), "Can't scorn a zero size Matriu");
}

TEST(Matriu, EqualityIsExactAndNeedsEqualShapes) {
  EXPECT_TRUE(Mat(2, 1, {1, 2}) == Mat(2, 1, {1, 2}));
  EXPECT_FALSE(Mat(2, 1, {1, 2}) == Mat(1, 2, {1, 2}));
  EXPECT_FALSE(Mat(2, 1, {1, 2}) == Mat(2, 1, {1, 2 + 1e-15}));
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_TRUE(Mat(1, 1, {infinity}) == Mat(1, 1, {infinity}));
}

TEST(Matriu, ZeroSizeMatricesOfEqualShapeAreEqual) {
  EXPECT_TRUE(Matriu(0, 3) == Matriu(0, 3));
  EXPECT_FALSE(Matriu(0, 3) == Matriu(3, 0));
  EXPECT_TRUE(Equal(Matriu(0, 3), Matriu(0, 3), 0.0));
}

TEST(Matriu, EqualityWithinATolerance) {
  const Matriu A = Mat(1, 2, {1, 2});
  EXPECT_TRUE(Equal(A, Mat(1, 2, {1.5, 1.5}), 0.5));
  EXPECT_FALSE(Equal(A, Mat(1, 2, {1, 2.75}), 0.5));
  EXPECT_FALSE(Equal(A, Mat(2, 1, {1, 2}), 0.5));
  EXPECT_FALSE(Equal(A, Mat(1, 2, {1, std::numeric_limits<double>::quiet_NaN()}), 0.5));
}

}  // namespace

}  // namespace kestol
