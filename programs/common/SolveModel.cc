#include "programs/common/SolveModel.h"

#include "kestol/ReadDeck.h"
#include "main/ErrorChannel.h"
#include "programs/common/RunProgram.h"

namespace kestol {

namespace {

Results SolveSystem(Project& project, const std::string& deck, const SolveOptions& options) {
  LinearSystem system(project, options);
  const ReaVecT loads = system.DeckLoads();
  try {
    system.Factorise();
    return system.Solve(loads);
  } catch (const FatalError& refusal) {
    PrintRefusal(deck, refusal, "mechanism");
    throw ProgramEnd{kFindings};
  }
}

}  // namespace

Results SolveModel(Project& project, const std::string& deck, const SolveOptions& options,
                   bool asProgram) {
  if (!asProgram) return SolveSystem(project, deck, options);
  try {
    return SolveOnce(project, options);
  } catch (const FatalError&) {
    // The same in steps, on a fresh model, tells a fault of the deck from a system without a
    // solution.
    Project fresh = ReadDeck(deck);
    SolveSystem(fresh, deck, options);
    throw;
  }
}

}  // namespace kestol
