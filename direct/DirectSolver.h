#pragma once

#include <memory>
#include <vector>

#include "algebra/NodeBlockMatrix.h"

namespace kestol {

/// Node blocks, and a sparse direct factorisation K = L D L^T by MUMPS, with pivots of one and two
/// rows: a matrix that is not positive definite is factorised as well.
///
/// The factor lies beside the matrix, which stays as it was assembled. The order of elimination is
/// found once for a structure: SetZero and another assembly keep it.
class DirectSolver : public NodeBlockMatrix {
public:
  explicit DirectSolver(int numDegrees);
  ~DirectSolver() override;

  void Allocate(int dofsPerNode) override;
  void SetZero() override;

  /// Returns 0; or the first of the null pivots; or -1 for a matrix with an entry that is not a
  /// finite number. Exhausted memory is std::bad_alloc. Writes nothing to `info`.
  int Factorise(std::ostream* info) override;

  /// Solves K f = f in place; returns 0. Refuses a matrix that is not factorised.
  int Substitute(ReaVecT& f, std::ostream* info) override;

  /// The degrees, ascending, that the factorisation could not eliminate: what the others left of
  /// their rows was rounding. There are as many as the matrix lacks in rank; which degrees of a
  /// motion they are depends on the order of elimination.
  std::vector<int> NullPivots() const;

protected:
  const char* Title() const override { return "Node block storage with sparse direct solver\n"; }

private:
  class Mumps;
  std::unique_ptr<Mumps> mumps_;  // null until the first Factorise on a structure
};

}  // namespace kestol
