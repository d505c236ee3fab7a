#include "algebra/NodeBlockFactors.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "algebra/SparseMatrix.h"

namespace kestol {

namespace {

/// Differences of (i, j) and (j, i) below this part of the greater diagonal are rounding.
constexpr double kSymmetryTolerance = 1e-10;

bool IsUnitRow(const SparseMatrix& A, int i) {
  if (A.Diagonal(i) != 1.0) return false;
  bool isUnit = true;
  A.ForEachEntry(i, [&](int column, double value) { isUnit &= column == i || value == 0.0; });
  return isUnit;
}

void CopyTransposed(int B, const double* from, double* to) {
  for (int r = 0; r < B; ++r)
    for (int c = 0; c < B; ++c) to[r * B + c] = from[c * B + r];
}

/// Whether (i, j) and (j, i) agree, given the two diagonals.
bool IsSame(double ij, double ji, double ii, double jj) {
  return std::abs(ij - ji) <= kSymmetryTolerance * std::max(std::abs(ii), std::abs(jj));
}

}  // namespace

NodeBlockFactors::NodeBlockFactors(const SparseMatrix& A)
    : size_(A.blockSize), nodes_(A.rows / A.blockSize) {}

void NodeBlockFactors::FindFixed(const SparseMatrix& A) {
  fixed_.assign(nodes_, 0);
  for (int i = 0; i < A.rows; ++i)
    if (IsUnitRow(A, i)) fixed_[i / size_] |= static_cast<unsigned char>(1 << i % size_);
}

/// The node blocks of the diagonal, row by row; zeros for a node that was never assembled, whose
/// unit rows fixed_ knows. False when a block is not symmetric in its free degrees.
bool NodeBlockFactors::CopyDiagonal(const SparseMatrix& A) {
  const int B = size_;
  inverse_.assign(static_cast<std::size_t>(nodes_) * B * B + SparseMatrix::kPadding, 0.0);
  for (int node = 0; node < nodes_; ++node) {
    double* const D = DiagonalBlock(node);
    ForEachNodeBlock(A, node, [&](const double* block, int first) {
      if (first == node * B) CopyTransposed(B, block, D);
    });
    for (int r = 0; r < B; ++r) {
      for (int c = 0; c < r; ++c) {
        const bool isFree = !IsFixed(node * B + r) && !IsFixed(node * B + c);
        if (isFree && !IsSame(D[r * B + c], D[c * B + r], D[r * B + r], D[c * B + c])) return false;
      }
    }
  }
  return true;
}

/// The blocks above the diagonal, columns ascending.
void NodeBlockFactors::CopyUpper(const SparseMatrix& A) {
  const int B = size_;
  start_.assign(nodes_ + 1, 0);
  for (int node = 0; node < nodes_; ++node) {
    start_[node + 1] = start_[node];
    ForEachNodeBlock(
        A, node, [&](const double*, int first) { start_[node + 1] += first > node * B ? 1 : 0; });
  }
  const auto blocks = static_cast<std::size_t>(start_[nodes_]);
  column_.resize(blocks);
  block_.resize(blocks * B * B + SparseMatrix::kPadding);

  std::vector<std::pair<int, const double*>> row;  // first column and values
  for (int node = 0; node < nodes_; ++node) {
    row.clear();
    ForEachNodeBlock(A, node, [&](const double* block, int first) {
      if (first > node * B) row.emplace_back(first, block);
    });
    std::sort(row.begin(), row.end());
    int slot = start_[node];
    for (const auto& [first, block] : row) {
      column_[slot] = first / B;
      CopyTransposed(B, block, Block(slot++));
    }
  }
}

/// Holds every block below the diagonal against its mirror above, and takes over the columns of
/// fixed degrees. The rows of `column_` ascend, so that the mirrors of one node row come up one
/// after the other. False when the matrix is not symmetric.
bool NodeBlockFactors::MatchLower(const SparseMatrix& A) {
  std::vector<int> cursor(start_.begin(), start_.end() - 1);
  for (int node = 0; node < nodes_; ++node) {
    bool isMatched = true;
    ForEachNodeBlock(A, node, [&](const double* block, int first) {
      const int k = first / size_;
      if (!isMatched || k >= node) return;
      const int slot = cursor[k]++;
      isMatched = slot < start_[k + 1] && column_[slot] == node && MatchBlock(node, block, k, slot);
    });
    if (!isMatched) return false;
  }
  return std::equal(cursor.begin(), cursor.end(), start_.begin() + 1);
}

/// The same for one block of node row `node`, in the columns of node k, and its mirror at `slot`.
bool NodeBlockFactors::MatchBlock(int node, const double* lower, int k, int slot) {
  const int B = size_;
  const double* const D = DiagonalBlock(node);
  const double* const Dk = DiagonalBlock(k);
  double* const upper = Block(slot);
  const unsigned fixedRows = fixed_[node];
  const unsigned fixedColumns = fixed_[k];
  bool isSame = true;
  for (int c = 0; c < B; ++c, lower += B) {  // a column below is a row above
    double* const mirror = upper + c * B;
    for (int r = 0; r < B; ++r) {
      if ((fixedRows >> r & 1) != 0) continue;
      if ((fixedColumns >> c & 1) != 0) mirror[r] = lower[r];
      isSame &= IsSame(lower[r], mirror[r], D[r * B + r], Dk[c * B + c]);
    }
  }
  return isSame;
}

std::unique_ptr<NodeBlockFactors> NodeBlockFactors::Of(const SparseMatrix& A) {
  if (BlockKernelsFor(A.blockSize) == nullptr) return nullptr;
  std::unique_ptr<NodeBlockFactors> factors(new NodeBlockFactors(A));
  factors->FindFixed(A);
  if (!factors->CopyDiagonal(A)) return nullptr;
  factors->CopyUpper(A);
  if (!factors->MatchLower(A)) return nullptr;
  if (A.blockSize == 3)
    factors->Eliminate<3>(A);
  else
    factors->Eliminate<6>(A);
  return factors;
}

UpperBlocks NodeBlockFactors::Blocks() const {
  return {nodes_, start_.data(), column_.data(), block_.data(), inverse_.data(), fixed_.data()};
}

void NodeBlockFactors::Solve(const double* r, double* z) const {
  const BlockKernels& kernels = *BlockKernelsFor(size_);
  work_.resize(static_cast<std::size_t>(nodes_) * kernels.stride);
  kernels.forward(Blocks(), r, work_.data());
  kernels.backward(Blocks(), work_.data(), z);
}

/// z = M^-T r with M^T = (I + V^T) D^T (I + W^T), entry by entry: no iteration waits for it.
void NodeBlockFactors::TransposedSolve(const double* r, double* z) const {
  const int B = size_;
  std::vector<double> y(r, r + static_cast<std::ptrdiff_t>(nodes_) * B);
  const auto forEachPlace = [&](int node, auto f) {  // f(i, j, value), i < j
    for (int s = start_[node]; s < start_[node + 1]; ++s)
      for (int k = 0; k < B * B; ++k) f(node * B + k / B, column_[s] * B + k % B, Block(s)[k]);
  };
  for (int node = 0; node < nodes_; ++node) {
    forEachPlace(node, [&](int i, int j, double v) {
      if (!IsFixed(i)) y[j] -= v * y[i];
    });
  }
  for (int node = nodes_ - 1; node >= 0; --node) {
    const double* const inverse = DiagonalBlock(node);
    for (int d = 0; d < B; ++d) {
      z[node * B + d] = 0.0;
      for (int k = 0; k < B; ++k) z[node * B + d] += inverse[d * B + k] * y[node * B + k];
    }
    forEachPlace(node, [&](int i, int j, double v) {
      if (!IsFixed(j)) z[i] -= v * z[j];
    });
  }
}

}  // namespace kestol
