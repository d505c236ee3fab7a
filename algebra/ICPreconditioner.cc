#include "algebra/ICPreconditioner.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "algebra/SparseMatrix.h"
#include "main/ErrorChannel.h"

namespace kestol {

using namespace kernel_code;

namespace {
constexpr MatrixDescriptor kLowerStored{kTriangular, kLower, kStoredDiagonal};
}

ICPreconditioner::ICPreconditioner(const SparseMatrix& A) : Preconditioner("Cholesky") {
  SplitLower(A);
  Factorise();
}

void ICPreconditioner::SplitLower(const SparseMatrix& A) {
  std::vector<std::pair<int, double>> row;
  for (int i = 0; i < A.rows; ++i) {
    row.clear();
    A.ForEachEntry(i, [&](int column, double value) {
      if (column <= i) row.emplace_back(column, value);
    });
    std::sort(row.begin(), row.end());
    if (row.empty() || row.back().first != i) Fatal("IC Preconditioner: diagonal not found!");
    for (const auto& [column, value] : row) lower_.Append(column, value);
    lower_.CloseRow();
  }
}

/// Row by row; the row in work is spread over `spread`, so that the products with earlier rows need
/// no search.
void ICPreconditioner::Factorise() {
  const int n = lower_.NumRows();
  const int* const column = lower_.colIndex.data();
  double* const l = lower_.values.data();
  std::vector<double> spread(n, 0.0);  // l_ij at j for the entries of row i that are ready
  for (int i = 0; i < n; ++i) {
    const int begin = lower_.rowStart[i];
    const int end = lower_.rowStart[i + 1] - 1;  // the diagonal
    double radicand = l[end];
    for (int s = begin; s < end; ++s) {
      const int k = column[s];
      const int diagonal = lower_.rowStart[k + 1] - 1;
      double sum = 0.0;
      for (int t = lower_.rowStart[k]; t < diagonal; ++t) sum += spread[column[t]] * l[t];
      l[s] = (l[s] - sum) / l[diagonal];  // l_ik
      spread[k] = l[s];
      radicand -= l[s] * l[s];
    }
    if (!(radicand > 0.0)) Fatal("IC Preconditioner: non positive diagonal in row ", i);
    l[end] = std::sqrt(radicand);  // l_ii
    for (int s = begin; s < end; ++s) spread[column[s]] = 0.0;
  }
}

void ICPreconditioner::Solve(const double* r, double* z) const {
  SolveRows(kPlain, 1.0, kLowerStored, lower_, r, 0.0, z);
  SolveRows(kTransposed, 1.0, kLowerStored, lower_, z, 0.0, z);
}

void ICPreconditioner::TransposedSolve(const double* r, double* z) const {
  Solve(r, z);
}

void ICPreconditioner::New_Matrix(const SparseMatrix& /*A*/) {
  Fatal("Wrong use of ICPreconditioner::New_Matrix");
}

}  // namespace kestol
