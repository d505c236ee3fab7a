#include "algebra/FixedMatrix.h"
#include "tests/support/ExpectFatal.h"

namespace kestol {

namespace {

constexpr FixedMatrix<2, 3> kA{
    {1, 2, 3, 4, 5, 6}
};
constexpr FixedMatrix<3, 2> kB{
    {7, 8, 9, 10, 11, 12}
};

TEST(FixedMatrix, StartsAtZero) {
  const FixedMatrix<2, 2> zero;
  for (const double entry : zero.entries) EXPECT_EQ(entry, 0.0);
}

TEST(FixedMatrix, CountsRowsAndColumnsFromOneRowByRow) {
  EXPECT_EQ(kA(1, 1), 1.0);
  EXPECT_EQ(kA(1, 3), 3.0);
  EXPECT_EQ(kA(2, 1), 4.0);
  FixedMatrix<2, 3> A = kA;
  A(2, 3) = 60.0;
  EXPECT_EQ(A.entries[5], 60.0);
}

TEST(FixedMatrix, ProductIsRowsTimesColumns) {
  const FixedMatrix<2, 2> product = kA * kB;
  EXPECT_EQ(product.entries, (std::array<double, 4>{58, 64, 139, 154}));
}

TEST(FixedMatrix, TransposeTimesEqualsTheProductWithTheTranspose) {
  EXPECT_EQ(TransposeTimes(kA, kA).entries, (Transpose(kA) * kA).entries);
  EXPECT_EQ(TransposeTimes(kA, kA)(1, 2), 1.0 * 2 + 4.0 * 5);
}

TEST(FixedMatrix, TransposeExchangesIndices) {
  const FixedMatrix<3, 2> T = Transpose(kA);
  for (int i = 1; i <= 2; ++i)
    for (int j = 1; j <= 3; ++j) EXPECT_EQ(T(j, i), kA(i, j));
}

TEST(FixedMatrix, AddsAndScalesInPlace) {
  FixedMatrix<2, 3> A = kA;
  (A += kA) *= 0.5;
  EXPECT_EQ(A.entries, kA.entries);
}

}  // namespace

}  // namespace kestol
