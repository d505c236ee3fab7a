#include "programs/mpi/Outputs.h"

#include <string>
#include <vector>

#include "kestol/Reports.h"
#include "main/ErrorChannel.h"
#include "programs/common/OutputFile.h"
#include "programs/common/RunProgram.h"
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

/// The result file and the mesh file beside it. The solver's writer of the mesh knows its temporary
/// name at best: what it refuses is told with the one that was asked for.
void WriteWithMesh(const Project& project, const Results& results, OutputFile& result,
                   const OutputFile& mesh) {
  const std::string path = mesh.Path();
  try {
    WriteResultText(project, results, TakerOf(result), &path);
  } catch (const FatalError& refusal) {
    throw ProgramError(mesh.ShownName() + ": " + std::string(PlainWords(refusal.what())));
  }
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
    WriteWithMesh(project, results, result, files.Open(options.MeshFile()));
  else
    WriteResultText(project, results, TakerOf(result));
  files.Close();
}

}  // namespace kestol
