#include "analysis/SolveDriver.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "algebra/SkyLine.h"
#include "algebra/SparseSolver.h"
#include "analysis/Assembly.h"
#include "analysis/Counts.h"
#include "analysis/Hinges.h"
#include "analysis/ShellConversion.h"
#include "analysis/ShellNormals.h"
#include "analysis/StartVector.h"
#include "input/Project.h"
#include "main/ErrorChannel.h"
#include "output/InfoFile.h"

namespace kestol {

namespace {

void RefuseUnknownNodes(const Project& project) {
  for (const auto& mesh : project.meshes)
    for (const auto [number, elem] : mesh->elems)
      for (int i = 0; i < elem->nnode; ++i)
        if (elem->nodes[i] == nullptr)
          Fatal("error: element: ", elem->number, " has an unknown node\n");
}

/// Shells have six degrees per node, for which a plane problem has no place.
void RefusePlaneTriangles(const Project& project) {
  if (project.problemType != Plane) return;
  for (const auto& mesh : project.meshes)
    if (mesh->elemType == Triangle) Fatal("error: triangle elements need a problem of type 3d\n");
}

void ResolveAutomatic(Project& project) {
  constexpr std::int64_t kFirstSparse = 5000;  // equations
  if (project.solverChoice != Automatic) return;
  const std::int64_t equations = std::int64_t{project.numNodes} * project.dofsPerNode;
  project.solverChoice = equations < kFirstSparse ? SolveSkyLine : SolveSparse;
}

/// Numbers the nodes anew; what is kept by node index moves along.
void RenumberNodes(Project& project) {
  Mesh& mesh = *project.meshes[0];
  std::vector<std::pair<const Node*, int>> flags;
  if (!project.coplanar.empty())
    for (const auto [key, node] : *mesh.nodes)
      flags.emplace_back(node, project.coplanar[node->number - 1]);
  mesh.Renumber();
  for (const auto& [node, flag] : flags) project.coplanar[node->number - 1] = flag;
}

void RefuseQuadraticTriangles(const Project& project) {
  for (const auto& mesh : project.meshes)
    if (mesh->elemType == Triangle && mesh->nnode != 3)
      Fatal("error: Solver DOUBLE needs a shell mesh of 3-noded triangles\n");
}

/// The direct solution of the model as read, from which the iterations on the converted model
/// start, in global axes. Leaves the project as if nothing had been solved.
ReaVecT PreSolve(Project& project, const SolveSettings& settings) {
  RefuseQuadraticTriangles(project);
  CheckNormals(project);
  if (settings.renumber) RenumberNodes(project);
  Progress(settings.info, "Running a pre-solver to prepare initial values\n");
  SkyLine K(EquationCount(project));
  Results results = AssembleAndSolve(project, K, settings.info);
  project.coplanar.clear();
  return std::move(results.displacements);
}

void PrepareMeshes(Project& project, const SolveSettings& settings) {
  if (project.ConvertTo6Nodes && ConvertMeshesTo6Nodes(project))
    Progress(settings.info, "Mesh converted to internal 6-noded representation\n");
  const bool orderMatters = project.solverChoice == SolveSkyLine && !settings.otherMatrix;
  if (settings.renumber && orderMatters) RenumberNodes(project);
  CheckNormals(project);
  if (project.coplanar.empty()) return;
  const auto count = std::count_if(project.coplanar.begin(), project.coplanar.end(),
                                   [](int flag) { return flag != 0; });
  Progress(settings.info, "%i out of %i nodes are coplanar\n", static_cast<int>(count),
           project.numNodes);
}

std::unique_ptr<SparseSolver> NewSparse(const Project& project) {
  const int n = EquationCount(project);
  if (project.MaxIterations == 0) return std::make_unique<SparseSolver>(n);
  return std::make_unique<SparseSolver>(n, project.tolerance1, project.tolerance2,
                                        project.MaxIterations);
}

}  // namespace

ReaVecT PrepareModel(Project& project, const SolveSettings& settings) {
  RefuseUnknownNodes(project);
  RefusePlaneTriangles(project);
  if (project.hasHinges) PrepareHinges(project);

  ResolveAutomatic(project);
  ReaVecT preSolved;
  if (project.solverChoice == SolveDouble) {
    preSolved = PreSolve(project, settings);
    ConvertForDouble(project);
  }
  PrepareMeshes(project, settings);
  return preSolved;
}

void ConvertForDouble(Project& project) {
  RefuseQuadraticTriangles(project);
  RefuseDoubleForSolids(project);
  project.solverChoice = SolveSparse;
  project.ConvertTo6Nodes = true;
}

std::unique_ptr<StiffnessMatrix> NewMatrix(const Project& project, const SolveSettings& settings,
                                           const ReaVecT& preSolved) {
  if (settings.otherMatrix) return settings.otherMatrix(EquationCount(project));
  if (project.solverChoice == SolveSkyLine)
    return std::make_unique<SkyLine>(EquationCount(project));
  if (project.solverChoice != SolveSparse) Fatal("error: unknown solver\n");
  auto sparse = NewSparse(project);
  if (preSolved.n > 0) sparse->SetInitialValues(StartVector(project, preSolved));
  return sparse;
}

Solution SolveProject(Project& project, const SolveSettings& settings) {
  const ReaVecT preSolved = PrepareModel(project, settings);
  Solution solution;
  solution.matrix = NewMatrix(project, settings, preSolved);
  solution.results = AssembleAndSolve(project, *solution.matrix, settings.info);
  return solution;
}

}  // namespace kestol
