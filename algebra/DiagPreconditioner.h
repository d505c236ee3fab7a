#pragma once

#include <vector>

#include "algebra/Preconditioner.h"

namespace kestol {

/// M is the diagonal of A: z_i = r_i / a_ii.
class DiagPreconditioner : public Preconditioner {
public:
  /// Refuses a diagonal entry that is 0.0 or missing.
  explicit DiagPreconditioner(const SparseMatrix& A);

  void Solve(const double* r, double* z) const override;
  void TransposedSolve(const double* r, double* z) const override;
  void New_Matrix(const SparseMatrix& A) override;

private:
  std::vector<double> diagonal_;
};

}  // namespace kestol
