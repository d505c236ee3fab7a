#pragma once

#include "input/Project.h"

namespace kestol {

/// Calls action(number, node) for each node that the result files list, by rising number in the
/// input: those that were read. Nodes that the conversion to 6 nodes added are listed nowhere.
template <class Action>
void ForEachListedNode(const Project& project, Action action) {
  if (project.meshes.empty()) return;
  for (const auto [number, node] : *project.meshes[0]->nodes) {
    if (number > project.nodesAsRead) break;
    action(number, *node);
  }
}

}  // namespace kestol
