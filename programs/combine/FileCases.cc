#include "programs/combine/FileCases.h"

#include <utility>

#include "kestol/combine/CaseReader.h"

namespace kestol {

std::vector<CaseLoads> ReadCases(Project& project, const CombinationFile& file) {
  std::vector<CaseLoads> cases;
  CaseLoads ofModel = TakeLoads(project);
  for (const CaseEntry& entry : file.cases)
    cases.push_back(entry.ofModel ? std::exchange(ofModel, {}) : ReadCase(project, entry.loads));
  return cases;
}

std::vector<std::string> InputsOf(const std::string& path, const CombinationFile& file) {
  std::vector<std::string> inputs = {path, file.model};
  for (const CaseEntry& entry : file.cases)
    if (!entry.ofModel) inputs.push_back(entry.loads);
  return inputs;
}

}  // namespace kestol
