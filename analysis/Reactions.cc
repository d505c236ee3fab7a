#include "analysis/Reactions.h"

#include <algorithm>

#include "algebra/StiffnessMatrix.h"
#include "input/Project.h"

namespace kestol {

namespace {

/// forceAt(equation) is a row of K times u.
template <class ForceAt>
std::vector<Reaction> ReactionsOfNodes(const Project& project, ForceAt forceAt) {
  const int dofs = project.dofsPerNode;
  std::vector<Reaction> reactions;
  for (const auto [key, node] : *project.meshes[0]->nodes) {
    if (!node->constraint) continue;
    const Constraint& support = *node->constraint;
    Reaction reaction{node->number, {}};
    const int first = FirstEquation(node->number, dofs);
    for (int d = 0; d < std::min(dofs, support.dofs); ++d)
      if (support.IsConstrained(d)) reaction.values[d] = forceAt(first + d);
    reactions.push_back(reaction);
  }
  std::sort(reactions.begin(), reactions.end(),
            [](const Reaction& a, const Reaction& b) { return a.nodeIndex < b.nodeIndex; });
  return reactions;
}

/// Finds the record of a node that has a support.
class ReactionTable {
public:
  ReactionTable(std::vector<Reaction>& reactions, int nodeCount) : place_(nodeCount, nullptr) {
    for (Reaction& reaction : reactions) place_[reaction.nodeIndex - 1] = &reaction;
  }
  Reaction* Of(const Node& node) const { return place_[node.number - 1]; }

private:
  std::vector<Reaction*> place_;  ///< by node index - 1; null without a support
};

/// Halves the reactions of a mid-side node between its corners. Without a record at both corners
/// they stay where they are, so that the sum is kept.
void MoveToCorners(const ReactionTable& table, const Node& middle, const Node& corner1,
                   const Node& corner2) {
  Reaction *const from = table.Of(middle), *const to1 = table.Of(corner1),
                  *const to2 = table.Of(corner2);
  if (from == nullptr || to1 == nullptr || to2 == nullptr) return;
  for (int d = 0; d < middle.constraint->dofs; ++d) {
    if (!middle.constraint->IsConstrained(d)) continue;
    const double half = 0.5 * from->values[d];
    to1->values[d] += half;
    to2->values[d] += half;
    from->values[d] = 0.0;  // the neighbour element moves nothing more
  }
}

void MoveMidSideReactions(const Project& project, std::vector<Reaction>& reactions) {
  const ReactionTable table(reactions, project.numNodes);
  for (const auto& mesh : project.meshes) {
    if (mesh->elemType != Triangle || mesh->nnode != 6) continue;
    for (const auto [number, elem] : mesh->elems)
      for (int e = 0; e < 3; ++e)
        MoveToCorners(table, *elem->nodes[e + 3], *elem->nodes[e], *elem->nodes[(e + 1) % 3]);
  }
}

template <class ForceAt>
std::vector<Reaction> PrintedReactions(const Project& project, ForceAt forceAt) {
  std::vector<Reaction> reactions = ReactionsOfNodes(project, forceAt);
  if (project.ConvertTo6Nodes) MoveMidSideReactions(project, reactions);
  return reactions;
}

}  // namespace

std::vector<Reaction> ReactionsOf(const Project& project, StiffnessMatrix& K, const ReaVecT& u) {
  return PrintedReactions(project, [&](int equation) { return K.RowTimesVector(equation, u); });
}

std::vector<Reaction> ReactionsOf(const Project& project, const ReaVecT& internalForces) {
  return PrintedReactions(project, [&](int equation) { return internalForces(equation); });
}

}  // namespace kestol
