#include "programs/mpi/Outputs.h"

#include <memory>
#include <vector>

#include "kestol/Reports.h"
#include "programs/common/OutputFile.h"
#include "programs/mpi/Pieces.h"

namespace kestol {

namespace {

std::vector<std::string> NamesOf(const MpiOptions& options, int rank) {
  std::vector<std::string> names;
  if (rank == 0) {
    names.push_back(options.ResultFile());
    if (options.writeMesh) names.push_back(options.MeshFile());
    for (const std::string& name : {options.report, options.info, options.vtu})
      if (!name.empty()) names.push_back(name);
  }
  if (!options.vtu.empty()) names.push_back(PieceName(options.vtu, rank));
  return names;
}

}  // namespace

void CheckOutputs(const MpiOptions& options, int rank) {
  const std::vector<std::string> names = NamesOf(options, rank);
  RefuseSharedNames(names);
  for (const std::string& name : names) OutputFile(name, {options.deck});
}

void WriteOutputs(const MpiOptions& options, const Project& project, const Results& results) {
  std::vector<std::unique_ptr<OutputFile>> files;
  const auto open = [&](const std::string& name) {
    files.push_back(std::make_unique<OutputFile>(name, std::vector{options.deck}));
    return files.back()->Path();
  };
  if (!options.report.empty()) WriteReportFile(project, results, open(options.report));
  const std::string resultFile = open(options.ResultFile());
  const std::string meshFile = options.writeMesh ? open(options.MeshFile()) : "";
  WriteResultFile(project, results, resultFile, options.writeMesh ? &meshFile : nullptr);
  for (const auto& file : files) file->Commit();
}

}  // namespace kestol
