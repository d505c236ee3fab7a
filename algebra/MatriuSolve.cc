#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "algebra/Matriu.h"
#include "algebra/MatriuRefusals.h"
#include "algebra/ReaVec3.h"
#include "algebra/ReaVecT.h"
#include "algebra/Tolerances.h"

namespace kestol {

namespace {

/// Refuses zero size and rectangular matrices, each in its own words.
void RequireSquare(const Matriu& A, const char* zeroSize, const char* rectangular) {
  RefuseZeroSize(A, zeroSize);
  if (A.nrows != A.ncols) Fatal(rectangular, "\tnrows =", A.nrows, ", ncols =", A.ncols);
}

[[noreturn]] void RefuseSingular(int n) {
  Fatal("Inverse of a singular Matriu. Size = (", n, " X ", n, ")");
}

// --- closed forms up to order 4; rows and columns from 0, entries row by row ---------------------

/// What is left of `entries` (N x N) without one row and one column.
template <int N>
std::array<double, (N - 1) * (N - 1)> Without(int row, int column, const double* entries) {
  std::array<double, (N - 1) * (N - 1)> rest{};
  double* place = rest.data();
  for (int i = 0; i < N; ++i)
    for (int j = 0; j < N; ++j)
      if (i != row && j != column) *place++ = entries[i * N + j];
  return rest;
}

/// a11 M11 - a21 M21 + a31 M31 - ..., M the determinants left without the row and the first column.
template <int N>
double DeterminantOf(const double* entries) {
  if constexpr (N == 1) {
    return entries[0];
  } else {
    double sum = 0.0;
    for (int i = 0; i < N; ++i) {
      const double term = entries[i * N] * DeterminantOf<N - 1>(Without<N>(i, 0, entries).data());
      sum = i % 2 == 0 ? sum + term : sum - term;
    }
    return sum;
  }
}

/// inverse(i,j) = (-1)^(i+j) minor(j,i) / determinant.
template <int N>
void InverseOf(const double* entries, double* inverse) {
  const double determinant = DeterminantOf<N>(entries);
  if (determinant == 0.0) RefuseSingular(N);
  for (int i = 0; i < N; ++i)
    for (int j = 0; j < N; ++j) {
      const double minor = DeterminantOf<N - 1>(Without<N>(j, i, entries).data());
      inverse[i * N + j] = ((i + j) % 2 == 0 ? minor : -minor) / determinant;
    }
}

// --- any order -----------------------------------------------------------------------------------

/// Makes B its own inverse by n exchange steps. Deliberate: pivots are the diagonal entries in
/// their order; one that is exactly 0.0 ends the run also where an exchange of rows would have
/// helped.
void ExchangeAll(Matriu& B) {
  const int n = B.nrows;
  for (int k = 1; k <= n; ++k) {
    const double p = B(k, k);
    if (p == 0.0) RefuseSingular(n);
    double* const pivotRow = &B(k, 1);
    for (int j = 0; j < n; ++j) pivotRow[j] = -(pivotRow[j] / p);
    for (int i = 1; i <= n; ++i) {
      if (i == k) continue;
      double* const row = &B(i, 1);
      const double factor = row[k - 1];
      for (int j = 0; j < n; ++j) row[j] = pivotRow[j] * factor + row[j];
      row[k - 1] = factor / p;
    }
    B(k, k) = 1.0 / p;
  }
}

/// Written so that a NaN is too small as well.
bool IsSmallPivot(double pivot) {
  return !(std::abs(pivot) >= kSmallSolvePivot);
}

/// The first row from k on, not the best one, whose entry in column k can be a pivot; 0 for none.
int PivotRow(const Matriu& A, int k) {
  int row = k;
  while (row <= A.nrows && IsSmallPivot(A(row, k))) ++row;
  return row <= A.nrows ? row : 0;
}

/// Makes A upper triangular, with the same steps on b. False for a singular matrix.
bool Eliminate(Matriu& A, double* b) {
  const int n = A.nrows;
  for (int k = 1; k <= n; ++k) {
    const int pivot = PivotRow(A, k);
    if (pivot == 0) return false;
    if (pivot != k) {
      std::swap_ranges(&A(k, 1), &A(k, 1) + n, &A(pivot, 1));
      std::swap(b[k - 1], b[pivot - 1]);
    }
    for (int i = k + 1; i <= n; ++i) {
      const double factor = A(i, k) / A(k, k);
      for (int j = k + 1; j <= n; ++j) A(i, j) -= A(k, j) * factor;
      b[i - 1] -= b[k - 1] * factor;
    }
  }
  return n > 0;
}

/// A x = b for an upper triangular A; x may be b.
void SubstituteBack(const Matriu& A, const double* b, double* x) {
  const int n = A.nrows;
  for (int i = n; i >= 1; --i) {
    double rest = b[i - 1];
    for (int j = i + 1; j <= n; ++j) rest -= A(i, j) * x[j - 1];
    x[i - 1] = rest / A(i, i);
  }
}

template <class Vector>
int SolveInPlace(Matriu& A, Vector& b, Vector& x) {
  if (A.nrows != A.ncols || b.n != A.nrows) Fatal("Matriu solve: incorrect sizes");
  if (!Eliminate(A, b.begin())) return 1;
  if (x.n != b.n) x = Vector(b.n);
  SubstituteBack(A, b.begin(), x.begin());
  return 0;
}

/// The sum over m < count of C(i,m) C(m,j).
double PartialProduct(const Matriu& C, int i, int j, int count) {
  double sum = 0.0;
  for (int m = 1; m <= count; ++m) sum += C(i, m) * C(m, j);
  return sum;
}

}  // namespace

Matriu Inverse(const Matriu& A) {
  RequireSquare(A, "Can't compute the inverse of a zero size Matriu",
                "Can't compute the inverse of a rectangular Matriu\n");
  if (A.nrows > 4) {
    Matriu B = A;
    ExchangeAll(B);
    return B;
  }
  Matriu inverse(A.nrows, A.nrows);
  switch (A.nrows) {
    case 1:
      if (A(1, 1) == 0.0) RefuseSingular(1);
      inverse(1, 1) = 1.0 / A(1, 1);
      break;
    case 2:
      InverseOf<2>(A.begin(), inverse.begin());
      break;
    case 3:
      InverseOf<3>(A.begin(), inverse.begin());
      break;
    default:
      InverseOf<4>(A.begin(), inverse.begin());
  }
  return inverse;
}

double Determinant(const Matriu& A) {
  RequireSquare(A, "Can't compute the determinant of a zero size Matriu",
                "Can't compute the determinant of a rectangular Matriu\n");
  switch (A.nrows) {
    case 1:
      return DeterminantOf<1>(A.begin());
    case 2:
      return DeterminantOf<2>(A.begin());
    case 3:
      return DeterminantOf<3>(A.begin());
    case 4:
      return DeterminantOf<4>(A.begin());
    default:
      Fatal("Not implemented yet determinant for a Matriu greater than 4");
  }
}

/// Row j of L and column j of U in turn, both from their first entries.
Matriu CroutDecomposition(const Matriu& A) {
  RequireSquare(A, "Can't compute the crout decomposition of a zero size Matriu",
                "Can't compute the crout decomposition of a rectangular Matriu\n");
  Matriu C = A;
  for (int j = 1; j <= C.nrows; ++j) {
    for (int i = 1; i < j; ++i) C(i, j) = (A(i, j) - PartialProduct(C, i, j, i - 1)) / C(i, i);
    for (int k = 1; k <= j; ++k) C(j, k) = A(j, k) - PartialProduct(C, j, k, k - 1);
  }
  return C;
}

int Matriu::Solve(ReaVecT& b, ReaVecT& x) {
  return SolveInPlace(*this, b, x);
}

int Matriu::Solve(ReaVec3& b, ReaVec3& x) {
  return SolveInPlace(*this, b, x);
}

}  // namespace kestol
