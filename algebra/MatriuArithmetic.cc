#include <algorithm>
#include <cmath>
#include <functional>
#include <utility>

#include "algebra/Matriu.h"
#include "algebra/MatriuRefusals.h"
#include "algebra/ReaVec3.h"
#include "algebra/ReaVecT.h"

namespace kestol {

namespace {

template <class Operation>
Matriu& EachEntry(Matriu& M, Operation operation) {
  std::transform(M.begin(), M.end(), M.begin(), operation);
  return M;
}

// --- sums and differences of two matrices --------------------------------------------------------

struct PairTexts {
  const char* zeroSize;         // both operands without entries
  const char* differentShapes;  // headline of the size block
};

constexpr PairTexts kAdd = {"Can't add zero sized matrices",
                            "Can't add two Matriu with diferent sizes\n"};
constexpr PairTexts kSubtract = {"Can't subtract zero sized matrices",
                                 "Can't subtract two Matriu with diferent sizes\n"};

/// target = A operation B, entry by entry; `target` is one of the two.
template <class Operation>
void EachPair(const Matriu& A, const Matriu& B, Matriu& target, Operation operation,
              const PairTexts& texts) {
  if (A.size == 0 && B.size == 0) Fatal(texts.zeroSize);
  if (A.nrows != B.nrows || A.ncols != B.ncols) RefuseShapes(texts.differentShapes, A, B);
  std::transform(A.begin(), A.end(), B.begin(), target.begin(), operation);
}

// --- scalar minus matrix, matrix minus scalar ----------------------------------------------------

void RefuseToSubtract(double value, const Matriu& M) {
  RefuseZeroSize(M, "Can't subtract ", value, " from a zero size Matriu");
}

// Deliberate: of a temporary operand the refusal is misspelt.
void RefuseToSubtractTemporary(double value, const Matriu& M) {
  RefuseZeroSize(M, "Can't substract ", value, " to a zero size Matriu");
}

Matriu& Subtract(Matriu& M, double value) {
  return EachEntry(M, [value](double entry) { return entry - value; });
}

Matriu& SubtractFrom(double value, Matriu& M) {
  return EachEntry(M, [value](double entry) { return value - entry; });
}

// --- products ------------------------------------------------------------------------------------

/// C(i,j) = sum over k of A(i,k) B(k,j), k upwards from 0.0; row by row of B, in the order of
/// memory.
Matriu Product(const Matriu& A, const Matriu& B, const char* differentShapes) {
  if (A.size == 0 && B.size == 0) Fatal("Can't multiply zero sized matrices");
  if (A.ncols != B.nrows) RefuseShapes(differentShapes, A, B);
  Matriu C(A.nrows, B.ncols);
  const int columns = B.ncols;
  for (int i = 1; i <= A.nrows && C.size != 0; ++i) {
    double* const target = &C(i, 1);
    for (int k = 1; k <= A.ncols; ++k) {
      const double a = A(i, k);
      const double* const row = &B.begin()[std::size_t(k - 1) * columns];
      for (int j = 0; j < columns; ++j) target[j] += a * row[j];
    }
  }
  return C;
}

/// A 4x4 matrix and three entries: turn and move in space.
bool IsHomogeneous(const Matriu& M, int length) {
  return M.nrows == 4 && M.ncols == 4 && length == 3;
}

/// result(i) = sum over j of M(i,j) v(j), in a vector of the type of v; the fourth column of a
/// homogeneous matrix is added last.
template <class Vector>
Vector Product(const Matriu& M, const Vector& v) {
  const bool homogeneous = IsHomogeneous(M, v.n);
  Vector result(homogeneous ? 3 : M.nrows);
  for (int i = 1; i <= result.n; ++i) {
    double sum = 0.0;
    for (int j = 1; j <= v.n; ++j) sum += M(i, j) * v(j);
    result(i) = homogeneous ? sum + M(i, 4) : sum;
  }
  return result;
}

}  // namespace

Matriu& Matriu::operator+=(double value) {
  RefuseZeroSize(*this, "Can't add ", value, " to a zero size Matriu");
  return EachEntry(*this, [value](double entry) { return entry + value; });
}

Matriu& Matriu::operator+=(const Matriu& B) {
  EachPair(*this, B, *this, std::plus<>(), kAdd);
  return *this;
}

Matriu& Matriu::operator-=(double value) & {
  RefuseToSubtract(value, *this);
  return Subtract(*this, value);
}

Matriu& Matriu::operator-=(double value) && {
  RefuseToSubtractTemporary(value, *this);
  return Subtract(*this, value);
}

Matriu& Matriu::operator-=(const Matriu& B) {
  EachPair(*this, B, *this, std::minus<>(), kSubtract);
  return *this;
}

Matriu& Matriu::operator*=(double value) {
  RefuseZeroSize(*this, "Can't multiply by ", value, " a zero size Matriu");
  return EachEntry(*this, [value](double entry) { return entry * value; });
}

Matriu& Matriu::operator/=(double value) {
  if (value == 0.0) Fatal("Matriu division by zero scalar error");
  RefuseZeroSize(*this, "Can't divide by ", value, " a zero size Matriu");
  return EachEntry(*this, [value](double entry) { return entry / value; });
}

Matriu& Matriu::Negate() {
  RefuseZeroSize(*this, "Can't change sign a zero size Matriu");
  return EachEntry(*this, [](double entry) { return entry * -1.0; });
}

Matriu operator+(Matriu M, double value) {
  M += value;
  return M;
}

Matriu operator+(double value, Matriu M) {
  M += value;
  return M;
}

Matriu operator+(Matriu A, const Matriu& B) {
  A += B;
  return A;
}

Matriu operator+(const Matriu& A, Matriu&& B) {
  EachPair(A, B, B, std::plus<>(), kAdd);
  return std::move(B);
}

Matriu operator-(const Matriu& M, double value) {
  RefuseToSubtract(value, M);
  return Matriu(M) - value;
}

Matriu operator-(Matriu&& M, double value) {
  RefuseToSubtractTemporary(value, M);
  return std::move(Subtract(M, value));
}

Matriu operator-(double value, const Matriu& M) {
  RefuseToSubtract(value, M);
  return value - Matriu(M);
}

Matriu operator-(double value, Matriu&& M) {
  RefuseToSubtractTemporary(value, M);
  return std::move(SubtractFrom(value, M));
}

Matriu operator-(Matriu A, const Matriu& B) {
  A -= B;
  return A;
}

Matriu operator-(const Matriu& A, Matriu&& B) {
  EachPair(A, B, B, std::minus<>(), kSubtract);
  return std::move(B);
}

Matriu operator-(Matriu M) {
  M.Negate();
  return M;
}

Matriu operator*(Matriu M, double value) {
  M *= value;
  return M;
}

Matriu operator*(double value, Matriu M) {
  M *= value;
  return M;
}

Matriu operator/(Matriu M, double value) {
  M /= value;
  return M;
}

Matriu operator*(const Matriu& A, const Matriu& B) {
  return Product(A, B, "Incompatible dimensions for multiply -A-\n");
}

Matriu operator*(Matriu&& A, const Matriu& B) {
  return Product(A, B, "Incompatible dimensions for multiply -B-\n");
}

Matriu operator*(const Matriu& A, Matriu&& B) {
  return Product(A, B, "Incompatible dimensions for multiply -C-\n");
}

Matriu operator*(Matriu&& A, Matriu&& B) {
  return Product(A, B, "Incompatible dimensions for multiply -D-\n");
}

ReaVec3 operator*(const Matriu& M, const ReaVec3& v) {
  if (!IsHomogeneous(M, v.n) && (M.ncols != v.n || M.nrows > 3))
    Fatal("error in ReaVecT  operator *. No correct size (file Matriu.cc A)\n");
  return Product(M, v);
}

ReaVecT operator*(const Matriu& M, const ReaVecT& v) {
  // Deliberate: no blank before the parenthesis here.
  if (!IsHomogeneous(M, v.n) && M.ncols != v.n)
    Fatal("error in ReaVecT  operator *. No correct size(file Matriu.cc B)\n");
  return Product(M, v);
}

bool operator==(const Matriu& A, const Matriu& B) {
  return A.nrows == B.nrows && A.ncols == B.ncols && std::equal(A.begin(), A.end(), B.begin());
}

bool Equal(const Matriu& A, const Matriu& B, double tol) {
  return A.nrows == B.nrows && A.ncols == B.ncols &&
         std::equal(A.begin(), A.end(), B.begin(),
                    [tol](double a, double b) { return std::abs(a - b) <= tol; });
}

}  // namespace kestol
