#pragma once

#include "programs/common/CommonOptions.h"
#include "programs/mpi/SolverChoice.h"

namespace kestol {

/// What a run was asked for; -o names the report.
struct MpiOptions : CommonOptions {
  MpiSolver solver = MpiSolver::Auto;
  double tolerance = 1e-10;
  int maxIterations = 1000;
  std::string report;      ///< empty: none
  std::string resultFile;  ///< empty: as the solver names it
  std::string vtu;         ///< the index of the pieces; empty: none
  std::string info;        ///< "-" is standard output; empty: none
  std::string petsc;
  bool writeMesh = false;

  std::string ResultFile() const;
  /// Beside the result file.
  std::string MeshFile() const;
};

/// Ends the program itself, as every companion's command line does.
MpiOptions ParseOptions(int argc, char** argv);

}  // namespace kestol
