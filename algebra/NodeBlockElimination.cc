// The incomplete elimination by node blocks.
#include <algorithm>
#include <cmath>

#include "algebra/NodeBlockFactors.h"
#include "algebra/SparseMatrix.h"

namespace kestol {

namespace {

/// T = G S.
template <int B>
inline void Product(const double* G, const double* S, double* T) {
  for (int i = 0; i < B; ++i) {
    double row[B] = {};
    for (int k = 0; k < B; ++k)
      for (int j = 0; j < B; ++j) row[j] += G[i * B + k] * S[k * B + j];
    std::copy_n(row, B, T + i * B);
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

/// D := D^-1 of a symmetric D, of which the upper triangle is read: D = L d L^T in the given order,
/// D^-1 = L^-T d^-1 L^-1. Returns whether all pivots d are finite and greater than 0.
template <int B>
bool InvertSymmetric(double* D) {
  double L[B][B] = {};
  double pivot[B];
  bool isPositive = true;
  for (int k = 0; k < B; ++k) {
    pivot[k] = D[k * B + k];  // d_k
    isPositive &= pivot[k] > 0.0 && std::isfinite(pivot[k]);
    for (int i = k + 1; i < B; ++i) {
      L[i][k] = D[k * B + i] / pivot[k];                                   // l_ik = d_ki / d_k
      for (int j = i; j < B; ++j) D[i * B + j] -= L[i][k] * D[k * B + j];  // d_ij -= l_ik d_kj
    }
  }
  for (int i = 0; i < B; ++i) {  // L := L^-1
    for (int j = 0; j < i; ++j) {
      double sum = L[i][j];
      for (int k = j + 1; k < i; ++k) sum += L[i][k] * L[k][j];
      L[i][j] = -sum;
    }
    L[i][i] = 1.0;
  }
  for (int i = 0; i < B; ++i) {
    for (int j = 0; j <= i; ++j) {
      double sum = 0.0;
      for (int k = i; k < B; ++k) sum += L[k][i] * L[k][j] / pivot[k];  // L^-T d^-1 L^-1
      D[i * B + j] = D[j * B + i] = sum;
    }
  }
  return isPositive;
}

}  // namespace

/// Node row by node row: what the rows k above give to row I falls on the places that row I stores;
/// `place` finds them without search. Until Scale, a block holds S = D V.
template <int B>
void NodeBlockFactors::Eliminate(const SparseMatrix& A) {
  std::vector<int> cursor(start_.begin(), start_.end() - 1);  // the block (k, I) of each row k
  std::vector<int> place(nodes_, -1);
  std::vector<int> above;
  double buffer[B * B];
  double T[B * B];
  for (int node = 0; node < nodes_; ++node) {
    for (int s = start_[node]; s < start_[node + 1]; ++s) place[column_[s]] = s;
    above.clear();
    ForEachNodeBlock(A, node, [&](const double*, int first) {
      if (first < node * B) above.push_back(first / B);
    });
    std::sort(above.begin(), above.end());
    for (const int k : above) {
      const int own = cursor[k]++;
      Product<B>(FreeInverse<B>(k, buffer), Block(own), T);              // T = D_k^-1 S_kI
      SubtractTransposedProduct<B>(T, Block(own), DiagonalBlock(node));  // D_I -= T^T S_kI
      for (int s = own + 1; s < start_[k + 1]; ++s) {
        const int target = place[column_[s]];
        if (target >= 0)
          SubtractTransposedProduct<B>(T, Block(s), Block(target));  // S_IJ -= T^T S_kJ
      }
    }
    Invert<B>(node);
    for (int s = start_[node]; s < start_[node + 1]; ++s) place[column_[s]] = -1;
  }
  Scale<B>();
}

/// D^-1 of a node between its free degrees, zeros in the rows and columns of fixed ones; in
/// `buffer` where the node has any.
template <int B>
const double* NodeBlockFactors::FreeInverse(int node, double* buffer) const {
  const double* const inverse = DiagonalBlock(node);
  const unsigned fixed = fixed_[node];
  if (fixed == 0) return inverse;
  for (int r = 0; r < B; ++r) {
    for (int c = 0; c < B; ++c) {
      const bool isFree = ((fixed >> r | fixed >> c) & 1) == 0;
      buffer[r * B + c] = isFree ? inverse[r * B + c] : 0.0;
    }
  }
  return buffer;
}

/// Replaces D by its inverse. A fixed degree p keeps its unit row; in its column the free degrees
/// get -D^-1 D_p.
template <int B>
void NodeBlockFactors::Invert(int node) {
  double* const D = DiagonalBlock(node);
  double columns[B * B];
  std::copy_n(D, B * B, columns);
  for (int r = 0; r < B; ++r) {
    for (int c = 0; c < B; ++c)
      if (IsFixed(node * B + r) || IsFixed(node * B + c)) D[r * B + c] = r == c ? 1.0 : 0.0;
  }
  if (!InvertSymmetric<B>(D)) isPositive_ = false;
  if (fixed_[node] == 0) return;

  double buffer[B * B];
  const double* const inverse = FreeInverse<B>(node, buffer);
  for (int p = 0; p < B; ++p) {
    if (!IsFixed(node * B + p)) continue;
    for (int r = 0; r < B; ++r)
      for (int k = 0; k < B; ++k) D[p * B + r] -= inverse[r * B + k] * columns[k * B + p];
  }
}

/// V = D^-1 S in the rows of free degrees; in the row of a fixed degree p, which holds the column
/// S_p of the lower factor, W_p = S_p - sum over free f of V_f D_fp.
template <int B>
void NodeBlockFactors::Scale() {
  double factor[B * B];
  double scaled[B * B];
  for (int node = 0; node < nodes_; ++node) {
    std::copy_n(DiagonalBlock(node), B * B, factor);  // by columns: row p is column p of D^-1
    for (int r = 0; r < B; ++r) {
      for (int c = 0; c < B; ++c)
        if (r != c && IsFixed(node * B + c)) factor[r * B + c] = 0.0;
    }
    for (int s = start_[node]; s < start_[node + 1]; ++s) {
      Product<B>(factor, Block(s), scaled);
      std::copy_n(scaled, B * B, Block(s));
    }
  }
}

template void NodeBlockFactors::Eliminate<3>(const SparseMatrix& A);
template void NodeBlockFactors::Eliminate<6>(const SparseMatrix& A);

}  // namespace kestol
