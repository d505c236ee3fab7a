#pragma once

namespace kestol {

class SparseMatrix;

/// An approximation M of a matrix, whose inverse is cheap to apply. Vectors have as many entries as
/// the matrix has rows.
class Preconditioner {
public:
  virtual ~Preconditioner() = default;
  Preconditioner(const Preconditioner&) = delete;
  Preconditioner& operator=(const Preconditioner&) = delete;

  /// z = M^-1 r. The two vectors are different.
  virtual void Solve(const double* r, double* z) const = 0;

  /// z = M^-T r.
  virtual void TransposedSolve(const double* r, double* z) const = 0;

  /// Rebuilding from another matrix: refused by every preconditioner of this program.
  virtual void New_Matrix(const SparseMatrix& A) = 0;

  const char* const name;

protected:
  explicit Preconditioner(const char* nameString = "Preconditioner") : name(nameString) {}
};

}  // namespace kestol
