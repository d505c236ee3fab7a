#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "kestol/LinearSystem.h"
#include "kestol/combine/Combination.h"
#include "kestol/findings/Finding.h"
#include "programs/view/PageCase.h"

namespace kestol {

/// The cases of a combination file, solved, and its combinations.
struct SolvedCases {
  std::vector<std::string> names;
  std::vector<PageCase> cases;
  std::vector<Combination> combinations;
  std::vector<Finding> obstacles;  ///< to adding the cases up; with any nothing is solved
};

/// Whether this program can read combination files.
bool CasesAreBuilt();

/// The files that a run with the combination file `path` reads beside the deck: no output may
/// replace one of them. Mistakes of the combination file are told on standard error and end the
/// program.
std::vector<std::string> InputsOfCases(const std::string& path, const std::string& deck);

/// Reads the file `path` and solves its cases on the model of `deck`, which must be the one that
/// the file names.
///
/// Refuses what kestol-combine refuses, but for obstacles. Mistakes of the file are told on
/// standard error.
SolvedCases SolveCases(Project& project, const std::string& deck, const std::string& path,
                       const SolveOptions& options);

}  // namespace kestol
