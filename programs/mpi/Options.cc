#include "programs/mpi/Options.h"

#include <map>
#include <string_view>

#include "kestol/Reports.h"
#include "programs/common/CommandLine.h"

namespace kestol {

namespace {

constexpr std::string_view kPvtuEnding = ".pvtu";

void Check(const CommandLine& line, MpiOptions& options) {
  if (!options.output.empty()) {
    if (!options.report.empty()) line.Refuse("-o names a report and so does " + options.report);
    options.report = options.output;
  }
  if (!options.vtu.empty() && !options.vtu.ends_with(kPvtuEnding))
    line.Refuse("--vtu takes a name that ends with .pvtu");
}

}  // namespace

std::string MpiOptions::ResultFile() const {
  return resultFile.empty() ? ResultFileName(deck, kResultsExtension) : resultFile;
}

std::string MpiOptions::MeshFile() const {
  if (resultFile.empty()) return ResultFileName(deck, kMeshExtension);
  std::string_view stem = resultFile;
  if (stem.ends_with(kResultsExtension)) stem.remove_suffix(kResultsExtension.size());
  return stem.size() < resultFile.size() ? std::string(stem) + std::string(kMeshExtension)
                                         : ResultFileName(stem, kMeshExtension);
}

MpiOptions ParseOptions(int argc, char** argv) {
  const std::map<std::string, MpiSolver> solvers = {
      {"auto",   MpiSolver::Auto  },
      {"gamg",   MpiSolver::Gamg  },
      {"direct", MpiSolver::Direct},
      {"hypre",  MpiSolver::Hypre }
  };
  MpiOptions options;
  CommandLine line("kestol-mpi",
                   "Solves a model on all processes that mpirun starts, and writes the solver's "
                   "report and files.",
                   options);
  CLI::App& app = line.app;
  app.add_option("REPORT", options.report, "the solver's report")->type_name("");
  line.AddChoice("--solver", options.solver, solvers, "auto, gamg, direct or hypre");
  app.add_option("--tolerance", options.tolerance,
                 "of the iterations: the true residual |f - K u| / |f| (1e-10)")
      ->check(CommandLine::AboveZero())
      ->type_name("X");
  app.add_option("--max-iterations", options.maxIterations, "then they are given up (1000)")
      ->check(CLI::Range(1, 1'000'000'000).description(""))
      ->type_name("N");
  app.add_option("--vtu", options.vtu, "results for ParaView, one piece per process")
      ->type_name("FILE.pvtu");
  app.add_option("-i", options.info, "information on the run; \"-\" is standard output")
      ->type_name("INFO");
  app.add_flag("-p", options.writeMesh, "the post-processor's mesh file beside the result file");
  app.add_option("-r", options.resultFile, "the post-processor's result file (DECK.kestol.res)")
      ->type_name("FILE");
  app.add_option("--petsc", options.petsc, "options of PETSc, for experts")->type_name("OPTIONS");
  line.Parse(argc, argv);
  Check(line, options);
  return options;
}

}  // namespace kestol
