#include "analysis/Reactions.h"

#include <algorithm>

#include "analysis/Assembly.h"
#include "input/Project.h"

namespace kestol {

namespace {

void ReactionsOfNodes(Project& project) {
  const int dofs = project.dofsPerNode;
  for (const auto [key, node] : *project.meshes[0]->nodes) {
    if (!node->constraint) continue;
    Constraint& support = *node->constraint;
    const int first = FirstEquation(node->number, dofs);
    for (int d = 0; d < std::min(dofs, support.dofs); ++d)
      if (support.IsConstrained(d))
        support.reactions[d] = project.solver->RowTimesVector(first + d, project.global);
  }
}

/// Halves the reactions of a mid-side node between its corners. Without a record at both corners
/// they stay where they are, so that the sum is kept.
void MoveToCorners(const Node& middle, Node& corner1, Node& corner2) {
  if (!middle.constraint || !corner1.constraint || !corner2.constraint) return;
  Constraint& support = *middle.constraint;
  for (int d = 0; d < support.dofs; ++d) {
    if (!support.IsConstrained(d)) continue;
    const double half = 0.5 * support.reactions[d];
    corner1.constraint->reactions[d] += half;
    corner2.constraint->reactions[d] += half;
    support.reactions[d] = 0.0;  // the neighbour element moves nothing more
  }
}

void MoveMidSideReactions(const Project& project) {
  for (const auto& mesh : project.meshes) {
    if (mesh->elemType != Triangle || mesh->nnode != 6) continue;
    for (const auto [number, elem] : mesh->elems)
      for (int e = 0; e < 3; ++e)
        MoveToCorners(*elem->nodes[e + 3], *elem->nodes[e], *elem->nodes[(e + 1) % 3]);
  }
}

}  // namespace

void ComputeReactions(Project& project) {
  project.solver->SetZero();
  AddStiffnessOfAllMeshes(project, BlockAxes::Global);
  ReactionsOfNodes(project);
  project.solver.reset();
  if (project.ConvertTo6Nodes != 0) MoveMidSideReactions(project);
}

}  // namespace kestol
