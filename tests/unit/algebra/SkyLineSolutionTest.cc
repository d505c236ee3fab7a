// Rows, prescribed values and the solution of the skyline solver.
#include <cmath>
#include <sstream>

#include "tests/support/ExpectFatal.h"
#include "tests/support/FlushCounter.h"
#include "tests/support/SmallSkyLine.h"

namespace kestol {

namespace {

using testing::ElementsAre;

/// Some profile, and numbers in it that have no pattern.
SkyLine DominantSkyLine(const std::vector<int>& heights) {
  const int n = static_cast<int>(heights.size());
  SkyLine K(n);
  for (int j = 1; j <= n; ++j) K.AddDegreePair(j - heights[j - 1] + 1, j);
  K.Allocate(1);
  for (int j = 1; j <= n; ++j)
    for (int i = j - heights[j - 1] + 1; i <= j; ++i)
      K.Entry(i, j) = i == j ? 9.0 + 0.1 * i : std::sin(5.0 * i + 3.0 * j);
  return K;
}

SkyLine Factorised(SkyLine K) {
  EXPECT_EQ(K.Factorise(nullptr), 0);
  return K;
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

TEST(SkyLine, TimesIsAllRows) {
  const SkyLine K = DominantSkyLine({1, 2, 2, 4, 1, 3, 7, 2});
  ReaVecT x(8);
  for (int i = 1; i <= 8; ++i) x(i) = 1.0 / i;
  ReaVecT y = Vector({99});
  K.Times(x, y);
  ASSERT_EQ(y.n, 8);
  for (int i = 1; i <= 8; ++i) EXPECT_NEAR(y(i), K.RowTimesVector(i, x), 1e-14) << i;
}

TEST(SkyLine, ScalesRowsAndColumnsAndShiftsTheDiagonal) {
  SkyLine K = Full(3, {4, 1, 2, 5, 3, 6});
  K.ScaleAndShift(Vector({2, 10, -1}), 0.5);
  EXPECT_THAT(Entries(K), ElementsAre(16.5, 20, -4, 20, 500.5, -30, -4, -30, 6.5));
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
  EXPECT_TRUE(K.IsFactorised());
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
  EXPECT_FALSE(K.IsFactorised());
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

TEST(SkyLine, OneFactorServesManyRightHandSides) {
  const SkyLine free = Chain(40);
  SkyLine K = Chain(40);
  ASSERT_EQ(K.Factorise(nullptr), 0);
  for (int loaded = 1; loaded <= 40; ++loaded) {
    ReaVecT f(40);
    f(loaded) = 1.0;
    ASSERT_EQ(K.Substitute(f, nullptr), 0);
    for (int i = 1; i <= 40; ++i)
      EXPECT_NEAR(free.RowTimesVector(i, f), i == loaded ? 1.0 : 0.0, 1e-13);
  }
}

TEST(SkyLine, SolvingIsFactorisingAndSubstituting) {
  SkyLine once = Chain(700);
  SkyLine parts = Chain(700);
  ReaVecT f(700);
  f.Fill(0.3);
  ReaVecT g = f;
  std::ostringstream info[2];
  ASSERT_EQ(once.Solve(f, &info[0]), 0);
  ASSERT_EQ(parts.Factorise(&info[1]), 0);
  EXPECT_THAT(info[1].str(), testing::EndsWith("Txolesky finished\n"));
  ASSERT_EQ(parts.Substitute(g, &info[1]), 0);
  EXPECT_EQ(Entries(f), Entries(g));
  EXPECT_EQ(info[0].str(), info[1].str());
}

TEST(SkyLine, SubstitutesOnlyWhereThereIsAFactor) {
  SkyLine K = Full(2, {1, 1, 1});
  ReaVecT f = Vector({1, 1});
  const char* const refused = "error in SkyLine::Substitute. Matrix not factorised\n";
  EXPECT_FATAL(K.Substitute(f, nullptr), refused);
  EXPECT_EQ(K.Factorise(nullptr), 2);
  EXPECT_FATAL(K.Substitute(f, nullptr), refused);
  EXPECT_FATAL(Factorised(Chain(2)).Factorise(nullptr),
               "error in SkyLine::Solve. Matrix already factorised\n");
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

}  // namespace kestol
