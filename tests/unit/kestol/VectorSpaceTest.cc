#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "kestol/mechanisms/VectorSpace.h"

namespace kestol {

namespace {

/// 1, 2, ..., n.
ReaVecT Counting(int n) {
  ReaVecT x(n);
  for (int i = 1; i <= n; ++i) x(i) = i;
  return x;
}

TEST(VectorSpace, ProductsTakeEveryEntryOfAnyLength) {
  for (int n = 1; n <= 40; ++n) {
    const ReaVecT x = Counting(n);
    const double squares = n * (n + 1.0) * (2.0 * n + 1.0) / 6.0;
    EXPECT_EQ(DotOf(x, x), squares) << n;
    EXPECT_EQ(LengthOf(x), std::sqrt(squares)) << n;
    ReaVecT ones(n);
    ones.Fill(1.0);
    EXPECT_EQ(DotOf(ones, x), n * (n + 1.0) / 2.0) << n;
  }
}

TEST(VectorSpace, AddsAMultiple) {
  ReaVecT y = Counting(9);
  AddTo(y, -3.0, Counting(9));
  for (int i = 1; i <= 9; ++i) EXPECT_EQ(y(i), -2.0 * i);
}

TEST(VectorSpace, WhatIsTakenOutIsGoneAndTheRestStays) {
  std::vector<ReaVecT> basis(2, ReaVecT(3));
  for (ReaVecT& direction : basis) direction.Fill(0.0);
  basis[0](1) = 0.6;
  basis[0](2) = 0.8;
  basis[1](1) = -0.8;
  basis[1](2) = 0.6;
  ReaVecT x = Counting(3);
  TakeOut(x, {});
  EXPECT_EQ(x(1), 1.0);
  TakeOut(x, basis);
  EXPECT_NEAR(x(1), 0.0, 1e-15);
  EXPECT_NEAR(x(2), 0.0, 1e-15);
  EXPECT_EQ(x(3), 3.0);
}

}  // namespace

}  // namespace kestol
