#include "analysis/SolveDriver.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "algebra/SkyLine.h"
#include "algebra/SparseSolver.h"
#include "analysis/Assembly.h"
#include "analysis/Hinges.h"
#include "analysis/ShellMesh.h"
#include "analysis/Sizes.h"
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

void ClearGlobal(Project& project) {
  project.global.Resize(EquationCount(project), 0.0);
  project.global.Fill(0.0);
}

/// The direct solution of the model as read, from which the iterations on the converted model
/// start. Gives it in global axes and leaves the project as if nothing had been solved.
ReaVecT PreSolve(Project& project, int renumber, std::ostream* info) {
  RefuseQuadraticTriangles(project);
  CheckNormals(project);
  if (renumber != 0) RenumberNodes(project);
  Progress(info, "Running a pre-solver to prepare initial values\n");
  project.solver = std::make_unique<SkyLine>(EquationCount(project));
  ClearGlobal(project);
  AssembleAndSolve(project, info);
  project.solver.reset();
  project.coplanar.clear();
  project.solverChoice = SolveSparse;
  project.ConvertTo6Nodes = 1;
  return std::move(project.global);
}

/// Everything about the meshes that comes before equations are counted.
void PrepareMeshes(Project& project, int renumber, std::ostream* info) {
  if (project.ConvertTo6Nodes != 0 && ConvertMeshesTo6Nodes(project))
    Progress(info, "Mesh converted to internal 6-noded representation\n");
  if (renumber != 0 && project.solverChoice == SolveSkyLine) RenumberNodes(project);
  CheckNormals(project);
  if (project.coplanar.empty()) return;
  const auto count = std::count_if(project.coplanar.begin(), project.coplanar.end(),
                                   [](int flag) { return flag != 0; });
  Progress(info, "%i out of %i nodes are coplanar\n", static_cast<int>(count), project.numNodes);
}

std::unique_ptr<SparseSolver> NewSparse(const Project& project) {
  const int n = EquationCount(project);
  if (project.MaxIterations == 0) return std::make_unique<SparseSolver>(n);
  return std::make_unique<SparseSolver>(n, project.tolerance1, project.tolerance2,
                                        project.MaxIterations);
}

/// The solver of the choice; `start`, when not null, is where the iterations begin.
std::unique_ptr<StiffnessMatrix> NewSolver(const Project& project, const ReaVecT* preSolved) {
  if (project.solverChoice == SolveSkyLine)
    return std::make_unique<SkyLine>(EquationCount(project));
  if (project.solverChoice != SolveSparse) Fatal("error: unknown solver\n");
  auto sparse = NewSparse(project);
  if (preSolved != nullptr) sparse->SetInitialValues(StartVector(project, *preSolved));
  return sparse;
}

}  // namespace

void SolveProject(Project& project, int renumber, std::ostream* info) {
  RefuseUnknownNodes(project);
  RefusePlaneTriangles(project);
  if (project.hasRotules) PrepareHinges(project);

  ResolveAutomatic(project);
  const bool twice = project.solverChoice == SolveDouble;
  const ReaVecT preSolved = twice ? PreSolve(project, renumber, info) : ReaVecT();

  PrepareMeshes(project, renumber, info);
  project.solver = NewSolver(project, twice ? &preSolved : nullptr);
  ClearGlobal(project);
  AssembleAndSolve(project, info);
}

}  // namespace kestol
