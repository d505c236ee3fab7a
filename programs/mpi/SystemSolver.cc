#include "programs/mpi/SystemSolver.h"

#include <algorithm>
#include <cmath>
#include <new>

namespace kestol {

namespace {

/// Places (from 1) in the arrays of MUMPS.
constexpr int kMemoryIncrease = 14, kNullPivots = 24;   // what it is asked for
constexpr int kStatus = 1, kNullPivotCount = 28;        // what it answers
constexpr int kIntegersShort = -8, kNumbersShort = -9;  // more of kMemoryIncrease helps

struct Option {
  const char* name;
  const char* value;
};

constexpr Option kGamg[] = {
    {"-pc_type",            "gamg"     },
    {"-pc_gamg_type",       "agg"      },
    {"-mg_levels_ksp_type", "chebyshev"},
};
constexpr Option kJacobiLevels[] = {
    {"-mg_levels_pc_type", "jacobi"},
};
// On shells and frames Jacobi needs several times the iterations.
constexpr Option kCholeskyLevels[] = {
    {"-mg_levels_pc_type",     "bjacobi"},
    {"-mg_levels_sub_pc_type", "icc"    },
};
constexpr Option kHypre[] = {
    {"-pc_type",                             "hypre"    },
    {"-pc_hypre_type",                       "boomeramg"},
    {"-pc_hypre_boomeramg_nodal_coarsen",    "6"        },
    {"-pc_hypre_boomeramg_coarsen_type",     "HMIS"     },
    {"-pc_hypre_boomeramg_interp_type",      "ext+i"    },
    {"-pc_hypre_boomeramg_strong_threshold", "0.5"      },
};

template <std::size_t N>
void SetDefaults(const Option (&options)[N]) {
  for (const Option& option : options) SetDefaultOption(option.name, option.value);
}

bool IsSolids(Family family) {
  return family == Family::Solids4 || family == Family::Solids10;
}

}  // namespace

SystemSolver::SystemSolver(const DistributedSystem& system, const SolverSettings& settings)
    : system_(system), settings_(settings) {}

void SystemSolver::ChooseDirect(int memoryPercent) {
  Mat factor = nullptr;
  PC pc = nullptr;
  Check(MatSetOption(system_.Matrix(), MAT_SYMMETRIC, PETSC_TRUE));
  Check(KSPCreate(PETSC_COMM_WORLD, solver_.Place()));
  Check(KSPSetOperators(solver_, system_.Matrix(), system_.Matrix()));
  Check(KSPSetType(solver_, KSPPREONLY));
  Check(KSPGetPC(solver_, &pc));
  Check(PCSetType(pc, PCCHOLESKY));
  Check(PCFactorSetMatSolverType(pc, MATSOLVERMUMPS));
  Check(KSPSetFromOptions(solver_));
  Check(PCFactorSetUpMatSolverType(pc));
  Check(PCFactorGetMatrix(pc, &factor));
  Check(MatMumpsSetIcntl(factor, kMemoryIncrease, memoryPercent));
  Check(MatMumpsSetIcntl(factor, kNullPivots, 1));
}

void SystemSolver::ChooseIterations() {
  Check(MatSetOption(system_.Matrix(), MAT_SPD, PETSC_TRUE));
  Check(KSPCreate(PETSC_COMM_WORLD, solver_.Place()));
  Check(KSPSetOperators(solver_, system_.Matrix(), system_.Matrix()));
  Check(KSPSetType(solver_, KSPCG));
  if (settings_.solver == MpiSolver::Hypre) {
    SetDefaults(kHypre);
  } else {
    SetDefaults(kGamg);
    if (IsSolids(settings_.family))
      SetDefaults(kJacobiLevels);
    else
      SetDefaults(kCholeskyLevels);
  }
  // Norms of the preconditioned residual deceive on shells.
  Check(KSPSetNormType(solver_, KSP_NORM_UNPRECONDITIONED));
  Check(KSPSetFromOptions(solver_));
}

bool SystemSolver::Factorise() {
  constexpr int kPercents[] = {30, 150, 600};
  for (const int percent : kPercents) {
    ChooseDirect(percent);
    Check(KSPSetUp(solver_));
    PC pc = nullptr;
    Mat factor = nullptr;
    PetscInt status = 0, nullPivots = 0;
    Check(KSPGetPC(solver_, &pc));
    Check(PCFactorGetMatrix(pc, &factor));
    Check(MatMumpsGetInfog(factor, kStatus, &status));
    Check(MatMumpsGetInfog(factor, kNullPivotCount, &nullPivots));
    if (status == kIntegersShort || status == kNumbersShort) continue;
    PCFailedReason failed = PC_NOERROR;
    Check(PCGetFailedReason(pc, &failed));
    if (failed == PC_FACTOR_OUTMEMORY) throw std::bad_alloc();
    return failed == PC_NOERROR && nullPivots == 0;
  }
  throw std::bad_alloc();
}

bool SystemSolver::SetUp() {
  if (IsDirect()) return Factorise();
  ChooseIterations();
  Check(KSPSetUp(solver_));
  return true;
}

/// One run of the iterations; gives PETSc's reason for its end.
int SystemSolver::Iterate(Vec rightSide, Vec solution, double tolerance, bool fromSolution) {
  KSPConvergedReason reason = KSP_CONVERGED_ITERATING;
  PetscInt iterations = 0;
  Check(KSPSetTolerances(solver_, tolerance, 0.0, PETSC_DEFAULT, settings_.maxIterations));
  Check(KSPSetInitialGuessNonzero(solver_, fromSolution ? PETSC_TRUE : PETSC_FALSE));
  Check(KSPSolve(solver_, rightSide, solution));
  Check(KSPGetConvergedReason(solver_, &reason));
  Check(KSPGetIterationNumber(solver_, &iterations));
  lastIterations_ = iterations;
  return reason;
}

double SystemSolver::TrueResidual() const {
  PetscVector residual;
  double left = 0.0, whole = 0.0;
  Check(VecDuplicate(system_.Solution(), residual.Place()));
  Check(MatMult(system_.Matrix(), system_.Solution(), residual));
  Check(VecAYPX(residual, -1.0, system_.RightSide()));
  Check(VecNorm(residual, NORM_2, &left));
  Check(VecNorm(system_.RightSide(), NORM_2, &whole));
  return whole > 0.0 ? left / whole : left;
}

/// What rounding leaves of the residual whatever solves: a few eps |K| |u| / |f|. Slender models
/// have it above any tolerance.
double SystemSolver::RoundingResidual() const {
  constexpr double kFew = 4.0;
  double matrix = 0.0, solution = 0.0, whole = 0.0;
  Check(MatNorm(system_.Matrix(), NORM_INFINITY, &matrix));
  Check(VecNorm(system_.Solution(), NORM_2, &solution));
  Check(VecNorm(system_.RightSide(), NORM_2, &whole));
  return whole > 0.0 ? kFew * PETSC_MACHINE_EPSILON * matrix * solution / whole : 0.0;
}

SolveOutcome SystemSolver::Solve() {
  SolveOutcome outcome;
  if (IsDirect()) {
    const int reason = Iterate(system_.RightSide(), system_.Solution(), settings_.tolerance, false);
    outcome.residual = TrueResidual();
    outcome.solved = reason > 0 && std::isfinite(outcome.residual);
    outcome.suspect = !outcome.solved;
    return outcome;
  }
  // The residual that the iterations carry along drifts from the true one: they begin anew from
  // what they have, as long as that gains something.
  constexpr int kMostRuns = 6;
  constexpr double kGain = 0.5;
  for (int run = 0; run < kMostRuns; ++run) {
    const double before = outcome.residual;
    const int reason =
        Iterate(system_.RightSide(), system_.Solution(), settings_.tolerance, run > 0);
    outcome.iterations += lastIterations_;
    outcome.residual = TrueResidual();
    outcome.solved = outcome.residual <= std::max(settings_.tolerance, RoundingResidual());
    outcome.suspect = reason == KSP_DIVERGED_INDEFINITE_MAT ||
                      reason == KSP_DIVERGED_INDEFINITE_PC || reason == KSP_DIVERGED_NANORINF ||
                      !std::isfinite(outcome.residual);
    if (outcome.solved || outcome.suspect || outcome.iterations >= settings_.maxIterations) break;
    if (run > 0 && !(outcome.residual < kGain * before)) break;
  }
  if (outcome.solved) outcome.suspect = false;
  return outcome;
}

bool SystemSolver::SolveFor(Vec rightSide, Vec solution, double tolerance) {
  return Iterate(rightSide, solution, tolerance, false) > 0;
}

void SystemSolver::View() const {
  Check(KSPView(solver_, PETSC_VIEWER_STDERR_WORLD));
}

}  // namespace kestol
