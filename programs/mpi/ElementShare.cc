#include "programs/mpi/ElementShare.h"

#include <algorithm>

#include "input/Project.h"
#include "programs/mpi/Partition.h"

namespace kestol {

namespace {

template <class Holds>
bool AnyNode(const Elem& elem, Holds holds) {
  return std::any_of(elem.nodes.get(), elem.nodes.get() + elem.nnode,
                     [&](const Node* node) { return holds(*node); });
}

}  // namespace

template <class Chooses>
ElementShare::ElementShare(const Project& project, Chooses chooses) {
  chosen_.resize(project.meshes.size());
  for (std::size_t m = 0; m < project.meshes.size(); ++m) {
    for (const auto [number, elem] : project.meshes[m]->elems)
      if (chooses(*elem)) chosen_[m].push_back(elem);
    parts_.emplace_back(*project.meshes[m], chosen_[m]);
  }
}

ElementShare ElementsOnOwnNodes(const Project& project, const Partition& partition) {
  const auto isOwn = [&](const Node& node) { return partition.IsOwn(node.number - 1); };
  return {project, [&](const Elem& elem) { return AnyNode(elem, isOwn); }};
}

ElementShare ElementsOnOwnSupports(const Project& project, const Partition& partition) {
  const auto isOwnSupport = [&](const Node& node) {
    return node.constraint && partition.IsOwn(node.number - 1);
  };
  return {project, [&](const Elem& elem) { return AnyNode(elem, isOwnSupport); }};
}

ElementShare ElementsOf(const Project& project, const Partition& partition, int rank) {
  return {project,
          [&](const Elem& elem) { return partition.OwnerOf(elem.nodes[0]->number - 1) == rank; }};
}

}  // namespace kestol
