#pragma once

#include <cassert>
#include <cstddef>
#include <iosfwd>
#include <memory>

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
