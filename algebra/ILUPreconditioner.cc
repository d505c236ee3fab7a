#include "algebra/ILUPreconditioner.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "algebra/SparseMatrix.h"
#include "main/ErrorChannel.h"

namespace kestol {

using namespace kernel_code;

namespace {
constexpr MatrixDescriptor kUnitLower{kTriangular, kLower, kUnitDiagonal};
constexpr MatrixDescriptor kStoredUpper{kTriangular, kUpper, kStoredDiagonal};
}  // namespace

ILUPreconditioner::ILUPreconditioner(const SparseMatrix& A) : blocks_(NodeBlockFactors::Of(A)) {
  if (blocks_) {
    isPositive_ = blocks_->IsPositive();
    return;
  }
  Split(A);
  Factorise();
}

void ILUPreconditioner::Split(const SparseMatrix& A) {
  std::vector<std::pair<int, double>> row;
  for (int i = 0; i < A.rows; ++i) {
    row.clear();
    A.ForEachEntry(i, [&](int column, double value) { row.emplace_back(column, value); });
    std::sort(row.begin(), row.end());
    const auto diagonal = std::lower_bound(row.begin(), row.end(), std::pair(i, -HUGE_VAL));
    std::for_each(row.begin(), diagonal, [&](auto e) { lower_.Append(e.first, e.second); });
    // A missing diagonal is a pivot of 0.0: what is divided by it shows as not a number.
    if (diagonal == row.end() || diagonal->first != i) upper_.Append(i, 0.0);
    std::for_each(diagonal, row.end(), [&](auto e) { upper_.Append(e.first, e.second); });
    lower_.CloseRow();
    upper_.CloseRow();
  }
}

/// Row by row; `place` tells where the row in work stores a column, so that no row is searched.
void ILUPreconditioner::Factorise() {
  const int n = upper_.NumRows();
  std::vector<double*> place(n, nullptr);
  for (int i = 0; i < n; ++i) {
    const int lowerBegin = lower_.rowStart[i];
    const int lowerEnd = lower_.rowStart[i + 1];
    const int upperBegin = upper_.rowStart[i];
    const int upperEnd = upper_.rowStart[i + 1];
    for (int s = lowerBegin; s < lowerEnd; ++s) place[lower_.colIndex[s]] = &lower_.values[s];
    for (int s = upperBegin; s < upperEnd; ++s) place[upper_.colIndex[s]] = &upper_.values[s];

    for (int s = lowerBegin; s < lowerEnd; ++s) {
      const int k = lower_.colIndex[s];
      const int diagonal = upper_.rowStart[k];
      const double factor = lower_.values[s] / upper_.values[diagonal];  // l_ik / u_kk
      lower_.values[s] = factor;
      for (int t = diagonal + 1; t < upper_.rowStart[k + 1]; ++t)
        if (double* const target = place[upper_.colIndex[t]])
          *target -= factor * upper_.values[t];  // (i, j) -= l_ik u_kj
    }

    const double pivot = upper_.values[upperBegin];
    if (!(pivot > 0.0) || !std::isfinite(pivot)) isPositive_ = false;
    for (int s = lowerBegin; s < lowerEnd; ++s) place[lower_.colIndex[s]] = nullptr;
    for (int s = upperBegin; s < upperEnd; ++s) place[upper_.colIndex[s]] = nullptr;
  }
}

void ILUPreconditioner::Solve(const double* r, double* z) const {
  if (blocks_) {
    blocks_->Solve(r, z);
    return;
  }
  SolveRows(kPlain, 1.0, kUnitLower, lower_, r, 0.0, z);
  SolveRows(kPlain, 1.0, kStoredUpper, upper_, z, 0.0, z);
}

void ILUPreconditioner::TransposedSolve(const double* r, double* z) const {
  if (blocks_) {
    blocks_->TransposedSolve(r, z);
    return;
  }
  SolveRows(kTransposed, 1.0, kStoredUpper, upper_, r, 0.0, z);
  SolveRows(kTransposed, 1.0, kUnitLower, lower_, z, 0.0, z);
}

void ILUPreconditioner::New_Matrix(const SparseMatrix& /*A*/) {
  Fatal("Wrong use of ILUPreconditioner::New_Matrix");
}

}  // namespace kestol
