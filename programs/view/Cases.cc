#include "programs/view/Cases.h"

#include <filesystem>
#include <utility>

#include "kestol/combine/Superposition.h"
#include "programs/combine/CombinationFile.h"
#include "programs/combine/FileCases.h"
#include "programs/common/FindingMessages.h"
#include "programs/common/RunProgram.h"

namespace kestol {

namespace {

/// A page sums up its combinations when they are looked at: this many in a moment.
constexpr std::size_t kMostCombinationsOfPage = 1000;

CombinationFile ReadFile(const std::string& path, const std::string& deck) {
  RequireReadable(path);
  std::vector<FileMistake> mistakes;
  CombinationFile file = ReadCombinationFile(path, mistakes);
  PrintMistakes(path, mistakes);
  if (!mistakes.empty()) throw ProgramEnd{kFailed};
  std::error_code none;
  if (!std::filesystem::equivalent(file.model, deck, none))
    throw ProgramError(path + " is for the model " + file.model + ", not for " + deck);
  return file;
}

}  // namespace

bool CasesAreBuilt() {
  return true;
}

std::vector<std::string> InputsOfCases(const std::string& path, const std::string& deck) {
  return InputsOf(path, ReadFile(path, deck));
}

SolvedCases SolveCases(Project& project, const std::string& deck, const std::string& path,
                       const SolveOptions& options) {
  const CombinationFile file = ReadFile(path, deck);
  SolvedCases solved{file.CaseNames(), {}, file.AllCombinations(), {}};
  if (solved.combinations.size() > kMostCombinationsOfPage)
    throw ProgramError(path + " gives " + std::to_string(solved.combinations.size()) +
                       " combinations: a page holds at most " +
                       std::to_string(kMostCombinationsOfPage));
  Superposition sums(project, ReadCases(project, file), options);
  const std::vector<LoadedHinge> obstacles = sums.Obstacles();
  if (!obstacles.empty()) {
    solved.obstacles = FindingsOf(deck, obstacles);
    return solved;
  }
  sums.Solve();
  const PageModel model(project);
  for (int k = 0; k < sums.CaseCount(); ++k) {
    const Results results = sums.Combine(sums.Only(k));
    solved.cases.push_back(CaseOf(model, &results, k, file.cases[k].name, file.cases[k].category));
  }
  return solved;
}

}  // namespace kestol
