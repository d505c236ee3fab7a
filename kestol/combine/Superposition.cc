#include "kestol/combine/Superposition.h"

#include <utility>

#include "kestol/Mechanisms.h"
#include "main/ErrorChannel.h"

namespace kestol {

Superposition::Superposition(Project& project, std::vector<CaseLoads> cases,
                             const SolveOptions& options)
    : project_(project), cases_(std::move(cases)), system_(project, options), midSides_(project) {}

std::vector<double> Superposition::Only(int caseIndex) const {
  std::vector<double> factors(cases_.size(), 0.0);
  factors[caseIndex] = 1.0;
  return factors;
}

void Superposition::Carry(const std::vector<double>& factors) {
  PutLoads(project_, cases_, factors, midSides_);
}

std::vector<LoadedHinge> Superposition::Obstacles() {
  if (!project_.hasHinges) return {};
  for (int k = 0; k < CaseCount(); ++k) {
    Carry(Only(k));
    std::vector<LoadedHinge> found = LoadedHinges(project_);
    if (!found.empty()) return found;
  }
  return {};
}

void Superposition::Solve() {
  error.Clear();
  const std::vector<LoadedHinge> obstacles = Obstacles();
  if (!obstacles.empty()) Fatal("error: ", TextOf(obstacles.front()), '\n');
  RequireSound(system_);
  std::vector<ReaVecT> displacements;
  for (int k = 0; k < CaseCount(); ++k) {
    Carry(Only(k));
    displacements.push_back(
        system_.SolveForDisplacements(system_.DeckLoads(), system_.DeckSettlements()));
    // With a factor, that has shown already that everything is resisted.
    if (!system_.HasFactor()) RequireResisted(system_, displacements.back());
  }
  displacements_ = std::move(displacements);
}

Results Superposition::Combine(const std::vector<double>& factors) {
  if (displacements_.empty()) Solve();
  Carry(factors);
  ReaVecT u(system_.EquationCount());
  u.Fill(0.0);
  for (std::size_t k = 0; k < displacements_.size(); ++k) {
    if (factors[k] == 0.0) continue;
    const double factor = factors[k];
    const ReaVecT& ofCase = displacements_[k];
    for (int i = 1; i <= u.n; ++i) u(i) += factor * ofCase(i);
  }
  return system_.ResultsOf(system_.DeckLoads(), std::move(u));
}

}  // namespace kestol
