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

/// Which rotule nodes have their rigid beam end, by node number.
class Claims {
public:
  explicit Claims(int highestNode) : claimed_(static_cast<std::size_t>(highestNode) + 1) {}

  /// Whether the next beam end at `node` is hinged: not without a rotule, not the first one.
  bool IsReleased(const Node* node) {
    if (node == nullptr || node->rotule == 0) return false;
    const bool released = claimed_[node->number];
    claimed_[node->number] = true;
    return released;
  }

private:
  std::vector<bool> claimed_;
};

int CodeOf(const Elem& beam, Claims& claims) {
  const bool first = claims.IsReleased(beam.nodes[0]);
  const bool second = claims.IsReleased(beam.nodes[1]);
  if (first) return second ? BothHinged : HingeAtEnd1;
  return second ? HingeAtEnd2 : BothFixed;
}

}  // namespace

void PrepareHinges(Project& project) {
  if (project.meshes.empty()) return;
  project.rotuleCodes.assign(static_cast<std::size_t>(HighestElementNumber(project)), BothFixed);
  Claims claims(project.meshes[0]->nodes->Highest());
  for (const auto& mesh : project.meshes) {
    if (mesh->nnode != 2) continue;
    for (auto [number, beam] : mesh->elems) project.rotuleCodes[number - 1] = CodeOf(*beam, claims);
  }
}

}  // namespace kestol
