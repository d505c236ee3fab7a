#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "kestol/mechanisms/SparseModes.h"

namespace kestol {

namespace {

using testing::DoubleNear;
using testing::Pointwise;

const std::vector<ReaVecT> kNoRigid;

ReaVecT VectorOf(const std::vector<double>& entries) {
  ReaVecT x(static_cast<int>(entries.size()));
  std::copy(entries.begin(), entries.end(), x.begin());
  return x;
}

/// The entries, the first of the largest ones as 1: the scale of a mode means nothing.
std::vector<double> Scaled(const ReaVecT& mode) {
  constexpr double kEqual = 1e-9;
  double largest = 0.0;
  for (const double entry : mode)
    if (std::abs(entry) > (1.0 + kEqual) * std::abs(largest)) largest = entry;
  std::vector<double> entries;
  for (const double entry : mode) entries.push_back(entry / largest);
  return entries;
}

void ExpectModes(const std::vector<ReaVecT>& found, const std::vector<ReaVecT>& wanted) {
  ASSERT_EQ(found.size(), wanted.size());
  for (std::size_t m = 0; m < wanted.size(); ++m)
    EXPECT_THAT(Scaled(found[m]), Pointwise(DoubleNear(1e-12), Scaled(wanted[m]))) << m;
}

/// a and b turned in their plane: another basis of the same space.
std::vector<ReaVecT> Turned(const ReaVecT& a, const ReaVecT& b, double angle) {
  std::vector<ReaVecT> turned(2, ReaVecT(a.n));
  for (int i = 1; i <= a.n; ++i) {
    turned[0](i) = std::cos(angle) * a(i) - std::sin(angle) * b(i);
    turned[1](i) = std::sin(angle) * a(i) + std::cos(angle) * b(i);
  }
  return turned;
}

TEST(SparseModes, DoNotDependOnTheBasisOfTheSpace) {
  const ReaVecT a = VectorOf({0, 1, 0, -1, 0}), b = VectorOf({1, 0, 1, 0, 0});
  const std::vector<ReaVecT> wanted = {b, a};
  for (const double angle : {0.0, 0.3, 0.785, 1.2, 2.9, 4.4})
    ExpectModes(SparseModes(Turned(a, b, angle), kNoRigid), wanted);
}

TEST(SparseModes, BeginWithWhatMovesMost) {
  const ReaVecT a = VectorOf({0.5, 0, 0.5, 0.5, 0.5}), b = VectorOf({0, 1, 0, 0, 0});
  const std::vector<ReaVecT> wanted = {b, VectorOf({1, 0, 1, 1, 1})};
  for (const double angle : {0.0, 0.6, 1.5, 2.5})
    ExpectModes(SparseModes(Turned(a, b, angle), kNoRigid), wanted);
}

TEST(SparseModes, LeaveOutWhatIsRigid) {
  const std::vector<ReaVecT> rigid = {VectorOf({1, 1, 1, 1})};
  const ReaVecT own = VectorOf({0, 0, 0, 2});
  const std::vector<ReaVecT> wanted = {VectorOf({0, 0, 0, 1})};
  for (const double angle : {0.1, 0.9, 2.0})
    ExpectModes(SparseModes(Turned(rigid.front(), own, angle), rigid), wanted);
}

TEST(SparseModes, LeaveOutWhatIsNotFinite) {
  constexpr double kHuge = std::numeric_limits<double>::max();
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  const std::vector<ReaVecT> finite = {VectorOf({0, 1, 0})};
  for (const double bad : {kHuge, kInfinity, kNaN}) {
    EXPECT_TRUE(SparseModes({VectorOf({bad, bad, 1})}, kNoRigid).empty()) << bad;
    ExpectModes(SparseModes(finite, {VectorOf({bad, 0, bad})}), finite);
  }
}

}  // namespace

}  // namespace kestol
