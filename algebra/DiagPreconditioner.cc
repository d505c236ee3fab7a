#include "algebra/DiagPreconditioner.h"

#include <cstddef>

#include "algebra/SparseMatrix.h"
#include "main/ErrorChannel.h"

namespace kestol {

DiagPreconditioner::DiagPreconditioner(const SparseMatrix& A)
    : Preconditioner("Diagonal"), diagonal_(A.rows) {
  for (int i = 0; i < A.rows; ++i) {
    diagonal_[i] = A.Diagonal(i);
    if (diagonal_[i] == 0.0)
      Fatal("Diagonal preconditioner failure.\nZero detected in element ", i);
  }
}

void DiagPreconditioner::Solve(const double* r, double* z) const {
  for (std::size_t i = 0; i < diagonal_.size(); ++i) z[i] = r[i] / diagonal_[i];
}

void DiagPreconditioner::TransposedSolve(const double* r, double* z) const {
  Solve(r, z);
}

void DiagPreconditioner::New_Matrix(const SparseMatrix& /*A*/) {
  Fatal("Wrong use of DiagPreconditioner::New_Matrix");
}

}  // namespace kestol
