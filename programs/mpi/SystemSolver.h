#pragma once

#include <string>

#include "programs/mpi/DistributedSystem.h"
#include "programs/mpi/SolverChoice.h"

namespace kestol {

struct SolverSettings {
  MpiSolver solver = MpiSolver::Direct;  ///< not Auto
  Family family = Family::Frames;
  double tolerance = 1e-10;  ///< of the true residual, where iterations solve
  int maxIterations = 1000;
};

struct SolveOutcome {
  bool solved = false;
  bool suspect = false;   ///< it looks as if a motion had no resistance
  int iterations = 0;     ///< 0 for the direct solver
  double residual = 0.0;  ///< |f - K u| / |f|, computed from u
};

/// Factorises the matrix of a system, or makes its preconditioner; solves with it.
class SystemSolver {
public:
  SystemSolver(const DistributedSystem& system, const SolverSettings& settings);

  /// The factorisation or the coarse levels. False when it meets a row without resistance.
  bool SetUp();

  /// Solves for the system's right side into its solution vector, after SetUp.
  SolveOutcome Solve();

  /// Solves for another right side, to `tolerance` where iterations solve; false when they do not
  /// come there.
  bool SolveFor(Vec rightSide, Vec solution, double tolerance);

  bool IsDirect() const { return settings_.solver == MpiSolver::Direct; }

  /// PETSc's own description on standard error.
  void View() const;

private:
  void ChooseDirect(int memoryPercent);
  void ChooseIterations();
  bool Factorise();
  int Iterate(Vec rightSide, Vec solution, double tolerance, bool fromSolution);
  double TrueResidual() const;
  double RoundingResidual() const;

  const DistributedSystem& system_;
  SolverSettings settings_;
  PetscSolver solver_;
  int lastIterations_ = 0;
};

}  // namespace kestol
