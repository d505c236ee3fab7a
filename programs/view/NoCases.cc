#include "programs/common/RunProgram.h"
#include "programs/view/Cases.h"

namespace kestol {

bool CasesAreBuilt() {
  return false;
}

std::vector<std::string> InputsOfCases(const std::string&, const std::string&) {
  return {};
}

SolvedCases SolveCases(Project&, const std::string&, const std::string&, const SolveOptions&) {
  throw ProgramError("this program was built without the reader of combination files");
}

}  // namespace kestol
