#include "model/Rotules.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "input/Project.h"
#include "input/Words.h"
#include "main/ErrorChannel.h"
#include "model/NodeSections.h"

namespace {

void ReadRotule(Project& project, TextInput& input, int nodeNumber) {
  Node* const node = FindNode(project, nodeNumber);
  if (node == nullptr) Fatal("error: Trying to assign rotule to unknown node\n");
  node->rotule = 1;
  project.hasRotules = true;
  if (!SkipRestOfLine(input)) Fatal("Not reading correctly the rotules. Number=", nodeNumber, "\n");
}

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

void ReadRotules(Project& project, TextInput& input) {
  for (;;) {
    SkipToRecord(input);
    const std::optional<int> nodeNumber = ReadInteger(input);
    if (!nodeNumber) break;
    ReadRotule(project, input, *nodeNumber);
  }
  ReadEndOfSection(input);
}

void PrepareRotules(Project& project) {
  if (project.meshes.empty()) return;
  project.rotuleCodes.assign(static_cast<std::size_t>(HighestElementNumber(project)), BothFixed);
  Claims claims(project.meshes[0]->nodes->Highest());
  for (const auto& mesh : project.meshes) {
    if (mesh->nnode != 2) continue;
    for (auto [number, beam] : mesh->elems) project.rotuleCodes[number - 1] = CodeOf(*beam, claims);
  }
}
