#pragma once

#include <memory>

#include "algebra/NodeBlockFactors.h"
#include "algebra/Preconditioner.h"
#include "algebra/SparseKernels.h"

namespace kestol {

/// Incomplete LU factors of A without fill: M = L U, L unit lower, U upper, both on the claimed
/// pattern of A (stored zeros included). For each row i and its k < i, ascending:
///
///     l_ik = l_ik / u_kk,   then for the stored (k, j), j > k:   (i, j) -= l_ik u_kj if stored
///
/// A matrix of node blocks that is symmetric apart from unit rows is factorised by
/// NodeBlockFactors, with the same result at half the storage; any other one entry by entry.
class ILUPreconditioner : public Preconditioner {
public:
  explicit ILUPreconditioner(const SparseMatrix& A);

  /// Whether every pivot u_ii is finite and greater than 0.
  bool IsPositive() const { return isPositive_; }

  void Solve(const double* r, double* z) const override;
  void TransposedSolve(const double* r, double* z) const override;
  void New_Matrix(const SparseMatrix& A) override;

private:
  void Split(const SparseMatrix& A);
  void Factorise();

  std::unique_ptr<NodeBlockFactors> blocks_;  ///< null: entry by entry
  CompressedRows lower_;                      ///< L without its unit diagonal, columns ascending
  CompressedRows upper_;  ///< U, columns ascending: the diagonal begins each row
  bool isPositive_ = true;
};

}  // namespace kestol
