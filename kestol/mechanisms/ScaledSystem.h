#pragma once

#include <memory>
#include <vector>

#include "algebra/ReaVecT.h"
#include "algebra/StiffnessMatrix.h"
#include "kestol/LinearSystem.h"

namespace kestol {

/// The supported stiffness scaled to a unit diagonal, A = S K S with S = diag(K)^-1/2; where the
/// diagonal is 0, S is 1.
class ScaledSystem {
public:
  /// `solver` is SkyLine or Direct: what factorises the shifted matrix, when that is asked for.
  ScaledSystem(const LinearSystem& system, SolverName solver);

  int Size() const { return scale_.n; }
  const ReaVecT& Scale() const { return scale_; }
  const LinearSystem& System() const { return system_; }

  /// A x.
  ReaVecT Times(const ReaVecT& x) const;

  /// Factorises A + shift I; false when that fails.
  bool FactoriseShifted(double shift);
  /// (A + shift I)^-1 x, in place, for every x of the block.
  void SolveShifted(std::vector<ReaVecT>& block);

  /// A^-1 x by the factor of S^-1 A S^-1, which is that of the system itself.
  void SolveBy(StiffnessMatrix& factor, std::vector<ReaVecT>& block) const;

  /// x := S x, and S^-1 x.
  void Scale(ReaVecT& x) const;
  void Unscale(ReaVecT& x) const;

private:
  const LinearSystem& system_;
  SolverName solver_;
  std::unique_ptr<StiffnessMatrix> matrix_;  // shifted and factorised
  ReaVecT scale_;
};

}  // namespace kestol
