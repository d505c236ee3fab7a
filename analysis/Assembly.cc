#include "analysis/Assembly.h"

#include <algorithm>
#include <cmath>

#include "algebra/FixedMatrix.h"
#include "analysis/ElementRoutines.h"
#include "analysis/RigidMotions.h"
#include "analysis/SupportCheck.h"
#include "analysis/TurnBlock.h"
#include "input/Project.h"
#include "main/ErrorChannel.h"
#include "output/InfoFile.h"

namespace kestol {

namespace {

/// What Solve returns when there is no solution and nothing more to say.
constexpr int kBreakdown = -1;

void BuildStructure(Project& project, std::ostream* info) {
  StiffnessMatrix& K = *project.solver;
  const int dofs = project.dofsPerNode;
  for (const auto& mesh : project.meshes)
    for (const auto [number, elem] : mesh->elems)
      for (int i = 0; i < elem->nnode; ++i)
        for (int j = i + 1; j < elem->nnode; ++j)
          K.AddNodePair(elem->nodes[i]->number, elem->nodes[j]->number, dofs);
  K.Allocate(dofs);
  if (info != nullptr) K.PrintInfo(*info);
}

void AddNodalLoads(Project& project) {
  const int dofs = project.dofsPerNode;
  for (const auto [key, node] : *project.meshes[0]->nodes) {
    if (!node->load) continue;
    const int first = FirstEquation(node->number, dofs);
    for (int d = 0; d < std::min(dofs, node->load->n); ++d)
      project.global(first + d) += (*node->load)(d + 1);
  }
}

void AddElementLoads(Project& project) {
  for (const auto& mesh : project.meshes) RoutinesFor(*mesh).addLoads(project, *mesh);
}

template <class Turning>
void TurnAtInclinedSupports(const Project& project, ReaVecT& vector, Turning turning) {
  const int dofs = project.dofsPerNode;
  for (const auto [key, node] : *project.meshes[0]->nodes)
    if (const auto R = SupportAxes(project, *node))
      TurnVector(turning(*R), &vector(FirstEquation(node->number, dofs)), dofs);
}

void ImposeSupports(Project& project) {
  const int dofs = project.dofsPerNode;
  for (const auto [key, node] : *project.meshes[0]->nodes) {
    if (!node->constraint) continue;
    const Constraint& support = *node->constraint;
    const int first = FirstEquation(node->number, dofs);
    for (int d = 0; d < std::min(dofs, support.dofs); ++d) {
      const int equation = first + d;
      if (support.codes[d] == Prescribed)
        project.solver->Prescribe(equation, support.values[d], project.global);
      else if (support.codes[d] == Spring)
        project.solver->Entry(equation, equation) += support.values[d];
    }
  }
}

bool AllFinite(const ReaVecT& vector) {
  return std::all_of(vector.begin(), vector.end(), [](double x) { return std::isfinite(x); });
}

/// The solver's word, and ours where it has none: rounding hides what is not held.
int SolveSystem(Project& project, std::ostream* info) {
  const int result = project.solver->Solve(project.global, info);
  if (result != 0) return result;
  return AllFinite(project.global) && SupportsStopRigidMotions(project) ? 0 : kBreakdown;
}

[[noreturn]] void RefuseUnsolved(const Project& project, int result) {
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

}  // namespace

void AddStiffnessOfAllMeshes(Project& project, BlockAxes axes) {
  for (const auto& mesh : project.meshes) RoutinesFor(*mesh).addStiffness(project, *mesh, axes);
}

void TurnToSupportAxes(const Project& project, ReaVecT& vector) {
  TurnAtInclinedSupports(project, vector, Transpose<3, 3>);
}

void TurnToGlobalAxes(const Project& project, ReaVecT& vector) {
  TurnAtInclinedSupports(project, vector, [](const auto& R) { return R; });
}

void AssembleAndSolve(Project& project, std::ostream* info) {
  BuildStructure(project, info);
  Progress(info, "Just before filling global stiffness matrix\n");
  AddStiffnessOfAllMeshes(project, BlockAxes::Constraint);
  Progress(info, "Stiffness matrix filled\n");

  AddNodalLoads(project);
  AddElementLoads(project);
  Progress(info, "Load vector constructed\n");

  Progress(info, "Beginning to apply constraints\n");
  TurnToSupportAxes(project, project.global);
  ImposeSupports(project);

  Progress(info, "Just before Solver\n");
  const int result = SolveSystem(project, info);
  if (result != 0) RefuseUnsolved(project, result);
  TurnToGlobalAxes(project, project.global);
  Progress(info, "Solver finished\n");
}

}  // namespace kestol
