#include "kestol/mechanisms/Parts.h"

#include <numeric>

namespace kestol {

namespace {

int Root(std::vector<int>& parent, int i) {
  while (parent[i] != i) {
    parent[i] = parent[parent[i]];
    i = parent[i];
  }
  return i;
}

/// By node index: the normal of its shells where these are all that it has, in one plane.
std::vector<Vector3> DrillingAxes(const Project& project) {
  std::vector<Vector3> axes;
  if (project.coplanar.empty()) return axes;
  axes.resize(static_cast<std::size_t>(project.numNodes) + 1);
  const auto at = [&](const Node* node) { return static_cast<std::size_t>(node->number); };
  for (const auto& mesh : project.meshes)
    for (const auto [number, elem] : mesh->elems)
      for (int i = 0; mesh->elemType == Triangle && i < elem->nnode; ++i)
        if (project.coplanar[at(elem->nodes[i]) - 1] != 0)
          axes[at(elem->nodes[i])] = elem->UnitNormal();
  for (const auto& mesh : project.meshes)
    for (const auto [number, elem] : mesh->elems)
      for (int i = 0; mesh->elemType != Triangle && i < elem->nnode; ++i)
        axes[at(elem->nodes[i])] = {};
  return axes;
}

}  // namespace

const Vector3& Parts::DrillingAxis(int index) const {
  static constexpr Vector3 kNone{};
  return drilling_.empty() ? kNone : drilling_[static_cast<std::size_t>(index)];
}

Parts::Parts(const Project& project)
    : byIndex_(static_cast<std::size_t>(project.numNodes) + 1),
      part_(static_cast<std::size_t>(project.numNodes) + 1, -1),
      drilling_(DrillingAxes(project)) {
  for (const auto [number, node] : *project.meshes[0]->nodes)
    byIndex_[static_cast<std::size_t>(node->number)] = node;
  std::vector<int> parent(part_.size());
  std::iota(parent.begin(), parent.end(), 0);
  std::vector<bool> hasElement(part_.size());
  for (const auto& mesh : project.meshes)
    for (const auto [number, elem] : mesh->elems)
      for (int i = 0; i < elem->nnode; ++i) {
        hasElement[static_cast<std::size_t>(elem->nodes[i]->number)] = true;
        parent[Root(parent, elem->nodes[i]->number)] = Root(parent, elem->nodes[0]->number);
      }
  std::vector<int> partOfRoot(part_.size(), -1);
  for (int index = 1; index < static_cast<int>(part_.size()); ++index) {
    if (!hasElement[static_cast<std::size_t>(index)]) continue;
    int& part = partOfRoot[static_cast<std::size_t>(Root(parent, index))];
    if (part == -1) {
      part = Count();
      nodes_.emplace_back();
    }
    part_[static_cast<std::size_t>(index)] = part;
    nodes_[static_cast<std::size_t>(part)].push_back(index);
  }
}

}  // namespace kestol
