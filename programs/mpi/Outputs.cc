#include "programs/mpi/Outputs.h"

#include <string>
#include <vector>

#include "kestol/Reports.h"
#include "programs/common/OutputFile.h"
#include "programs/common/OwnFile.h"
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

void WriteOutputs(const MpiOptions& options, const Project& project, const Results& results,
                  OutputFiles& files) {
  if (!options.report.empty())
    WriteReportText(project, results, TakerOf(files.Open(options.report)));
  OutputFile& result = files.Open(options.ResultFile());
  if (options.writeMesh)
    WriteOwnFile(files.Open(options.MeshFile()), [&](const std::string& path) {
      WriteResultText(project, results, TakerOf(result), &path);
    });
  else
    WriteResultText(project, results, TakerOf(result));
  files.Close();
}

}  // namespace kestol
