#pragma once

#include <map>
#include <vector>

namespace kestol {

class SparseMatrix;

/// The sparse algorithms as a textbook has them, entry by entry, without any thought of speed: what
/// the program's own are held against.
class ScalarSparse {
public:
  explicit ScalarSparse(const SparseMatrix& A);

  int NumRows() const { return static_cast<int>(rows_.size()); }
  double operator()(int i, int j) const;

  std::vector<double> Times(const std::vector<double>& x) const;

  /// L below the diagonal and U from it on, in one.
  ScalarSparse IncompleteFactors() const;

  /// Of a matrix that holds factors: (L U)^-1 r and (L U)^-T r.
  std::vector<double> SolveFactors(std::vector<double> r) const;
  std::vector<double> SolveFactorsTransposed(std::vector<double> r) const;

  /// Solves A x = b in place of b from the starting vector `x`; returns the number of iterations,
  /// or -1 after `limit`.
  int ConjugateGradient(std::vector<double>& x, const std::vector<double>& b, double tolerance,
                        int limit) const;

private:
  std::vector<std::map<int, double>> rows_;
};

}  // namespace kestol
