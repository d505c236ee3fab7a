#include <algorithm>
#include <iostream>
#include <optional>

#include "kestol/combine/Envelopes.h"
#include "kestol/combine/Superposition.h"
#include "main/ErrorChannel.h"
#include "programs/combine/CombinationFile.h"
#include "programs/combine/FileCases.h"
#include "programs/combine/Listing.h"
#include "programs/combine/Options.h"
#include "programs/combine/Outputs.h"
#include "programs/common/FindingMessages.h"
#include "programs/common/KeptText.h"
#include "programs/common/OutputFile.h"
#include "programs/common/ProgressLine.h"
#include "programs/common/RunProgram.h"

namespace kestol {

namespace {

/// What the file says; none, with messages, when it has mistakes.
std::optional<CombinationFile> ReadFile(const std::string& path) {
  RequireReadable(path);
  KeepText(path);
  std::vector<FileMistake> mistakes;
  CombinationFile file = ReadCombinationFile(path, mistakes);
  PrintMistakes(path, mistakes);
  if (!mistakes.empty()) return std::nullopt;
  return file;
}

int List(const CombineOptions& options, const CombinationFile& file,
         const std::vector<Combination>& combinations) {
  OutputFile output(options.output.empty() ? "-" : options.output, InputsOf(options.deck, file));
  WriteListing(output, combinations, file.CaseNames());
  output.Commit();
  return kDone;
}

/// None without combinations.
std::optional<ExtremeFinder> FinderFor(const CombinationFile& file,
                                       const std::vector<Combination>& combinations) {
  if (combinations.empty()) return std::nullopt;
  ExtremeFinder finder(combinations);
  const std::size_t generated = combinations.size() - file.combinations.size();
  const bool hasPermanent = std::any_of(file.actions.begin(), file.actions.end(),
                                        [](const Action& action) { return action.permanent; });
  if (generated >= kManyCombinations && hasPermanent)
    finder.UseRules(file.actions, file.rules, file.combinations.size());
  return finder;
}

int Solve(const CombineOptions& options, const CombinationFile& file,
          const std::vector<Combination>& combinations) {
  ProgressLine progress(options.quiet);
  KeepText(file.model);
  Project project = ReadKeptDeck(file.model);
  std::vector<CaseLoads> cases = ReadCases(project, file);
  Outputs outputs(options, file, combinations, project, InputsOf(options.deck, file));
  SolveOptions solve;
  solve.solver = options.solver;
  solve.info = options.verbose ? &std::cerr : progress.Info();
  Superposition sums(project, std::move(cases), solve);
  const std::vector<LoadedHinge> obstacles = sums.Obstacles();
  if (!obstacles.empty()) {
    PrintLoadedHinges(file.model, obstacles);
    return kFindings;
  }
  try {
    sums.Solve();
  } catch (const FatalError& refusal) {
    EndUnsolved(file.model, refusal);
  }
  const std::optional<ExtremeFinder> finder = FinderFor(file, combinations);
  outputs.Write(sums, finder ? &*finder : nullptr, progress);
  return kDone;
}

int Combine(const CombineOptions& options) {
  const std::optional<CombinationFile> file = ReadFile(options.deck);
  if (!file) return kFailed;
  const std::vector<Combination> combinations = file->AllCombinations();
  if (options.list) return List(options, *file, combinations);
  try {
    return Solve(options, *file, combinations);
  } catch (const FatalError& refusal) {
    // What the text of no line is to blame for is the model's fault, not the combinations'.
    PrintRefusal(file->model, refusal);
    return kFailed;
  }
}

}  // namespace

}  // namespace kestol

int main(int argc, char** argv) {
  using namespace kestol;
  CombineOptions options;
  return RunProgram("kestol-combine", options.deck, [&] {
    options = ParseOptions(argc, argv);
    return Combine(options);
  });
}
