#pragma once

#include "programs/mpi/SystemSolver.h"

namespace kestol {

/// Looks for a motion that meets no resistance, with the solver that is set up: inverse iteration
/// on S K S, S = diag(K)^-1/2, whose smallest eigenvalue is below 1e-12 for a mechanism and above
/// 5e-11 for every sound model that was ever measured.
class MechanismTest {
public:
  explicit MechanismTest(const DistributedSystem& system);

  /// Two substitutions, or a second run of the iterations to a loose tolerance. True when a motion
  /// is found, which Motion() then is.
  bool Finds(SystemSolver& solver);

  /// The same question to a vector that is known, such as the solution.
  bool IsFree(Vec motion) const;

  Vec Motion() const { return motion_; }

private:
  double Quotient(Vec motion) const;

  const DistributedSystem& system_;
  PetscVector diagonal_, roots_;  ///< D, D^1/2
  PetscVector motion_;
};

}  // namespace kestol
