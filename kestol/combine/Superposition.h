#pragma once

#include <vector>

#include "kestol/LinearSystem.h"
#include "kestol/LoadedHinges.h"
#include "kestol/combine/CaseLoads.h"

namespace kestol {

/// A model under load cases: one stiffness, one factorisation, one solution per case, and the
/// results of every weighted sum of them. Keeps the displacements of each case: memory is that of
/// the factor and one number per case and equation.
///
///     Project project = ReadDeck("portal.dat");
///     std::vector<CaseLoads> cases(2);
///     cases[0] = TakeLoads(project);
///     cases[1] = ReadCase(project, "office.dat");
///     Superposition sums(project, std::move(cases));
///     const Results results = sums.Combine({1.35, 1.5});
///
/// The project must outlive it. It carries the loads of the last sum asked for, so that whatever is
/// asked of the project and its results belongs to that sum.
class Superposition {
public:
  /// The model must be without loads (TakeLoads).
  Superposition(Project& project, std::vector<CaseLoads> cases, const SolveOptions& options = {});

  /// The beams that keep some case from being added to others; empty for a model that may go on.
  std::vector<LoadedHinge> Obstacles();

  /// Solves all cases. Refuses a model with obstacles, what the solver refuses, and a
  /// mechanism.
  void Solve();

  /// The results of the sum of factors (one per case) times cases; solves the cases first when that
  /// was not done.
  Results Combine(const std::vector<double>& factors);

  int CaseCount() const { return static_cast<int>(cases_.size()); }
  const Project& Model() const { return project_; }
  LinearSystem& System() { return system_; }

  /// The factors of one case alone.
  std::vector<double> Only(int caseIndex) const;

private:
  void Carry(const std::vector<double>& factors);

  Project& project_;
  std::vector<CaseLoads> cases_;
  LinearSystem system_;
  MidSideSupports midSides_;
  std::vector<ReaVecT> displacements_;  ///< by case; empty before Solve
};

}  // namespace kestol
