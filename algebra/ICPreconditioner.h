#pragma once

#include "algebra/Preconditioner.h"
#include "algebra/SparseKernels.h"

namespace kestol {

/// Incomplete Cholesky factors on the pattern of the lower triangle of A: M = L L^T with
///
///     l_ik = (a_ik - sum over j < k of l_ij l_kj) / l_kk
///     l_ii = sqrt(a_ii - sum over j < i of l_ij^2)
///
/// over stored places only.
class ICPreconditioner : public Preconditioner {
public:
  /// Refuses a row without a stored diagonal and a radicand that is not positive.
  explicit ICPreconditioner(const SparseMatrix& A);

  void Solve(const double* r, double* z) const override;
  void TransposedSolve(const double* r, double* z) const override;
  void New_Matrix(const SparseMatrix& A) override;

private:
  void SplitLower(const SparseMatrix& A);
  void Factorise();

  CompressedRows lower_;  ///< L, columns ascending: the diagonal ends each row
};

}  // namespace kestol
