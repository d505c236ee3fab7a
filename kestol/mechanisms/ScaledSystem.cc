#include "kestol/mechanisms/ScaledSystem.h"

#include <cmath>

#include "main/ErrorChannel.h"

namespace kestol {

ScaledSystem::ScaledSystem(const LinearSystem& system, SolverName solver)
    : system_(system), solver_(solver), scale_(system.SupportedDiagonal()) {
  for (double& entry : scale_) {
    const double diagonal = std::abs(entry);
    entry = diagonal > 0.0 ? 1.0 / std::sqrt(diagonal) : 1.0;
  }
}

void ScaledSystem::Scale(ReaVecT& x) const {
  for (int i = 1; i <= x.n; ++i) x(i) *= scale_(i);
}

void ScaledSystem::Unscale(ReaVecT& x) const {
  for (int i = 1; i <= x.n; ++i) x(i) /= scale_(i);
}

ReaVecT ScaledSystem::Times(const ReaVecT& x) const {
  ReaVecT y = x;
  Scale(y);
  y = system_.SupportedProduct(y);
  Scale(y);
  return y;
}

bool ScaledSystem::FactoriseShifted(double shift) {
  matrix_ = system_.SupportedMatrix(solver_);
  matrix_->ScaleAndShift(scale_, shift);
  if (matrix_->Factorise(nullptr) == 0) return true;
  matrix_.reset();
  error.Clear();
  return false;
}

void ScaledSystem::SolveBy(StiffnessMatrix& factor, std::vector<ReaVecT>& block) const {
  for (ReaVecT& x : block) Unscale(x);
  factor.SubstituteAll(block, nullptr);
  for (ReaVecT& x : block) Unscale(x);
}

void ScaledSystem::SolveShifted(std::vector<ReaVecT>& block) {
  matrix_->SubstituteAll(block, nullptr);
}

}  // namespace kestol
