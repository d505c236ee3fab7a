#include "analysis/Hinges.h"

#include <algorithm>
#include <vector>

#include "input/Project.h"

namespace kestol {

namespace {

int HighestElementNumber(const Project& project) {
  int highest = 0;
  for (const auto& mesh : project.meshes) highest = std::max(highest, mesh->elems.Highest());
  return highest;
}

/// The beams that stay rigid at the hinges: the first one at each node.
class RigidBeams {
public:
  explicit RigidBeams(int highestNode) : found_(static_cast<std::size_t>(highestNode) + 1) {}

  /// Whether the next beam at `node` is hinged there: not without a hinge, nor as the first one.
  bool IsHinged(const Node* node) {
    if (node == nullptr || !node->isHinge) return false;
    const bool hinged = found_[node->number];
    found_[node->number] = true;
    return hinged;
  }

private:
  std::vector<bool> found_;  ///< by node number
};

EndCode CodeOf(const Elem& beam, RigidBeams& rigid) {
  const bool hinged1 = rigid.IsHinged(beam.nodes[0]);
  const bool hinged2 = rigid.IsHinged(beam.nodes[1]);
  return EndCodeOf(hinged1, hinged2);
}

}  // namespace

void PrepareHinges(Project& project) {
  if (project.meshes.empty()) return;
  project.endCodes.assign(static_cast<std::size_t>(HighestElementNumber(project)), BothFixed);
  RigidBeams rigid(project.meshes[0]->nodes->Highest());
  for (const auto& mesh : project.meshes) {
    if (mesh->nnode != 2) continue;
    for (auto [number, beam] : mesh->elems) project.endCodes[number - 1] = CodeOf(*beam, rigid);
  }
}

}  // namespace kestol
