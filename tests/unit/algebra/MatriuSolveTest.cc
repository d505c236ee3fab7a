#include <cmath>
#include <limits>
#include <random>

#include "algebra/Matriu.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/Vectors.h"

namespace kestol {

namespace {

using Numbers = std::vector<double>;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// n x n, diagonally dominant, so that no pivot is small.
Matriu Dominant(int n) {
  std::mt19937 random(11);
  std::uniform_real_distribution<double> entry(-1.0, 1.0);
  Matriu M(n, n);
  for (double& value : M) value = entry(random);
  for (int i = 1; i <= n; ++i) M(i, i) += n;
  return M;
}

// The n x n matrix that moves every entry one place down, the last to the first.
Matriu Rotation(int n) {
  Matriu M(n, n);
  for (int i = 1; i <= n; ++i) M(i % n + 1, i) = 1.0;
  return M;
}

// --- inverse ---------------------------------------------------------------------------------

TEST(Matriu, InverseTimesMatrixIsTheIdentityAtEveryOrder) {
  for (int n = 1; n <= 9; ++n) {
    const Matriu M = Dominant(n);
    EXPECT_TRUE(Equal(Inverse(M) * M, Matriu::Identity(n), 1e-14)) << n;
    EXPECT_TRUE(Equal(M * Inverse(M), Matriu::Identity(n), 1e-14)) << n;
  }
}

TEST(Matriu, InverseInClosedForm) {
  EXPECT_EQ(Inverse(Mat(1, 1, {4})), Mat(1, 1, {0.25}));
  EXPECT_EQ(Inverse(Mat(2, 2, {1, 2, 3, 4})), Mat(2, 2, {-2, 1, 1.5, -0.5}));
  EXPECT_EQ(Inverse(Mat(3, 3, {2, 0, 0, 0, 4, 8, 0, 0, 1})),
            Mat(3, 3, {0.5, 0, 0, 0, 0.25, -2, 0, 0, 1}));
}

TEST(Matriu, InverseUpToOrderFourNeedsNoDiagonal) {
  for (int n = 2; n <= 4; ++n) EXPECT_EQ(Inverse(Rotation(n)), Transpose(Rotation(n))) << n;
  EXPECT_EQ(Inverse(Mat(2, 2, {0, 1, 1, 0})), Mat(2, 2, {0, 1, 1, 0}));
}

TEST(Matriu, InverseAboveOrderFourTakesADiagonalZeroAsSingular) {
  Matriu M = Matriu::Identity(5);
  M.PlaceBlock(1, 1, Mat(2, 2, {0, 1, 1, 0}));
  EXPECT_FATAL(Inverse(M), "Inverse of a singular Matriu. Size = (5 X 5)");
}

TEST(Matriu, InverseRefusesSingularMatrices) {
  EXPECT_FATAL(Inverse(Matriu(1, 1)), "Inverse of a singular Matriu. Size = (1 X 1)");
  EXPECT_FATAL(Inverse(Mat(2, 2, {1, 2, 2, 4})), "Inverse of a singular Matriu. Size = (2 X 2)");
  EXPECT_FATAL(Inverse(Mat(3, 3, {1, 2, 3, 4, 5, 6, 7, 8, 9})),
               "Inverse of a singular Matriu. Size = (3 X 3)");
  EXPECT_FATAL(Inverse(Matriu(4, 4)), "Inverse of a singular Matriu. Size = (4 X 4)");
  EXPECT_FATAL(Inverse(Matriu(6, 6)), "Inverse of a singular Matriu. Size = (6 X 6)");
}

TEST(Matriu, InverseTakesTinyDeterminantsAsRegular) {
  EXPECT_EQ(Inverse(1e-20 * Matriu::Identity(3))(2, 2), 1e-40 / (1e-40 * 1e-20));
}

TEST(Matriu, InverseRefusesZeroSizeAndRectangles) {
  EXPECT_FATAL(Inverse(Matriu(0, 2)), "Can't compute the inverse of a zero size Matriu");
  EXPECT_FATAL(Inverse(Matriu(2, 3)),
               "Can't compute the inverse of a rectangular Matriu\n\tnrows =2, ncols =3");
}

// --- determinant -----------------------------------------------------------------------------

TEST(Matriu, DeterminantByFirstColumns) {
  EXPECT_EQ(Determinant(Mat(1, 1, {-3})), -3.0);
  EXPECT_EQ(Determinant(Mat(2, 2, {1, 2, 3, 4})), -2.0);
  EXPECT_EQ(Determinant(Mat(3, 3, {2, 1, 3, 0, 4, 1, 5, 2, 2})), -43.0);
  EXPECT_EQ(Determinant(Mat(4, 4, {1, 2, 0, 1, 3, 1, 1, 0, 0, 2, 1, 4, 2, 0, 3, 1})), 21.0);
}

TEST(Matriu, DeterminantOfAProductIsTheProductOfDeterminants) {
  for (int n = 2; n <= 4; ++n) {
    const Matriu M = Dominant(n);
    const Matriu N = Rotation(n) * M;
    EXPECT_NEAR(Determinant(M * N), Determinant(M) * Determinant(N),
                1e-12 * std::abs(Determinant(M) * Determinant(N)));
    EXPECT_EQ(Determinant(Rotation(n)), n % 2 == 0 ? -1.0 : 1.0);
  }
}

TEST(Matriu, DeterminantRefusesZeroSizeRectanglesAndOrdersAboveFour) {
  EXPECT_FATAL(Determinant(Matriu()), "Can't compute the determinant of a zero size Matriu");
  EXPECT_FATAL(Determinant(Matriu(3, 2)),
               "Can't compute the determinant of a rectangular Matriu\n\tnrows =3, ncols =2");
  EXPECT_FATAL(Determinant(Matriu::Identity(5)),
               "Not implemented yet determinant for a Matriu greater than 4");
}

// --- Crout -----------------------------------------------------------------------------------

TEST(Matriu, CroutGivesLowerAndUnitUpperFactors) {
  // L = (2 0; 6 3), U = (1 4; 0 1).
  EXPECT_EQ(CroutDecomposition(Mat(2, 2, {2, 8, 6, 27})), Mat(2, 2, {2, 4, 6, 3}));
  EXPECT_EQ(CroutDecomposition(Mat(1, 1, {7})), Mat(1, 1, {7}));
}

TEST(Matriu, CroutFactorsMultiplyToTheMatrix) {
  for (int n = 1; n <= 7; ++n) {
    const Matriu M = Dominant(n);
    const Matriu C = CroutDecomposition(M);
    Matriu L(n, n), U = Matriu::Identity(n);
    for (int i = 1; i <= n; ++i)
      for (int j = 1; j <= n; ++j) (i >= j ? L : U)(i, j) = C(i, j);
    EXPECT_TRUE(Equal(L * U, M, 1e-13)) << n;
  }
}

TEST(Matriu, CroutDividesByZeroInSilence) {
  const Matriu C = CroutDecomposition(Mat(2, 2, {0, 1, 1, 0}));
  EXPECT_EQ(C(1, 2), std::numeric_limits<double>::infinity());
}

TEST(Matriu, CroutRefusesZeroSizeAndRectangles) {
  EXPECT_FATAL(CroutDecomposition(Matriu()),
               "Can't compute the crout decomposition of a zero size Matriu");
  EXPECT_FATAL(CroutDecomposition(Matriu(1, 2)),
               "Can't compute the crout decomposition of a rectangular Matriu\n"
               "\tnrows =1, ncols =2");
}

// --- small systems ---------------------------------------------------------------------------

TEST(Matriu, SolveFindsTheVectorThatMadeTheRightHandSide) {
  for (int n = 1; n <= 8; ++n) {
    Matriu A = Dominant(n);
    ReaVecT expected(n);
    for (int i = 1; i <= n; ++i) expected(i) = i - 2.5;
    ReaVecT b = A * expected;
    ReaVecT x;
    ASSERT_EQ(A.Solve(b, x), 0);
    ASSERT_EQ(x.n, n);
    for (int i = 1; i <= n; ++i) EXPECT_NEAR(x(i), expected(i), 1e-14);
  }
}

TEST(Matriu, SolveExchangesRowsWhereAPivotIsMissing) {
  Matriu A = Rotation(6);
  ReaVecT b = Vec({1, 2, 3, 4, 5, 6});
  ReaVecT x;
  EXPECT_EQ(A.Solve(b, x), 0);
  EXPECT_EQ(Entries(x), (Numbers{2, 3, 4, 5, 6, 1}));
}

TEST(Matriu, SolveTakesTheFirstAcceptablePivotNotTheLargest) {
  // With 1e-20 as the pivot the last row drowns; the 1 below would have given x(1) = x(2) = 1.
  Matriu A = Mat(3, 3, {0, 0, 1, 1e-20, 1, 0, 1, 1, 0});
  ReaVecT b = Vec({0, 1, 2});
  ReaVecT x;
  EXPECT_EQ(A.Solve(b, x), 0);
  EXPECT_EQ(A(1, 1), 1e-20);
  EXPECT_EQ(Entries(x), (Numbers{0, 1, 0}));
}

TEST(Matriu, SolvePivotsBelowTheThresholdAreSingular) {
  ReaVecT x;
  for (const double pivot : {0.0, 9e-31, -9e-31, kNaN}) {
    ReaVecT b = Vec({1});
    Matriu A = Mat(1, 1, {pivot});
    EXPECT_EQ(A.Solve(b, x), 1) << pivot;
  }
  ReaVecT b = Vec({1e-30});
  Matriu A = Mat(1, 1, {1e-30});
  EXPECT_EQ(A.Solve(b, x), 0);
  EXPECT_EQ(x(1), 1.0);
}

TEST(Matriu, SolveReportsSingularMatrices) {
  ReaVecT b = Vec({1, 1, 1});
  ReaVecT x;
  Matriu lastPivot = Mat(3, 3, {1, 2, 3, 4, 5, 6, 7, 8, 9});
  EXPECT_EQ(lastPivot.Solve(b, x), 1);
  Matriu noPivot(3, 3);
  EXPECT_EQ(noPivot.Solve(b, x), 1);
  Matriu order0;
  ReaVecT empty;
  EXPECT_EQ(order0.Solve(empty, x), 1);
}

TEST(Matriu, SolveMayPutTheResultIntoTheRightHandSide) {
  Matriu A = Mat(2, 2, {0, 2, 4, 0});
  ReaVecT b = Vec({6, 8});
  EXPECT_EQ(A.Solve(b, b), 0);
  EXPECT_EQ(Entries(b), (Numbers{2, 3}));
}

TEST(Matriu, SolveTakesShortVectors) {
  Matriu A = Mat(3, 3, {0, 2, 0, 4, 0, 0, 0, 0, 5});
  ReaVec3 b(6, 8, 10), x;
  EXPECT_EQ(A.Solve(b, x), 0);
  EXPECT_EQ(Entries(x), (Numbers{2, 3, 2}));
}

TEST(Matriu, SolveRefusesSizesThatDoNotFit) {
  const char* const text = "Matriu solve: incorrect sizes";
  ReaVecT b(2), x;
  ReaVec3 b3(3), x3;
  EXPECT_FATAL(Matriu(2, 3).Solve(b, x), text);
  EXPECT_FATAL(Matriu(3, 3).Solve(b, x), text);
  EXPECT_FATAL(Matriu(4, 4).Solve(b3, x3), text);
}

}  // namespace

}  // namespace kestol
