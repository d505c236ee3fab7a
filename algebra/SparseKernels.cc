#include "algebra/SparseKernels.h"

#include <algorithm>

#include "algebra/BlockKernels.h"
#include "algebra/SparseMatrix.h"
#include "main/ErrorChannel.h"

namespace kestol {

using namespace kernel_code;

namespace {

// Deliberate: the refusals of the kernels end the process with status 1, not 2.
[[noreturn]] void Refuse(const char* text) {
  error.message << text;
  throw FatalError(error, kKernelRefused);
}

void CheckFactors(int transpose, double beta) {
  if (transpose != kPlain && transpose != kTransposed) Refuse("Bad transa");
  if (beta != 0.0) Refuse("beta != 0 not implemented");
}

void CheckTriangle(const MatrixDescriptor& descriptor) {
  const auto [type, triangle, diagonal] = descriptor;
  if (triangle != kLower && triangle != kUpper) Refuse("Bad descra[1]");
  if (diagonal != kStoredDiagonal && diagonal != kUnitDiagonal) Refuse("Bad descra[2]");
}

/// y_i := (y_i - sum of t_ij y_j, j != i) / t_ii for the rows first, first + step, ...
void SolvePlain(const CompressedRows& T, bool isUnit, int first, int step, double* y) {
  const int n = T.NumRows();
  for (int i = first; i >= 0 && i < n; i += step) {
    double sum = 0.0;
    double diagonal = 1.0;
    for (int s = T.rowStart[i]; s < T.rowStart[i + 1]; ++s) {
      const int j = T.colIndex[s];
      if (j != i)
        sum += T.values[s] * y[j];
      else if (!isUnit)
        diagonal = T.values[s];
    }
    y[i] = (y[i] - sum) / diagonal;
  }
}

/// y_i := y_i / t_ii, then y_j -= t_ij y_i, j != i, for the rows first, first + step, ...
void SolveTransposed(const CompressedRows& T, bool isUnit, int first, int step, double* y) {
  const int n = T.NumRows();
  for (int i = first; i >= 0 && i < n; i += step) {
    const int begin = T.rowStart[i];
    const int end = T.rowStart[i + 1];
    if (!isUnit) {
      const auto* const row = T.colIndex.data();
      const auto s = std::find(row + begin, row + end, i) - row;
      if (s < end) y[i] /= T.values[s];
    }
    for (int s = begin; s < end; ++s) {
      const int j = T.colIndex[s];
      if (j != i) y[j] -= T.values[s] * y[i];
    }
  }
}

void MultiplyScalarRows(const SparseMatrix& A, const double* x, double* y) {
  const int* const column = A.colIndex.data();
  const double* const value = A.values.data();
  for (int i = 0; i < A.rows; ++i) {
    const int end = A.rowStart[i + 1];
    double sum = 0.0;
    int s = A.rowStart[i];
    for (; s < end && column[s] >= 0; ++s) sum += value[s] * x[column[s]];
    if (s < end && A.UnitSlot(i) >= 0) sum += value[s] * x[i];
    y[i] = sum;
  }
}

}  // namespace

void MultiplyRows(int transpose, const MatrixDescriptor& descriptor, const CompressedRows& A,
                  const double* x, double beta, double* y) {
  if (descriptor.type != kGeneral) Refuse("Must have general matrix");
  CheckFactors(transpose, beta);
  const int n = A.NumRows();
  if (transpose == kTransposed) std::fill(y, y + n, 0.0);
  for (int i = 0; i < n; ++i) {
    double sum = 0.0;
    for (int s = A.rowStart[i]; s < A.rowStart[i + 1]; ++s) {
      const int j = A.colIndex[s];
      if (transpose == kTransposed)
        y[j] += A.values[s] * x[i];
      else
        sum += A.values[s] * x[j];
    }
    if (transpose == kPlain) y[i] = sum;
  }
}

void SolveRows(int transpose, double unitd, const MatrixDescriptor& descriptor,
               const CompressedRows& T, const double* x, double beta, double* y) {
  CheckTriangle(descriptor);
  CheckFactors(transpose, beta);
  if (unitd != 1.0) Refuse("unitd != 1 not implemented");
  const int n = T.NumRows();
  if (y != x) std::copy(x, x + n, y);
  const bool isUnit = descriptor.diagonal == kUnitDiagonal;
  const bool isForward = (descriptor.triangle == kLower) == (transpose == kPlain);
  const int first = isForward ? 0 : n - 1;
  const int step = isForward ? 1 : -1;
  if (transpose == kPlain)
    SolvePlain(T, isUnit, first, step, y);
  else
    SolveTransposed(T, isUnit, first, step, y);
}

void Multiply(const SparseMatrix& A, const double* x, double* y) {
  if (A.blockSize == 1) {
    MultiplyScalarRows(A, x, y);
    return;
  }
  const BlockRows rows{A.rows / A.blockSize, A.rowStart.data(), A.colIndex.data(), A.values.data()};
  BlockKernelsFor(A.blockSize)->multiply(rows, x, y);
}

}  // namespace kestol
