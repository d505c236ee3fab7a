#include "programs/common/SolveModel.h"

#include "analysis/Assembly.h"
#include "kestol/Mechanisms.h"
#include "main/ErrorChannel.h"
#include "programs/common/FindingMessages.h"
#include "programs/common/KeptText.h"

namespace kestol {

namespace {

Results SolveSystem(Project& project, const std::string& deck, const SolveOptions& options) {
  LinearSystem system(project, options);
  const ReaVecT loads = system.DeckLoads();
  try {
    RequireSound(system);
    Results results = system.Solve(loads);
    RequireResisted(system, results.displacements);
    return results;
  } catch (const FatalError& refusal) {
    EndUnsolved(deck, refusal);
  }
}

}  // namespace

Results SolveModel(Project& project, const std::string& deck, const SolveOptions& options,
                   bool asProgram) {
  if (!asProgram) return SolveSystem(project, deck, options);
  SolveOptions sound = options;
  sound.requireSound = true;
  try {
    return SolveOnce(project, sound);
  } catch (const FatalError&) {
    // The same in steps, on a fresh model, tells a fault of the deck from a system without a
    // solution.
    Project fresh = ReadKeptDeck(deck);
    SolveSystem(fresh, deck, options);
    throw;
  }
}

}  // namespace kestol
