#include "analysis/Assembly.h"

#include <algorithm>
#include <cmath>

#include "algebra/FixedMatrix.h"
#include "algebra/StiffnessMatrix.h"
#include "analysis/Counts.h"
#include "analysis/ElementRoutines.h"
#include "analysis/RigidMotions.h"
#include "analysis/SupportCheck.h"
#include "analysis/TurnBlock.h"
#include "input/Project.h"
#include "main/ErrorChannel.h"
#include "output/InfoFile.h"

namespace kestol {

namespace {

void AddNodalLoads(const Project& project, ReaVecT& f) {
  const int dofs = project.dofsPerNode;
  for (const auto [key, node] : *project.meshes[0]->nodes) {
    if (!node->load) continue;
    const int first = FirstEquation(node->number, dofs);
    for (int d = 0; d < std::min(dofs, node->load->n); ++d) f(first + d) += (*node->load)(d + 1);
  }
}

template <class Turning>
void TurnAtInclinedSupports(const Project& project, ReaVecT& vector, Turning turning) {
  const int dofs = project.dofsPerNode;
  for (const auto [key, node] : *project.meshes[0]->nodes)
    if (const auto R = SupportAxes(project, *node))
      TurnVector(turning(*R), &vector(FirstEquation(node->number, dofs)), dofs);
}

bool AllFinite(const ReaVecT& vector) {
  return std::all_of(vector.begin(), vector.end(), [](double x) { return std::isfinite(x); });
}

}  // namespace

void BuildStructure(const Project& project, StiffnessMatrix& K, std::ostream* info) {
  const int dofs = project.dofsPerNode;
  for (const auto& mesh : project.meshes)
    for (const auto [number, elem] : mesh->elems)
      for (int i = 0; i < elem->nnode; ++i)
        for (int j = i + 1; j < elem->nnode; ++j)
          K.AddNodePair(elem->nodes[i]->number, elem->nodes[j]->number, dofs);
  K.Allocate(dofs);
  if (info != nullptr) K.PrintInfo(*info);
}

void AddStiffnessOfAllMeshes(const Project& project, StiffnessMatrix& K, BlockAxes axes) {
  AddStiffness(project, WholeMeshes(project), K, axes);
}

ReaVecT LoadsOfDeck(const Project& project) {
  return LoadsOf(project, WholeMeshes(project));
}

std::vector<MeshPart> WholeMeshes(const Project& project) {
  std::vector<MeshPart> parts;
  for (const auto& mesh : project.meshes) parts.emplace_back(*mesh);
  return parts;
}

void AddStiffness(const Project& project, std::span<const MeshPart> parts, BlockSink& K,
                  BlockAxes axes) {
  NodeBlocks blocks(project, K, axes);
  for (const MeshPart& part : parts) RoutinesFor(part.mesh).addStiffness(project, part, blocks);
}

ReaVecT LoadsOf(const Project& project, std::span<const MeshPart> parts) {
  ReaVecT f(EquationCount(project));
  AddNodalLoads(project, f);
  for (const MeshPart& part : parts) RoutinesFor(part.mesh).addLoads(project, part, f);
  return f;
}

void TurnToSupportAxes(const Project& project, ReaVecT& vector) {
  TurnAtInclinedSupports(project, vector, Transpose<3, 3>);
}

void TurnToGlobalAxes(const Project& project, ReaVecT& vector) {
  TurnAtInclinedSupports(project, vector, [](const auto& R) { return R; });
}

void ImposeSupports(const Project& project, StiffnessMatrix& K, ReaVecT& vector) {
  ForEachHeldDegree(project, [&](int equation, int code, double value) {
    if (code == Prescribed)
      K.Prescribe(equation, value, vector);
    else if (code == Spring)
      K.Entry(equation, equation) += value;
  });
}

int CheckSolution(const Project& project, const ReaVecT& u) {
  return AllFinite(u) && SupportsStopRigidMotions(project) ? 0 : kBreakdown;
}

void RefuseUnsolved(const Project& project, int result) {
  CheckSupports(project);
  if (result == kBreakdown)
    Fatal("error when solving system. Probably conditions are not correct\n");
  if (result < 0)
    Fatal("error when solving system. Stopped after ", -result,
          " iterations.Probably conditions are not correct\n");
  // Deliberate: 6 degrees per node, however many there are.
  const int node = (result - 1) / 6 + 1;
  const int degree = result - 6 * node + 6;
  Fatal("error when solving system(", result,
        "). One diagonal=0 in node=", project.ExternalNumber(node), ". Degree of freedom ", degree,
        " from 6\n", "Could not solve system. Probably conditions are not correct\n");
}

Results AssembleAndSolve(const Project& project, StiffnessMatrix& K, std::ostream* info) {
  BuildStructure(project, K, info);
  Progress(info, "Just before filling global stiffness matrix\n");
  AddStiffnessOfAllMeshes(project, K, BlockAxes::Support);
  Progress(info, "Stiffness matrix filled\n");

  Results results;
  results.loads = LoadsOfDeck(project);
  Progress(info, "Load vector constructed\n");

  Progress(info, "Beginning to apply constraints\n");
  ReaVecT& u = results.displacements;
  u = results.loads;
  TurnToSupportAxes(project, u);
  ImposeSupports(project, K, u);

  Progress(info, "Just before Solver\n");
  int result = K.Solve(u, info);
  if (result == 0) result = CheckSolution(project, u);
  if (result != 0) RefuseUnsolved(project, result);
  TurnToGlobalAxes(project, u);
  Progress(info, "Solver finished\n");
  return results;
}

}  // namespace kestol
