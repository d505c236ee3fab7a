#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include "algebra/TxoleskyKernel.h"

namespace kestol {

namespace {

constexpr int kLongest = 200;

/// Small whole numbers without a pattern: all sums of products are exact.
double Digit(int k) {
  return (k * 7919 + 13) % 17 - 8;
}

class TxoleskyKernel : public testing::TestWithParam<TileKernel> {};

INSTANTIATE_TEST_SUITE_P(Kernels, TxoleskyKernel, testing::ValuesIn(SupportedTileKernels()),
                         [](const auto& kernel) {
                           return "With" + std::string(kernel.param.name).substr(0, 3) + "Bits";
                         });

TEST_P(TxoleskyKernel, SubtractsProductsOfAnyLengthFromScatteredRows) {
  alignas(64) static double b[kLongest * kTileColumns];
  alignas(64) static double c[20 * kTileColumns];
  static double columns[kTileRows][kLongest];
  for (int k = 0; k < kLongest * kTileColumns; ++k) b[k] = Digit(k);
  for (int k = 0; k < kTileRows * kLongest; ++k) columns[k / kLongest][k % kLongest] = Digit(3 * k);
  const int rows[kTileRows] = {4, 19, 0, 7, 6, 11, 2, 13};
  const double* a[kTileRows];
  for (int r = 0; r < kTileRows; ++r) a[r] = columns[r];

  for (const int count : {1, 2, 7, 95, 96, 97, 200}) {
    for (double& value : c) value = 1.0;
    const double* const last = b + (kLongest - 1) * kTileColumns;
    GetParam().subtractProduct(a, last, count, c, rows);
    for (int r = 0; r < kTileRows; ++r) {
      for (int column = 0; column < kTileColumns; ++column) {
        double wanted = 1.0;
        for (int q = 0; q < count; ++q) wanted -= a[r][q] * *(last - q * kTileColumns + column);
        ASSERT_EQ(c[rows[r] * kTileColumns + column], wanted);
      }
    }
    for (const int other : {1, 3, 5, 8, 9, 10, 12, 14, 15, 16, 17, 18})
      for (int column = 0; column < kTileColumns; ++column)
        ASSERT_EQ(c[other * kTileColumns + column], 1.0);
  }
}

/// g := u^-T g undone by u^T g.
TEST_P(TxoleskyKernel, SolvesWithTheStrictUpperTriangleOnly) {
  double u[kTileRows * kTileRows];
  for (int k = 0; k < kTileRows * kTileRows; ++k) u[k] = Digit(k);
  alignas(64) double g[kTileRows * kTileColumns];
  for (int k = 0; k < kTileRows * kTileColumns; ++k) g[k] = Digit(5 * k);
  GetParam().solveTriangle(u, g);
  for (int i = 0; i < kTileRows; ++i) {
    for (int c = 0; c < kTileColumns; ++c) {
      double product = g[kTileColumns * i + c];
      for (int k = 0; k < i; ++k) product += u[kTileRows * k + i] * g[kTileColumns * k + c];
      ASSERT_EQ(product, Digit(5 * (kTileColumns * i + c)));
    }
  }
}

TEST_P(TxoleskyKernel, DividesEachRowByItsOwnNumber) {
  alignas(64) double g[kTileRows * kTileColumns];
  alignas(64) double u[kTileRows * kTileColumns];
  const double d[kTileRows] = {1, -2, 3, 7, 49, 0.1, 1e-15, 1e300};
  for (int k = 0; k < kTileRows * kTileColumns; ++k) g[k] = Digit(k);
  GetParam().divideRows(g, d, u);
  for (int k = 0; k < kTileRows * kTileColumns; ++k) ASSERT_EQ(u[k], g[k] / d[k / kTileColumns]);
}

TEST(TxoleskyKernels, TheLastOneRunsEverywhere) {
  ASSERT_FALSE(SupportedTileKernels().empty());
  EXPECT_STREQ(SupportedTileKernels().back().name, "128 bits");
}

}  // namespace

}  // namespace kestol
