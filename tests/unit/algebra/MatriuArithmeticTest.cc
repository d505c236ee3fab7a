#include <cmath>
#include <utility>

#include "algebra/Matriu.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/Vectors.h"

namespace kestol {

namespace {

using Numbers = std::vector<double>;

const Matriu kA = Mat(2, 2, {1, 2, 3, 4});
const Matriu kB = Mat(2, 2, {10, 20, 30, 50});
const Matriu kEmpty;

// The same matrix as a temporary.
Matriu Temporary(const Matriu& M) {
  return M;
}

// --- with a scalar ---------------------------------------------------------------------------

TEST(Matriu, ScalarsCombineWithEveryEntry) {
  EXPECT_EQ(kA + 1, Mat(2, 2, {2, 3, 4, 5}));
  EXPECT_EQ(1 + kA, Mat(2, 2, {2, 3, 4, 5}));
  EXPECT_EQ(kA - 1, Mat(2, 2, {0, 1, 2, 3}));
  EXPECT_EQ(1 - kA, Mat(2, 2, {0, -1, -2, -3}));
  EXPECT_EQ(2 * kA, Mat(2, 2, {2, 4, 6, 8}));
  EXPECT_EQ(kA * 2, Mat(2, 2, {2, 4, 6, 8}));
  EXPECT_EQ(kA / 2, Mat(2, 2, {0.5, 1, 1.5, 2}));
  EXPECT_EQ(-kA, Mat(2, 2, {-1, -2, -3, -4}));
}

TEST(Matriu, ScalarsCombineWithTemporariesInTheSameWay) {
  EXPECT_EQ(Temporary(kA) + 1, kA + 1);
  EXPECT_EQ(1 + Temporary(kA), 1 + kA);
  EXPECT_EQ(Temporary(kA) - 1, kA - 1);
  EXPECT_EQ(1 - Temporary(kA), 1 - kA);
  EXPECT_EQ(2 * Temporary(kA), 2 * kA);
  EXPECT_EQ(Temporary(kA) * 2, kA * 2);
  EXPECT_EQ(Temporary(kA) / 2, kA / 2);
  EXPECT_EQ(-Temporary(kA), -kA);
}

TEST(Matriu, ScalarsCombineInPlace) {
  Matriu M = kA;
  EXPECT_EQ(&(M += 1), &M);
  EXPECT_EQ(M, kA + 1);
  EXPECT_EQ(M -= 1, kA);
  EXPECT_EQ(M *= 4, 4 * kA);
  EXPECT_EQ(M /= 4, kA);
  EXPECT_EQ(M.Negate(), -kA);
  EXPECT_EQ(Temporary(kA) -= 1, kA - 1);
  EXPECT_EQ(Temporary(kA) += 1, kA + 1);
}

TEST(Matriu, NegationOfZeroKeepsTheSign) {
  EXPECT_TRUE(std::signbit((-Matriu(1, 1))(1, 1)));
}

TEST(Matriu, AddingAScalarRefusesZeroSize) {
  const char* const text = "Can't add 2.5 to a zero size Matriu";
  Matriu M;
  EXPECT_FATAL(kEmpty + 2.5, text);
  EXPECT_FATAL(2.5 + kEmpty, text);
  EXPECT_FATAL(Matriu() + 2.5, text);
  EXPECT_FATAL(M += 2.5, text);
}

TEST(Matriu, SubtractingAScalarRefusesZeroSize) {
  const char* const text = "Can't subtract 2.5 from a zero size Matriu";
  Matriu M;
  EXPECT_FATAL(kEmpty - 2.5, text);
  EXPECT_FATAL(2.5 - kEmpty, text);
  EXPECT_FATAL(M -= 2.5, text);
}

TEST(Matriu, SubtractingAScalarFromATemporaryRefusesMisspelt) {
  const char* const text = "Can't substract 2.5 to a zero size Matriu";
  EXPECT_FATAL(Matriu() - 2.5, text);
  EXPECT_FATAL(2.5 - Matriu(), text);
  EXPECT_FATAL(Matriu() -= 2.5, text);
}

TEST(Matriu, MultiplyingByAScalarRefusesZeroSize) {
  const char* const text = "Can't multiply by 2.5 a zero size Matriu";
  Matriu M;
  EXPECT_FATAL(2.5 * kEmpty, text);
  EXPECT_FATAL(kEmpty * 2.5, text);
  EXPECT_FATAL(2.5 * Matriu(), text);
  EXPECT_FATAL(M *= 2.5, text);
}

TEST(Matriu, DividingByAScalarRefusesZeroSize) {
  Matriu M;
  EXPECT_FATAL(kEmpty / 2.5, "Can't divide by 2.5 a zero size Matriu");
  EXPECT_FATAL(M /= 2.5, "Can't divide by 2.5 a zero size Matriu");
}

TEST(Matriu, DividingByZeroIsRefusedBeforeTheSize) {
  Matriu M = kA;
  EXPECT_FATAL(kA / 0.0, "Matriu division by zero scalar error");
  EXPECT_FATAL(M /= 0.0, "Matriu division by zero scalar error");
  EXPECT_FATAL(kEmpty / 0.0, "Matriu division by zero scalar error");
  EXPECT_EQ(M, kA);
}

TEST(Matriu, ChangingTheSignRefusesZeroSize) {
  Matriu M;
  EXPECT_FATAL(-kEmpty, "Can't change sign a zero size Matriu");
  EXPECT_FATAL(M.Negate(), "Can't change sign a zero size Matriu");
}

// --- sums and differences --------------------------------------------------------------------

TEST(Matriu, MatricesAddAndSubtractEntryByEntry) {
  const Matriu sum = Mat(2, 2, {11, 22, 33, 54});
  const Matriu difference = Mat(2, 2, {-9, -18, -27, -46});
  EXPECT_EQ(kA + kB, sum);
  EXPECT_EQ(Temporary(kA) + kB, sum);
  EXPECT_EQ(kA + Temporary(kB), sum);
  EXPECT_EQ(Temporary(kA) + Temporary(kB), sum);
  EXPECT_EQ(kA - kB, difference);
  EXPECT_EQ(Temporary(kA) - kB, difference);
  EXPECT_EQ(kA - Temporary(kB), difference);
  EXPECT_EQ(Temporary(kA) - Temporary(kB), difference);
}

TEST(Matriu, MatricesAddAndSubtractInPlace) {
  Matriu M = kA;
  EXPECT_EQ(M += kB, kA + kB);
  EXPECT_EQ(M -= kB, kA);
  EXPECT_EQ(M -= M, Matriu(2, 2));
}

TEST(Matriu, SumsReuseTheBufferOfATemporary) {
  Matriu left = kA;
  Matriu right = kB;
  const double* const leftBuffer = left.begin();
  const double* const rightBuffer = right.begin();
  const Matriu sum = 2 * (std::move(left) + kB) / 4 - 1;
  EXPECT_EQ(sum.begin(), leftBuffer);
  const Matriu difference = kA - std::move(right);
  EXPECT_EQ(difference.begin(), rightBuffer);
}

TEST(Matriu, AddingRefusesZeroSizeOnlyWhenBothAreEmpty) {
  Matriu M;
  EXPECT_FATAL(kEmpty + Matriu(0, 3), "Can't add zero sized matrices");
  EXPECT_FATAL(kEmpty + kEmpty, "Can't add zero sized matrices");
  EXPECT_FATAL(M += kEmpty, "Can't add zero sized matrices");
  EXPECT_FATAL(kA + kEmpty,
               "Can't add two Matriu with diferent sizes\n"
               "\tMatriu 1 : nrows=2, ncols=2\n\tMatriu 2 : nrows=0, ncols=0");
  EXPECT_FATAL(Matriu() + kA,
               "Can't add two Matriu with diferent sizes\n"
               "\tMatriu 1 : nrows=0, ncols=0\n\tMatriu 2 : nrows=2, ncols=2");
}

TEST(Matriu, AddingRefusesDifferentShapes) {
  const char* const text =
      "Can't add two Matriu with diferent sizes\n"
      "\tMatriu 1 : nrows=2, ncols=3\n\tMatriu 2 : nrows=3, ncols=2";
  Matriu M(2, 3);
  const Matriu N(3, 2);
  EXPECT_FATAL(M + N, text);
  EXPECT_FATAL(M += N, text);
  EXPECT_FATAL(M + Matriu(3, 2), text);
  EXPECT_FATAL(Matriu(2, 3) + Matriu(3, 2), text);
}

TEST(Matriu, SubtractingRefusesZeroSizeAndDifferentShapes) {
  Matriu M(2, 3);
  EXPECT_FATAL(kEmpty - kEmpty, "Can't subtract zero sized matrices");
  EXPECT_FATAL(Matriu() - Matriu(), "Can't subtract zero sized matrices");
  const char* const text =
      "Can't subtract two Matriu with diferent sizes\n"
      "\tMatriu 1 : nrows=2, ncols=3\n\tMatriu 2 : nrows=2, ncols=4";
  EXPECT_FATAL(M - Matriu(2, 4), text);
  EXPECT_FATAL(M -= Matriu(2, 4), text);
  EXPECT_FATAL(Matriu(2, 3) - Matriu(2, 4), text);
}

// --- products --------------------------------------------------------------------------------

TEST(Matriu, ProductIsRowsTimesColumns) {
  const Matriu A = Mat(2, 3, {1, 2, 3, 4, 5, 6});
  const Matriu B = Mat(3, 2, {7, 8, 9, 10, 11, 12});
  const Matriu product = Mat(2, 2, {58, 64, 139, 154});
  EXPECT_EQ(A * B, product);
  EXPECT_EQ(Temporary(A) * B, product);
  EXPECT_EQ(A * Temporary(B), product);
  EXPECT_EQ(Temporary(A) * Temporary(B), product);
}

TEST(Matriu, ProductMayBeAssignedToAnOperand) {
  Matriu M = kA;
  M = M * M;
  EXPECT_EQ(M, Mat(2, 2, {7, 10, 15, 22}));
}

TEST(Matriu, ProductSumsInOrderOfTheInnerIndex) {
  EXPECT_EQ((Mat(1, 3, {1e20, 1, -1e20}) * Mat(3, 1, {1, 1, 1}))(1, 1), 0.0);
  EXPECT_EQ((Mat(1, 3, {1e20, -1e20, 1}) * Mat(3, 1, {1, 1, 1}))(1, 1), 1.0);
}

TEST(Matriu, ProductRefusalsNameTheKindsOfOperands) {
  const Matriu A(2, 3);
  const Matriu B(2, 4);
  const std::string sizes = "\tMatriu 1 : nrows=2, ncols=3\n\tMatriu 2 : nrows=2, ncols=4";
  EXPECT_FATAL(A * B, "Incompatible dimensions for multiply -A-\n" + sizes);
  EXPECT_FATAL(Temporary(A) * B, "Incompatible dimensions for multiply -B-\n" + sizes);
  EXPECT_FATAL(A * Temporary(B), "Incompatible dimensions for multiply -C-\n" + sizes);
  EXPECT_FATAL(Temporary(A) * Temporary(B), "Incompatible dimensions for multiply -D-\n" + sizes);
}

TEST(Matriu, ProductRefusesZeroSizeOnlyWhenBothAreEmpty) {
  EXPECT_FATAL(kEmpty * kEmpty, "Can't multiply zero sized matrices");
  EXPECT_FATAL(Matriu(2, 0) * Matriu(0, 2), "Can't multiply zero sized matrices");
  EXPECT_EQ(Matriu(0, 2) * kA, Matriu(0, 2));
  EXPECT_EQ(kA * Matriu(2, 0), Matriu(2, 0));
  EXPECT_FATAL(kEmpty * kA,
               "Incompatible dimensions for multiply -A-\n"
               "\tMatriu 1 : nrows=0, ncols=0\n\tMatriu 2 : nrows=2, ncols=2");
}

// --- matrix times vector ---------------------------------------------------------------------

TEST(Matriu, TimesAVectorIsTheOrdinaryProduct) {
  const Matriu M = Mat(2, 3, {1, 2, 3, 4, 5, 6});
  EXPECT_EQ(Entries(M * Vec({1, 0, 2})), (Numbers{7, 16}));
  EXPECT_EQ(Entries(M * ReaVec3(1, 0, 2)), (Numbers{7, 16}));
  EXPECT_EQ(Entries(Matriu::Identity(5) * Vec({1, 2, 3, 4, 5})), (Numbers{1, 2, 3, 4, 5}));
  EXPECT_EQ(Entries(Mat(3, 2, {1, 2, 3, 4, 5, 6}) * Vec<ReaVec3>({1, 1})), (Numbers{3, 7, 11}));
}

TEST(Matriu, FourByFourTimesThreeEntriesTurnsAndMoves) {
  // A quarter turn about z, then a move by (10, 20, 30); the last row takes no part.
  const Matriu M = Mat(4, 4, {0, -1, 0, 10, 1, 0, 0, 20, 0, 0, 1, 30, 7, 7, 7, 7});
  EXPECT_EQ(Entries(M * ReaVec3(1, 2, 3)), (Numbers{8, 21, 33}));
  EXPECT_EQ(Entries(M * Vec({1, 2, 3})), (Numbers{8, 21, 33}));
}

TEST(Matriu, FourByFourTimesFourEntriesIsTheOrdinaryProduct) {
  EXPECT_EQ(Entries((2 * Matriu::Identity(4)) * Vec({1, 2, 3, 4})), (Numbers{2, 4, 6, 8}));
}

TEST(Matriu, TimesAVectorRefusesOtherLengths) {
  const char* const shortText =
      "error in ReaVecT  operator *. No correct size (file Matriu.cc A)\n";
  EXPECT_FATAL(kA * ReaVec3(1, 2, 3), shortText);
  EXPECT_FATAL(Matriu(4, 4) * ReaVec3(2), shortText);
  EXPECT_FATAL(Matriu(4, 3) * ReaVec3(1, 2, 3), shortText);
  const char* const longText = "error in ReaVecT  operator *. No correct size(file Matriu.cc B)\n";
  EXPECT_FATAL(kA * Vec({1, 2, 3}), longText);
  EXPECT_FATAL(Matriu(4, 4) * Vec({1, 2}), longText);
  EXPECT_EQ((Matriu(4, 3) * Vec({1, 2, 3})).n, 4);
}

}  // namespace

}  // namespace kestol
