#pragma once

#include <vector>

namespace kestol {

class SparseMatrix;

/// Compressed rows without unclaimed slots: entry s of row i, rowStart[i] <= s < rowStart[i+1], is
/// values[s] in column colIndex[s]. All numbers from 0. The columns of A^T in compressed columns
/// are the rows of A: the transposed forms of the kernels serve that layout.
struct CompressedRows {
  std::vector<int> rowStart{0};
  std::vector<int> colIndex;
  std::vector<double> values;

  int NumRows() const { return static_cast<int>(rowStart.size()) - 1; }
  void Append(int column, double value) {
    colIndex.push_back(column);
    values.push_back(value);
  }
  void CloseRow() { rowStart.push_back(static_cast<int>(colIndex.size())); }
};

/// The codes of a matrix descriptor and of the transpose flag.
namespace kernel_code {
constexpr int kGeneral = 0, kTriangular = 3;
constexpr int kLower = 1, kUpper = 2;
constexpr int kStoredDiagonal = 0, kUnitDiagonal = 1;
constexpr int kPlain = 0, kTransposed = 1;
}  // namespace kernel_code

/// What the caller says of a matrix. The kernels refuse what they do not do; a refusal ends the
/// process with status 1.
struct MatrixDescriptor {
  int type;      ///< kGeneral, kTriangular
  int triangle;  ///< kLower, kUpper
  int diagonal;  ///< kStoredDiagonal, kUnitDiagonal
};

/// y = A x or y = A^T x, row by row. `beta`, the factor of the previous y, must be 0.
void MultiplyRows(int transpose, const MatrixDescriptor& descriptor, const CompressedRows& A,
                  const double* x, double beta, double* y);

/// y = T^-1 x or y = T^-T x for a lower or upper triangle; x and y may be the same. With a unit
/// diagonal, what is stored on the diagonal is not looked at. `unitd`, the scaling of the
/// diagonal, must be 1; `beta`, the factor of the previous y, must be 0.
void SolveRows(int transpose, double unitd, const MatrixDescriptor& descriptor,
               const CompressedRows& T, const double* x, double beta, double* y);

/// y = A x, the product of the conjugate-gradient iterations: every row is
/// SparseMatrix::RowTimesVector to the last bit.
void Multiply(const SparseMatrix& A, const double* x, double* y);

}  // namespace kestol
