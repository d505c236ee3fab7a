#include "results/NodeResults.h"

#include <algorithm>
#include <unordered_map>

#include "analysis/TurnBlock.h"
#include "main/ErrorChannel.h"

namespace kestol {

namespace {

bool IsHeld(const Project& project, const Node& node) {
  if (!node.constraint) return false;
  const int dofs = std::min(project.dofsPerNode, node.constraint->dofs);
  for (int d = 0; d < dofs; ++d)
    if (node.constraint->IsConstrained(d)) return true;
  return false;
}

NodeForces Turned(const FixedMatrix<3, 3>& R, NodeForces forces) {
  TurnVector(R, forces.force.data(), 3);
  TurnVector(R, forces.moment.data(), 3);
  return forces;
}

/// Degree d (from 0) of a node, whatever the problem. Solids have three forces in any.
double& Component(const Project& project, NodeForces& forces, int d) {
  const bool isSolid = !project.meshes.empty() && project.meshes[0]->elemType == Tetrahedra;
  if (project.problemType == Plane && !isSolid) return d < 2 ? forces.force[d] : forces.moment[2];
  return d < 3 ? forces.force[d] : forces.moment[d - 3];
}

/// The corners between which the conversion put its mid-sides, by the node's place in memory.
std::unordered_map<const Node*, std::array<const Node*, 2>> CornersOfCreated(
    const Project& project) {
  std::unordered_map<const Node*, std::array<const Node*, 2>> corners;
  for (const auto& mesh : project.meshes) {
    if (mesh->elemType != Triangle || mesh->nnode != 6) continue;
    for (const auto [number, elem] : mesh->elems)
      for (int e = 0; e < 3; ++e)
        corners.try_emplace(elem->nodes[e + 3],
                            std::array<const Node*, 2>{elem->nodes[e], elem->nodes[(e + 1) % 3]});
  }
  return corners;
}

}  // namespace

const Node& NodeOfNumber(const Project& project, int nodeNumber) {
  const Node* const node =
      project.meshes.empty() ? nullptr : project.meshes[0]->nodes->Get(nodeNumber);
  if (node == nullptr) Fatal("error: there is no node ", nodeNumber, "\n");
  return *node;
}

NodeForces EntriesOf(const Project& project, const ReaVecT& vector, const Node& node) {
  NodeForces entries;
  const double* const first = vector.begin() + FirstEquation(node.number, project.dofsPerNode) - 1;
  for (int d = 0; d < project.dofsPerNode; ++d) Component(project, entries, d) = first[d];
  return entries;
}

NodeDisplacement DisplacementOf(const Project& project, const Results& results, const Node& node) {
  const NodeForces entries = EntriesOf(project, results.displacements, node);
  return {entries.force, entries.moment};
}

NodeDisplacement DisplacementOf(const Project& project, const Results& results, int nodeNumber) {
  return DisplacementOf(project, results, NodeOfNumber(project, nodeNumber));
}

NodeForces LoadOn(const Project& project, const Results& results, const Node& node) {
  return EntriesOf(project, results.loads, node);
}

NodeForces LoadOn(const Project& project, const Results& results, int nodeNumber) {
  return LoadOn(project, results, NodeOfNumber(project, nodeNumber));
}

NodeForces SupportForceInItsAxes(const Project& project, const Results& results, const Node& node) {
  if (!IsHeld(project, node)) return {};
  const NodeForces internal = EntriesOf(project, results.internalForces, node);
  const NodeForces load = LoadOn(project, results, node);
  const NodeForces global = {Minus(internal.force, load.force),
                             Minus(internal.moment, load.moment)};
  NodeForces held = InSupportAxes(node, global);
  const Constraint& support = *node.constraint;
  for (int d = 0; d < project.dofsPerNode; ++d)
    if (d >= support.dofs || !support.IsConstrained(d)) Component(project, held, d) = 0.0;
  return held;
}

NodeForces SupportForce(const Project& project, const Results& results, const Node& node) {
  const NodeForces held = SupportForceInItsAxes(project, results, node);
  return IsInclined(node) ? Turned(AxesOf(*node.constraint), held) : held;
}

NodeForces SupportForce(const Project& project, const Results& results, int nodeNumber) {
  return SupportForce(project, results, NodeOfNumber(project, nodeNumber));
}

NodeForces InSupportAxes(const Node& node, const NodeForces& global) {
  return IsInclined(node) ? Turned(Transpose(AxesOf(*node.constraint)), global) : global;
}

std::vector<SupportedNode> SupportedNodes(const Project& project) {
  std::vector<SupportedNode> supported;
  if (project.meshes.empty()) return supported;
  std::unordered_map<const Node*, std::array<const Node*, 2>> corners;
  for (const auto [number, node] : *project.meshes[0]->nodes) {
    if (!IsHeld(project, *node)) continue;
    if (number <= project.nodesAsRead) {
      supported.push_back({
          node, number, {0, 0}
      });
      continue;
    }
    if (corners.empty()) corners = CornersOfCreated(project);
    const auto& [a, b] = corners.at(node);
    std::array<int, 2> between = {project.ExternalNumber(a->number),
                                  project.ExternalNumber(b->number)};
    std::sort(between.begin(), between.end());
    supported.push_back({node, 0, between});
  }
  return supported;
}

}  // namespace kestol
