#include "input/NodeSections.h"

#include "input/Project.h"

namespace kestol {

Node* FindNode(const Project& project, int nodeNumber) {
  return project.meshes.empty() ? nullptr : project.meshes[0]->nodes->Get(nodeNumber);
}

}  // namespace kestol
