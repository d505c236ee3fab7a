#pragma once

#include <array>
#include <cassert>
#include <cstddef>

#include "algebra/Matriu.h"

namespace kestol {

/// Dense R x C matrix of doubles held in place, row by row, indices from 1. The element kernels
/// work on these: no heap, sizes known to the compiler, which also checks the shapes of products.
/// A new one is 0.0 throughout.
template <int R, int C>
struct FixedMatrix {
  std::array<double, std::size_t{R} * C> entries{};  ///< (i, j) at (i-1)*C + j-1

  double& operator()(int i, int j) { return entries[PlaceOf(i, j)]; }
  double operator()(int i, int j) const { return entries[PlaceOf(i, j)]; }

  FixedMatrix& operator+=(const FixedMatrix& other) {
    for (std::size_t k = 0; k < entries.size(); ++k) entries[k] += other.entries[k];
    return *this;
  }
  FixedMatrix& operator*=(double factor) {
    for (double& entry : entries) entry *= factor;
    return *this;
  }

private:
  static std::size_t PlaceOf(int i, int j) {
    assert(1 <= i && i <= R && 1 <= j && j <= C);
    const int place = (i - 1) * C + (j - 1);
    return static_cast<std::size_t>(place);
  }
};

/// A B.
template <int R, int K, int C>
FixedMatrix<R, C> operator*(const FixedMatrix<R, K>& A, const FixedMatrix<K, C>& B) {
  FixedMatrix<R, C> product;
  for (int i = 1; i <= R; ++i)
    for (int k = 1; k <= K; ++k)
      for (int j = 1; j <= C; ++j) product(i, j) += A(i, k) * B(k, j);
  return product;
}

/// A^T B.
template <int K, int R, int C>
FixedMatrix<R, C> TransposeTimes(const FixedMatrix<K, R>& A, const FixedMatrix<K, C>& B) {
  FixedMatrix<R, C> product;
  for (int k = 1; k <= K; ++k)
    for (int i = 1; i <= R; ++i)
      for (int j = 1; j <= C; ++j) product(i, j) += A(k, i) * B(k, j);
  return product;
}

/// The R x C block of M whose first entry is (row, column).
template <int R, int C>
FixedMatrix<R, C> BlockOf(const Matriu& M, int row, int column) {
  FixedMatrix<R, C> block;
  for (int i = 1; i <= R; ++i)
    for (int j = 1; j <= C; ++j) block(i, j) = M(row + i - 1, column + j - 1);
  return block;
}

/// Copies `block` into M, its first entry to (row, column); M keeps its shape.
template <int R, int C>
void SetBlock(const FixedMatrix<R, C>& block, int row, int column, Matriu& M) {
  for (int i = 1; i <= R; ++i)
    for (int j = 1; j <= C; ++j) M(row + i - 1, column + j - 1) = block(i, j);
}

/// A^T.
template <int R, int C>
FixedMatrix<C, R> Transpose(const FixedMatrix<R, C>& A) {
  FixedMatrix<C, R> transpose;
  for (int i = 1; i <= R; ++i)
    for (int j = 1; j <= C; ++j) transpose(j, i) = A(i, j);
  return transpose;
}

}  // namespace kestol
