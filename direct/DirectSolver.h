#pragma once

#include <memory>
#include <vector>

#include "algebra/NodeBlockMatrix.h"

namespace kestol {

/// Node blocks, and a sparse direct factorisation K = L D L^T by MUMPS with a reordering that keeps
/// L sparse. Pivots are sought, so that a matrix need not be positive definite.
///
/// The factor lies beside the matrix, which stays as it was assembled. The order of elimination is
/// found once for a structure: another assembly after SetZero, or another shift, is factorised in
/// the same order.
class DirectSolver : public NodeBlockMatrix {
public:
  explicit DirectSolver(int numDegrees);
  ~DirectSolver() override;

  void Allocate(int dofsPerNode) override;
  void SetZero() override;

  /// Returns 0; or the first null pivot; or -1 when an entry is not a finite number. Replaces the
  /// factor that there is. Exhausted memory is std::bad_alloc. Writes nothing to `info`.
  int Factorise(std::ostream* info) override;

  /// Solves K f = f in place; returns 0. Refuses a matrix that is not factorised.
  int Substitute(ReaVecT& f, std::ostream* info) override;
  /// The same for all vectors, some of them at a time.
  int SubstituteAll(std::vector<ReaVecT>& block, std::ostream* info) override;

  /// The degrees, ascending, of whose rows the last Factorise left nothing but rounding, when the
  /// rows are scaled alike. Which degrees of a mechanism these are depends on the order of
  /// elimination.
  std::vector<int> NullPivots() const;

  /// How many pivots of the last Factorise are negative: as many as K has negative eigenvalues.
  int NegativePivots() const;

protected:
  const char* Title() const override { return "Node block storage with sparse direct solver\n"; }

private:
  void RequireFactor() const;

  class Mumps;
  std::unique_ptr<Mumps> mumps_;  ///< null until the first Factorise on a structure
  bool isFactorised_ = false;
};

}  // namespace kestol
