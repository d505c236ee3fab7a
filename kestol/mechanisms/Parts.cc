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

}  // namespace

Parts::Parts(const Project& project)
    : byIndex_(static_cast<std::size_t>(project.numNodes) + 1),
      part_(static_cast<std::size_t>(project.numNodes) + 1, -1) {
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
