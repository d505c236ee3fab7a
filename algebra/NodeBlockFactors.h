#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "algebra/BlockKernels.h"
#include "algebra/LargePages.h"

namespace kestol {

class SparseMatrix;

/// The incomplete LU factors, without fill, of a matrix of node blocks that is symmetric apart from
/// the unit rows of fixed degrees. Its pattern consists of whole blocks, so that eliminating node
/// by node gives the factors of eliminating entry by entry:
///
///     L U = M = (I + W) D (I + V)      V above the diagonal, W below, D the node blocks between
///
/// Free degrees f have W_jf = V_fj, so one array serves both. The fixed degrees p leave gaps in
/// it, and what they need fits there:
///
///     place (i, j), i < j    i free    V_ij, and W_ji unless j is fixed, where W_j. = 0
///                            i fixed   W_ji;  V_i. = 0
///
/// A sweep that reads a place in the wrong sense only does so into a fixed degree, whose value
/// the sweep puts back. D_I keeps the unit rows, and the columns of its fixed degrees.
class NodeBlockFactors {
public:
  /// The factors of A; null when A is not of that kind.
  static std::unique_ptr<NodeBlockFactors> Of(const SparseMatrix& A);

  /// Whether every pivot of the elimination entry by entry is finite and greater than 0.
  bool IsPositive() const { return isPositive_; }

  /// z = M^-1 r.
  void Solve(const double* r, double* z) const;
  /// z = M^-T r.
  void TransposedSolve(const double* r, double* z) const;

  /// What the two sweeps of Solve work on.
  UpperBlocks Blocks() const;

private:
  explicit NodeBlockFactors(const SparseMatrix& A);

  bool IsFixed(int degree) const { return (fixed_[degree / size_] >> degree % size_ & 1) != 0; }
  double* Block(int slot) { return block_.data() + std::ptrdiff_t{slot} * size_ * size_; }
  const double* Block(int slot) const {
    return block_.data() + std::ptrdiff_t{slot} * size_ * size_;
  }
  double* DiagonalBlock(int node) { return inverse_.data() + std::ptrdiff_t{node} * size_ * size_; }
  const double* DiagonalBlock(int node) const {
    return inverse_.data() + std::ptrdiff_t{node} * size_ * size_;
  }

  void FindFixed(const SparseMatrix& A);
  bool CopyDiagonal(const SparseMatrix& A);
  void CopyUpper(const SparseMatrix& A);
  bool MatchLower(const SparseMatrix& A);
  bool MatchBlock(int node, const double* lower, int k, int slot);
  template <int B>
  void Eliminate(const SparseMatrix& A);
  template <int B>
  const double* FreeInverse(int node, double* buffer) const;
  template <int B>
  void Invert(int node);
  template <int B>
  void Scale();

  int size_;  ///< B, rows of a node block
  int nodes_;
  std::vector<int> start_;            ///< nodes + 1: blocks of each node row
  std::vector<int> column_;           ///< node of each block, ascending in a row
  LargeVector<double> block_;         ///< B*B per block, row by row, padded
  LargeVector<double> inverse_;       ///< D^-1, B*B per node, column by column, padded
  std::vector<unsigned char> fixed_;  ///< per node, a bit for each fixed degree
  bool isPositive_ = true;
  mutable LargeVector<double> work_;  ///< the vector between the two sweeps
};

}  // namespace kestol
