#include "algebra/NodeBlockFactors.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "algebra/SparseMatrix.h"

namespace {

/// Differences of (i, j) and (j, i) below this part of the greater diagonal are rounding.
constexpr double kSymmetryTolerance = 1e-10;

bool IsUnitRow(const SparseMatrix& A, int i) {
  bool isUnit = A.Diagonal(i) == 1.0;
  A.ForEachEntry(i, [&](int column, double value) { isUnit &= column == i || value == 0.0; });
  return isUnit;
}

/// Calls f(block, first column) for the claimed node blocks of a node row. A block is B*B values,
/// column by column.
template <class Function>
void ForEachBlock(const SparseMatrix& A, int node, Function f) {
  const int B = A.blockSize;
  const int* const column = A.Columns(node * B);
  const double* const values = A.values.data() + A.rowStart[node * B];
  const int blocks = A.Length(node * B) / B;
  for (int b = 0; b < blocks && column[b] >= 0; ++b) f(values + b * B * B, column[b]);
}

void CopyTransposed(int B, const double* from, double* to) {
  for (int r = 0; r < B; ++r) {
    for (int c = 0; c < B; ++c) to[r * B + c] = from[c * B + r];
  }
}

/// Whether (i, j) and (j, i) agree, given the two diagonals.
bool IsSame(double ij, double ji, double ii, double jj) {
  return std::abs(ij - ji) <= kSymmetryTolerance * std::max(std::abs(ii), std::abs(jj));
}

/// T = G S.
template <int B>
inline void Product(const double* G, const double* S, double* T) {
  for (int i = 0; i < B; ++i) {
    double row[B] = {};
    for (int k = 0; k < B; ++k) {
      for (int j = 0; j < B; ++j) row[j] += G[i * B + k] * S[k * B + j];
    }
    for (int j = 0; j < B; ++j) T[i * B + j] = row[j];
  }
}

/// C -= T^T S.
template <int B>
inline void SubtractTransposedProduct(const double* T, const double* S, double* C) {
  for (int i = 0; i < B; ++i) {
    for (int k = 0; k < B; ++k) {
      const double factor = T[k * B + i];
      for (int j = 0; j < B; ++j) C[i * B + j] -= factor * S[k * B + j];
    }
  }
}

}  // namespace

NodeBlockFactors::NodeBlockFactors(const SparseMatrix& A)
    : size_(A.blockSize), nodes_(A.rows / A.blockSize) {}

void NodeBlockFactors::FindFixed(const SparseMatrix& A) {
  fixed_.assign(nodes_, 0);
  for (int i = 0; i < A.rows; ++i) {
    if (IsUnitRow(A, i)) fixed_[i / size_] |= static_cast<unsigned char>(1 << i % size_);
  }
}

/// The node blocks of the diagonal, row by row. False when one is not symmetric in its free
/// degrees.
bool NodeBlockFactors::CopyDiagonal(const SparseMatrix& A) {
  const int B = size_;
  inverse_.assign(static_cast<std::size_t>(nodes_) * B * B + SparseMatrix::kPadding, 0.0);
  for (int node = 0; node < nodes_; ++node) {
    double* const D = DiagonalBlock(node);
    for (int d = 0; d < B; ++d) D[d * B + d] = A.Diagonal(node * B + d);
    ForEachBlock(A, node, [&](const double* block, int first) {
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
    ForEachBlock(A, node,
                 [&](const double*, int first) { start_[node + 1] += first > node * B ? 1 : 0; });
  }
  const auto blocks = static_cast<std::size_t>(start_[nodes_]);
  column_.resize(blocks);
  block_.resize(blocks * B * B + SparseMatrix::kPadding);

  std::vector<std::pair<int, const double*>> row;  // first column and values
  for (int node = 0; node < nodes_; ++node) {
    row.clear();
    ForEachBlock(A, node, [&](const double* block, int first) {
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
    ForEachBlock(A, node, [&](const double* block, int first) {
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
  for (int place = 0; place < B * B; ++place) {  // the columns below are the rows above
    const int c = place / B;
    const int r = place % B;
    if (IsFixed(node * B + r)) continue;
    if (IsFixed(k * B + c)) {
      upper[place] = lower[place];
    } else if (!IsSame(lower[place], upper[place], D[r * B + r], Dk[c * B + c])) {
      return false;
    }
  }
  return true;
}

/// Node row by node row: what the rows k above give to row I falls on the places of row I that are
/// stored; `place` finds them without search.
template <int B>
void NodeBlockFactors::Factorise(const SparseMatrix& A) {
  std::vector<int> cursor(start_.begin(), start_.end() - 1);  // the block (k, I) of each row k
  std::vector<int> place(nodes_, -1);
  std::vector<int> above;
  double gain[B * B];
  double T[B * B];
  for (int node = 0; node < nodes_; ++node) {
    for (int s = start_[node]; s < start_[node + 1]; ++s) place[column_[s]] = s;
    above.clear();
    ForEachBlock(A, node, [&](const double*, int first) {
      if (first < node * B) above.push_back(first / B);
    });
    std::sort(above.begin(), above.end());
    for (const int k : above) {
      const int own = cursor[k]++;
      FreeInverse<B>(k, gain);
      Product<B>(gain, Block(own), T);
      SubtractTransposedProduct<B>(T, Block(own), DiagonalBlock(node));
      for (int s = own + 1; s < start_[k + 1]; ++s) {
        const int target = place[column_[s]];
        if (target >= 0) SubtractTransposedProduct<B>(T, Block(s), Block(target));
      }
    }
    Invert<B>(node);
    for (int s = start_[node]; s < start_[node + 1]; ++s) place[column_[s]] = -1;
  }
  Scale<B>();
}

/// D^-1 between free degrees, row by row; zeros in the rows and columns of fixed ones.
template <int B>
void NodeBlockFactors::FreeInverse(int node, double* gain) const {
  const double* const inverse = DiagonalBlock(node);
  for (int r = 0; r < B; ++r) {
    for (int c = 0; c < B; ++c) {
      const bool isFree = !IsFixed(node * B + r) && !IsFixed(node * B + c);
      gain[r * B + c] = isFree ? inverse[c * B + r] : 0.0;
    }
  }
}

/// Replaces D by its inverse and looks at the pivots. Free degrees: D = L d L^T in their order,
/// D^-1 = L^-T d^-1 L^-1. A fixed degree p keeps its unit row; its column becomes -D^-1 D_p.
template <int B>
void NodeBlockFactors::Invert(int node) {
  double* const D = DiagonalBlock(node);
  double L[B * B] = {};  // first L, then L^-1
  double pivot[B];
  double columns[B * B];
  std::copy_n(D, B * B, columns);
  for (int d = 0; d < B; ++d) {
    for (int other = 0; other < B && IsFixed(node * B + d); ++other) {
      D[d * B + other] = D[other * B + d] = other == d ? 1.0 : 0.0;
    }
  }
  for (int k = 0; k < B; ++k) {
    pivot[k] = D[k * B + k];
    if (!(pivot[k] > 0.0) || !std::isfinite(pivot[k])) isPositive_ = false;
    for (int i = k + 1; i < B; ++i) {
      L[i * B + k] = D[k * B + i] / pivot[k];
      for (int j = i; j < B; ++j) D[i * B + j] -= L[i * B + k] * D[k * B + j];
    }
  }
  for (int i = 0; i < B; ++i) {
    for (int j = 0; j < i; ++j) {
      double sum = L[i * B + j];
      for (int k = j + 1; k < i; ++k) sum += L[i * B + k] * L[k * B + j];
      L[i * B + j] = -sum;
    }
    L[i * B + i] = 1.0;
  }
  for (int i = 0; i < B; ++i) {
    for (int j = 0; j <= i; ++j) {
      double sum = 0.0;
      for (int k = i; k < B; ++k) sum += L[k * B + i] * L[k * B + j] / pivot[k];
      D[i * B + j] = D[j * B + i] = sum;
    }
  }
  for (int p = 0; p < B; ++p) {
    if (!IsFixed(node * B + p)) continue;
    for (int r = 0; r < B; ++r) {
      if (IsFixed(node * B + r)) continue;
      double sum = 0.0;
      for (int k = 0; k < B; ++k) {
        if (!IsFixed(node * B + k)) sum += D[k * B + r] * columns[k * B + p];
      }
      D[p * B + r] = -sum;  // column p
    }
  }
}

/// The last step: V = D^-1 S in the rows of free degrees; in the row of a fixed degree p, which
/// holds the column S_p of the lower factor, W_p = S_p - sum over free f of V_f D_fp.
template <int B>
void NodeBlockFactors::Scale() {
  double gain[B * B];
  double scaled[B * B];
  for (int node = 0; node < nodes_; ++node) {
    FreeInverse<B>(node, gain);
    for (int p = 0; p < B; ++p) {
      if (!IsFixed(node * B + p)) continue;
      for (int c = 0; c < B; ++c) {
        const bool isOther = IsFixed(node * B + c) && c != p;
        gain[p * B + c] = isOther ? 0.0 : DiagonalBlock(node)[p * B + c];
      }
    }
    for (int s = start_[node]; s < start_[node + 1]; ++s) {
      Product<B>(gain, Block(s), scaled);
      std::copy_n(scaled, B * B, Block(s));
    }
  }
}

std::unique_ptr<NodeBlockFactors> NodeBlockFactors::Of(const SparseMatrix& A) {
  if (BlockKernelsFor(A.blockSize) == nullptr) return nullptr;
  std::unique_ptr<NodeBlockFactors> factors(new NodeBlockFactors(A));
  factors->FindFixed(A);
  if (!factors->CopyDiagonal(A)) return nullptr;
  factors->CopyUpper(A);
  if (!factors->MatchLower(A)) return nullptr;
  if (A.blockSize == 3) {
    factors->Factorise<3>(A);
  } else {
    factors->Factorise<6>(A);
  }
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
    for (int s = start_[node]; s < start_[node + 1]; ++s) {
      for (int k = 0; k < B * B; ++k) f(node * B + k / B, column_[s] * B + k % B, Block(s)[k]);
    }
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
