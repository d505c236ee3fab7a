#pragma once

#include <cassert>
#include <cstddef>
#include <iosfwd>
#include <memory>

namespace kestol {

class ReaVec3;
class ReaVecT;

/// Dense matrix of doubles on the heap, with the arithmetic of matrices: element stiffnesses,
/// transformations, material matrices, jacobians.
///
/// Rows and columns are counted from 1; the entries lie row by row:
///
///     data:  (1,1) (1,2) ... (1,ncols)  (2,1) ...       entry (i, j) at (i-1)*ncols + (j-1)
///
/// Matrices are values. An operand that is a temporary gives its buffer to the result; apart from
/// that (and from the wording of two refusals) it makes no difference. 0 x n and n x 0 are legal
/// shapes; a matrix without entries is "zero size", and most operations refuse it. A refusal ends
/// the run.
class Matriu {
public:
  Matriu() = default;

  /// Entries 0.0. Refuses a negative number of rows or columns.
  Matriu(int rows, int columns);

  /// Copies; the assignment keeps its buffer when the number of entries is the same, whatever the
  /// shapes.
  Matriu(const Matriu& other);
  Matriu& operator=(const Matriu& other);

  /// Takes the buffer over and leaves `other` 0 x 0.
  Matriu(Matriu&& other) noexcept;
  Matriu& operator=(Matriu&& other) noexcept;

  /// A vector becomes a column.
  explicit Matriu(const ReaVecT& column);
  explicit Matriu(const ReaVec3& column);
  Matriu& operator=(const ReaVecT& column);
  Matriu& operator=(const ReaVec3& column);

  double& operator()(int i, int j) { return data[PlaceOf(i, j)]; }
  double operator()(int i, int j) const { return data[PlaceOf(i, j)]; }
  double* begin() { return data.get(); }
  double* end() { return data.get() + size; }
  const double* begin() const { return data.get(); }
  const double* end() const { return data.get() + size; }

  // --- shape and content -------------------------------------------------------------------------

  /// Sets every entry; refuses zero size.
  void Fill(double value);

  /// New shape. With the same number of entries the buffer stays, entries and all; else it is a new
  /// one. Refuses negative numbers.
  void Redimension(int rows, int columns);

  /// Every entry equals 0.0; false for zero size.
  bool IsZero() const;

  /// n x n; refuses n < 1.
  static Matriu Identity(int n);

  /// New matrix of rows rowStart..rowEnd and columns colStart..colEnd. Refuses bounds outside the
  /// matrix and starts behind their ends.
  Matriu subMatriu(int rowStart, int rowEnd, int colStart, int colEnd) const;

  /// Copies `block` with its first entry to (row, col). Where it reaches beyond the matrix, the
  /// matrix grows first: old entries keep their (i, j), new ones are 0.0. A block of zero size does
  /// nothing; `block` may be this matrix. Refuses row or col below 1.
  void PlaceBlock(int row, int col, const Matriu& block);

  // --- reductions; all refuse zero size ----------------------------------------------------------

  /// Sum of the diagonal; refuses a rectangular matrix.
  double Trace() const;

  /// Largest sum over a row, of a column: of the entries with their signs, and at least 0.0.
  double rowNorm() const;
  double colNorm() const;

  double sumSquare() const;  ///< sum of the squares of all entries
  double sumAbsVal() const;  ///< sum of the absolute values
  double maxAbsVal() const;  ///< largest absolute value

  /// Entries with |entry| <= tol become 0.0.
  void scorn(double tol);

  // --- arithmetic in place; all refuse zero size, those with a matrix unlike shapes --------------

  Matriu& operator+=(double value);
  Matriu& operator+=(const Matriu& B);
  Matriu& operator-=(double value) &;
  Matriu& operator-=(double value) &&;  ///< refuses in other words
  Matriu& operator-=(const Matriu& B);
  Matriu& operator*=(double value);
  Matriu& operator/=(double value);  ///< refuses 0.0 before anything else

  /// Every entry times -1.0.
  Matriu& Negate();

  // --- small systems -----------------------------------------------------------------------------

  /// Solves A x = b by elimination, in place of A and b; rows are exchanged only where a pivot is
  /// below kSmallSolvePivot. Returns 0, or 1 for a singular matrix (order 0 included); x is then
  /// untouched. x gets the length of b, and may be b. Refuses a matrix that is not square and a b
  /// of another length. Cost n^3 / 3.
  int Solve(ReaVecT& b, ReaVecT& x);
  int Solve(ReaVec3& b, ReaVec3& x);

  // --- text and binary ---------------------------------------------------------------------------

  /// The entries as raw doubles row by row, without the shape; refuses zero size.
  void WriteBinary(std::ostream& stream) const;

  /// Always refuses.
  [[noreturn]] void ReadBinary(std::istream& stream);

  /// "%lf  " per entry and "\n" per row; refuses zero size.
  void WriteAscii(std::ostream& stream) const;

  /// Reads the entries row by row into the shape as it is; refuses zero size and too few numbers.
  void ReadAscii(std::istream& stream);

  int nrows = 0;
  int ncols = 0;
  unsigned size = 0;               ///< nrows * ncols
  std::unique_ptr<double[]> data;  ///< size entries; null for zero size

private:
  std::size_t PlaceOf(int i, int j) const {
    assert(1 <= i && i <= nrows && 1 <= j && j <= ncols);
    return static_cast<std::size_t>(i - 1) * ncols + (j - 1);
  }
  void Assign(const double* entries, int rows, int columns);
};

// --- arithmetic with a new result; refusals as in place ------------------------------------------

Matriu operator+(Matriu M, double value);
Matriu operator+(double value, Matriu M);
Matriu operator+(Matriu A, const Matriu& B);
Matriu operator+(const Matriu& A, Matriu&& B);

// Of a temporary operand the refusal has other words.
Matriu operator-(const Matriu& M, double value);
Matriu operator-(Matriu&& M, double value);
Matriu operator-(double value, const Matriu& M);
Matriu operator-(double value, Matriu&& M);
Matriu operator-(Matriu A, const Matriu& B);
Matriu operator-(const Matriu& A, Matriu&& B);
Matriu operator-(Matriu M);

Matriu operator*(Matriu M, double value);
Matriu operator*(double value, Matriu M);
Matriu operator/(Matriu M, double value);

/// The product of matrices; ncols(A) must be nrows(B). Each entry is summed from k = 1 upwards.
/// The refusal names the kinds of the operands by a letter, A to D.
Matriu operator*(const Matriu& A, const Matriu& B);
Matriu operator*(Matriu&& A, const Matriu& B);
Matriu operator*(const Matriu& A, Matriu&& B);
Matriu operator*(Matriu&& A, Matriu&& B);

/// Matrix times vector. A 4x4 matrix turns and moves a vector of three entries: result i is the sum
/// over j = 1..3 of M(i,j) v(j), plus M(i,4). Any other matrix needs as many columns as v has
/// entries; a ReaVec3 result needs at most three rows besides.
ReaVecT operator*(const Matriu& M, const ReaVecT& v);
ReaVec3 operator*(const Matriu& M, const ReaVec3& v);

/// Equal shapes and exactly equal entries.
bool operator==(const Matriu& A, const Matriu& B);

/// Equal shapes, and no entries further apart than tol.
bool Equal(const Matriu& A, const Matriu& B, double tol);

// --- other new matrices --------------------------------------------------------------------------

/// A^T.
Matriu Transpose(const Matriu& A);

/// [A B] and [A over B]; refuse zero size of either, and unlike rows or columns.
Matriu HorizontalConcatenation(const Matriu& A, const Matriu& B);
Matriu VerticalConcatenation(const Matriu& A, const Matriu& B);

/// A^-1: the adjugate over the determinant up to order 4, exchange steps on the diagonal without
/// search for pivots above. Refuses zero size, rectangular and singular matrices; singular is a
/// determinant, or above order 4 a pivot, of exactly 0.0.
Matriu Inverse(const Matriu& A);

/// Determinant by first columns. Refuses zero size, rectangular matrices and orders above 4.
double Determinant(const Matriu& A);

/// L and U of A = L U in one matrix: L on and below the diagonal, U above it, with a unit diagonal
/// that is not stored. Neither pivots nor looks at divisors. Refuses zero size and rectangular
/// matrices.
Matriu CroutDecomposition(const Matriu& A);

/// A table with the numbers of the rows and columns; "\n\t(Zero size Matriu)\n" for zero size.
std::ostream& operator<<(std::ostream& stream, const Matriu& M);

}  // namespace kestol
