#include <iostream>

#include "programs/common/KeptText.h"
#include "programs/common/ProgressLine.h"
#include "programs/common/ResultData.h"
#include "programs/common/RunProgram.h"
#include "programs/common/SolveModel.h"
#include "programs/export/Options.h"
#include "programs/export/Outputs.h"

namespace kestol {

namespace {

bool HasBeams(const Project& project) {
  for (const auto& mesh : project.meshes)
    if (mesh->elemType == Linear && mesh->elems.Highest() > 0) return true;
  return false;
}

Results Solve(Project& project, const ExportOptions& options, std::ostream* info) {
  const bool ownFiles = !options.report.empty() || !options.res.empty();
  return SolveModel(project, options.deck, {.solver = options.solver, .info = info}, ownFiles);
}

int Run(const ExportOptions& options) {
  RequireReadable(options.deck);
  ProgressLine progress(options.quiet);
  KeepText(options.deck);
  Project project = ReadKeptDeck(options.deck);
  Outputs outputs(options, HasBeams(project));
  std::ostream* const info = options.verbose ? &std::cerr : progress.Info();
  const Results results =
      options.meshOnly ? LoadsOfUnsolved(project) : Solve(project, options, info);
  progress.Show("writing");
  outputs.Write(ResultData(project, results, options.stations));
  return kDone;
}

}  // namespace

}  // namespace kestol

int main(int argc, char** argv) {
  kestol::ExportOptions options;
  return kestol::RunProgram("kestol-export", options.deck, [&] {
    options = kestol::ParseOptions(argc, argv);
    return kestol::Run(options);
  });
}
