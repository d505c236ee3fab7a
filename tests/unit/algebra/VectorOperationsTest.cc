#include <cmath>
#include <iomanip>
#include <limits>
#include <sstream>

#include "algebra/VectorOperations.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/FlushCounter.h"
#include "tests/support/Vectors.h"

namespace kestol {

namespace {

// Everything here holds for both vector types.
template <class V>
class VectorOperations : public ::testing::Test {};
using BothTypes = ::testing::Types<ReaVecT, ReaVec3>;
TYPED_TEST_SUITE(VectorOperations, BothTypes);

using Numbers = std::vector<double>;
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

template <class V>
std::string Printed(const V& v) {
  std::ostringstream stream;
  stream << v;
  return stream.str();
}

TYPED_TEST(VectorOperations, CombineTwoVectorsEntryByEntry) {
  const auto a = Vec<TypeParam>({1, 2, 12});
  const auto b = Vec<TypeParam>({4, 5, 3});
  EXPECT_EQ(Entries(a + b), (Numbers{5, 7, 15}));
  EXPECT_EQ(Entries(a - b), (Numbers{-3, -3, 9}));
  EXPECT_EQ(Entries(a * b), (Numbers{4, 10, 36}));
  EXPECT_EQ(Entries(a / b), (Numbers{0.25, 0.4, 4}));
}

TYPED_TEST(VectorOperations, CombineInPlace) {
  const auto b = Vec<TypeParam>({4, 2});
  auto v = Vec<TypeParam>({1, 3});
  EXPECT_EQ(&(v += b), &v);
  EXPECT_EQ(Entries(v), (Numbers{5, 5}));
  EXPECT_EQ(Entries(v -= b), (Numbers{1, 3}));
  EXPECT_EQ(Entries(v *= b), (Numbers{4, 6}));
  EXPECT_EQ(Entries(v /= b), (Numbers{1, 3}));
}

TYPED_TEST(VectorOperations, CombineAVectorWithItself) {
  auto v = Vec<TypeParam>({1, 3});
  EXPECT_EQ(Entries(v += v), (Numbers{2, 6}));
  EXPECT_EQ(Entries(v / v), (Numbers{1, 1}));
}

TYPED_TEST(VectorOperations, TakeAScalar) {
  const auto v = Vec<TypeParam>({1, 3});
  EXPECT_EQ(Entries(v + 2), (Numbers{3, 5}));
  EXPECT_EQ(Entries(v - 2), (Numbers{-1, 1}));
  EXPECT_EQ(Entries(v * 2), (Numbers{2, 6}));
  EXPECT_EQ(Entries(v / 2), (Numbers{0.5, 1.5}));
  auto w = v;
  EXPECT_EQ(Entries(w += 2), (Numbers{3, 5}));
  EXPECT_EQ(Entries(w -= 1), (Numbers{2, 4}));
  EXPECT_EQ(Entries(w *= 3), (Numbers{6, 12}));
  EXPECT_EQ(Entries(w /= 2), (Numbers{3, 6}));
}

TYPED_TEST(VectorOperations, RefuseDifferentLengths) {
  auto a = Vec<TypeParam>({1, 2});
  const auto b = Vec<TypeParam>({1, 2, 3});
  const char* const text = "Different lenght vectors 2 != 3";
  EXPECT_FATAL(a + b, text);
  EXPECT_FATAL(a - b, text);
  EXPECT_FATAL(a * b, text);
  EXPECT_FATAL(a / b, text);
  EXPECT_FATAL(a += b, text);
  EXPECT_FATAL(a -= b, text);
  EXPECT_FATAL(a *= b, text);
  EXPECT_FATAL(a /= b, text);
  EXPECT_FATAL(Dot(a, b), text);
  EXPECT_FATAL(Dot(b, a), "Different lenght vectors 3 != 2");
}

TYPED_TEST(VectorOperations, DivisionByZeroIsRefusedInPlaceOnly) {
  auto v = Vec<TypeParam>({1, -2});
  TypeParam empty(0);
  EXPECT_FATAL(v /= 0.0, "Division by zero.");
  EXPECT_FATAL(v /= -0.0, "Division by zero.");
  EXPECT_FATAL(empty /= 0.0, "Division by zero.");
  EXPECT_EQ(Entries(v / 0.0), (Numbers{kInfinity, -kInfinity}));
  EXPECT_EQ(Entries(v /= Vec<TypeParam>({0, 0})), (Numbers{kInfinity, -kInfinity}));
}

TYPED_TEST(VectorOperations, NegationTurnsEverySign) {
  auto v = Vec<TypeParam>({1, -2, 0});
  EXPECT_EQ(Entries(-v), (Numbers{-1, 2, 0}));
  EXPECT_TRUE(std::signbit((-v)(3)));
  EXPECT_EQ(Entries(Negate(v)), (Numbers{-1, 2, 0}));
}

TYPED_TEST(VectorOperations, EqualityIsExactAndNeedsEqualLengths) {
  const auto v = Vec<TypeParam>({1, 2});
  EXPECT_TRUE(v == Vec<TypeParam>({1, 2}));
  EXPECT_FALSE(v == Vec<TypeParam>({1, std::nextafter(2.0, 3.0)}));
  EXPECT_FALSE(v == Vec<TypeParam>({1, 2, 0}));
  EXPECT_FALSE(v == Vec<TypeParam>({1}));
  EXPECT_TRUE(TypeParam(0) == TypeParam(0));
}

TYPED_TEST(VectorOperations, DotProductSumsFromTheFirstEntry) {
  EXPECT_EQ(Dot(Vec<TypeParam>({1, 2, 3}), Vec<TypeParam>({4, -5, 6})), 12.0);
  // Next to a large entry the small one is lost, behind the two large ones it is not.
  EXPECT_EQ(Dot(Vec<TypeParam>({1e20, 1, -1e20}), Vec<TypeParam>({1, 1, 1})), 0.0);
  EXPECT_EQ(Dot(Vec<TypeParam>({1e20, -1e20, 1}), Vec<TypeParam>({1, 1, 1})), 1.0);
  EXPECT_EQ(Dot(TypeParam(0), TypeParam(0)), 0.0);
}

TYPED_TEST(VectorOperations, CrossProductOfPlaneVectorsPointsOutOfThePlane) {
  EXPECT_EQ(Entries(VectorProd(Vec<TypeParam>({1, 0}), Vec<TypeParam>({0, 1}))),
            (Numbers{0, 0, 1}));
}

TYPED_TEST(VectorOperations, CrossProductIsNormalToBothOperands) {
  const auto a = Vec<TypeParam>({1, 2, 3});
  const auto b = Vec<TypeParam>({-4, 5, 7});
  EXPECT_EQ(Entries(VectorProd(a, b)), (Numbers{-1, -19, 13}));
  EXPECT_EQ(Dot(VectorProd(a, b), a), 0.0);
  EXPECT_EQ(Dot(VectorProd(a, b), b), 0.0);
}

TYPED_TEST(VectorOperations, CrossProductTakesAMissingThirdEntryAsZero) {
  EXPECT_EQ(VectorProd(Vec<TypeParam>({1, 2}), Vec<TypeParam>({3, 4, 5})),
            VectorProd(Vec<TypeParam>({1, 2, 0}), Vec<TypeParam>({3, 4, 5})));
  EXPECT_EQ(VectorProd(Vec<TypeParam>({1, 2, 3}), Vec<TypeParam>({4, 5})),
            VectorProd(Vec<TypeParam>({1, 2, 3}), Vec<TypeParam>({4, 5, 0})));
}

TYPED_TEST(VectorOperations, CrossProductRefusesOtherLengths) {
  const char* const text = "VectorProd can only be made in 2D or 3D\n";
  EXPECT_FATAL(VectorProd(Vec<TypeParam>({1}), Vec<TypeParam>({1, 2, 3})), text);
  EXPECT_FATAL(VectorProd(Vec<TypeParam>({1, 2, 3}), Vec<TypeParam>({1})), text);
  EXPECT_FATAL(VectorProd(TypeParam(0), TypeParam(0)), text);
}

TYPED_TEST(VectorOperations, ReductionsOfEntries) {
  const auto v = Vec<TypeParam>({3, -4, 12});
  EXPECT_EQ(Sum(v), 11.0);
  EXPECT_EQ(SumSquare(v), 169.0);
  EXPECT_EQ(Norm(v), 13.0);
  EXPECT_EQ(Maximum(v), 12.0);
  EXPECT_EQ(Minimum(v), -4.0);
  EXPECT_EQ(MaximumPosition(v), 3);
  EXPECT_EQ(MinimumPosition(v), 2);
}

TYPED_TEST(VectorOperations, SumsBeginWithTheFirstEntry) {
  EXPECT_EQ(Sum(Vec<TypeParam>({1e20, 1, -1e20})), 0.0);
  EXPECT_EQ(Sum(Vec<TypeParam>({1e20, -1e20, 1})), 1.0);
  // One small square is lost in 2^54, two together are not.
  const double large = std::ldexp(1.0, 27);
  EXPECT_EQ(SumSquare(Vec<TypeParam>({large, 1.25, 1.25})), large * large);
  EXPECT_EQ(SumSquare(Vec<TypeParam>({1.25, 1.25, large})), large * large + 4);
}

TYPED_TEST(VectorOperations, OfEqualEntriesTheFirstPositionCounts) {
  EXPECT_EQ(MaximumPosition(Vec<TypeParam>({2, 5, 5})), 2);
  EXPECT_EQ(MinimumPosition(Vec<TypeParam>({2, 1, 1})), 2);
}

TYPED_TEST(VectorOperations, OneEntryIsBothMaximumAndMinimum) {
  EXPECT_EQ(MaximumPosition(Vec<TypeParam>({7})), 1);
  EXPECT_EQ(MinimumPosition(Vec<TypeParam>({7})), 1);
  EXPECT_EQ(Maximum(Vec<TypeParam>({-7})), -7.0);
  EXPECT_EQ(Minimum(Vec<TypeParam>({7})), 7.0);
}

TYPED_TEST(VectorOperations, ReductionsOfAnEmptyVectorAreZero) {
  const TypeParam empty(0);
  EXPECT_EQ(Sum(empty), 0.0);
  EXPECT_EQ(SumSquare(empty), 0.0);
  EXPECT_EQ(Norm(empty), 0.0);
  EXPECT_EQ(Maximum(empty), 0.0);
  EXPECT_EQ(Minimum(empty), 0.0);
  EXPECT_EQ(MaximumPosition(empty), 0);
  EXPECT_EQ(MinimumPosition(empty), 0);
}

TYPED_TEST(VectorOperations, NaNNeverWinsAComparison) {
  EXPECT_EQ(MaximumPosition(Vec<TypeParam>({1, kNaN, 2})), 3);
  EXPECT_EQ(MinimumPosition(Vec<TypeParam>({2, kNaN, 1})), 3);
}

TYPED_TEST(VectorOperations, FillSetsEveryEntry) {
  TypeParam v(3);
  v.Fill(2.5);
  EXPECT_EQ(Entries(v), (Numbers{2.5, 2.5, 2.5}));
}

TYPED_TEST(VectorOperations, FillRefusesAnEmptyVector) {
  TypeParam empty(0);
  EXPECT_FATAL(empty.Fill(2.5), "Can't fill with 2.5 a zero lenght vector.");
}

TYPED_TEST(VectorOperations, PrintIsScientificInAFieldOfThirteen) {
  EXPECT_EQ(Printed(Vec<TypeParam>({1, -0.25})), "   1.000000e+00  -2.500000e-01");
  EXPECT_EQ(Printed(TypeParam(0)), "\n\t(Zero size vector)\n");
}

TYPED_TEST(VectorOperations, PrintWidensTheFieldByPrecisionAndWidth) {
  std::ostringstream stream;
  stream << std::setprecision(2) << std::setw(4) << Vec<TypeParam>({1, 2});
  EXPECT_EQ(stream.str(), "       1.00e+00       2.00e+00");
  EXPECT_EQ(stream.width(), 0);
}

TYPED_TEST(VectorOperations, PrintLeavesTheFormatOfTheStream) {
  std::ostringstream stream;
  stream << Vec<TypeParam>({1}) << " " << 0.5;
  EXPECT_EQ(stream.str(), "   1.000000e+00 0.5");
}

TYPED_TEST(VectorOperations, PrintFlushesTheStream) {
  FlushCounter stream;
  stream << Vec<TypeParam>({1, 2});
  EXPECT_EQ(stream.Flushes(), 1);
}

TYPED_TEST(VectorOperations, ReadFillsTheVectorInOrder) {
  TypeParam v(2);
  std::istringstream stream("1.5\n -2 9");
  double rest = 0.0;
  stream >> v >> rest;
  EXPECT_EQ(Entries(v), (Numbers{1.5, -2}));
  EXPECT_EQ(rest, 9.0);
}

TYPED_TEST(VectorOperations, ReadReturnsWhatPrintWrote) {
  const auto v = Vec<TypeParam>({0.5, -3e10, 125});
  std::istringstream stream(Printed(v));
  TypeParam w(3);
  stream >> w;
  EXPECT_EQ(v, w);
}

TYPED_TEST(VectorOperations, ReadRefusesAnEmptyVector) {
  TypeParam empty(0);
  std::istringstream stream("1");
  EXPECT_FATAL(stream >> empty, "\t(Zero size vector)\n");
}

TYPED_TEST(VectorOperations, RefuseNegativeLengths) {
  EXPECT_FATAL(TypeParam(-1), "Can't create a vector of size -1");
}

TEST(ReaVec3, HoldsAtMostThreeEntries) {
  EXPECT_FATAL(ReaVec3(4), "Can't create a vector of size 4");
  EXPECT_EQ(Entries(ReaVec3(3)), (Numbers{0, 0, 0}));
  EXPECT_EQ(ReaVec3().n, 0);
}

TEST(ReaVec3, IsBuiltFromThreeNumbers) {
  EXPECT_EQ(Entries(ReaVec3(1, 2, 3)), (Numbers{1, 2, 3}));
}

TEST(ReaVec3, TakesUpToThreeEntriesOfAVector) {
  EXPECT_EQ(Entries(ReaVec3(Vec({1, 2}))), (Numbers{1, 2}));
  EXPECT_EQ(ReaVec3(ReaVecT()).n, 0);
  EXPECT_FATAL(ReaVec3(Vec({1, 2, 3, 4})), "Different lenght vectors 3 != 4");
}

TEST(ReaVec3, DistanceSquaredSumsOverTheEntries) {
  EXPECT_EQ(DistanceSquared(ReaVec3(1, 2, 3), ReaVec3(3, -1, 9)), 49.0);
  EXPECT_EQ(DistanceSquared(Vec<ReaVec3>({1, 1}), Vec<ReaVec3>({4, 5})), 25.0);
  EXPECT_FATAL(DistanceSquared(ReaVec3(2), ReaVec3(3)), "Different lenght vectors 2 != 3");
}

TEST(ReaVecT, NewVectorsAreZero) {
  EXPECT_EQ(Entries(ReaVecT(2)), (Numbers{0, 0}));
}

}  // namespace

}  // namespace kestol
