#include "analysis/SupportCheck.h"

#include <array>
#include <cmath>

#include "algebra/ReaVec3.h"
#include "algebra/Tolerances.h"
#include "algebra/Vector3.h"
#include "input/Project.h"
#include "main/ErrorChannel.h"

namespace kestol {

namespace {

constexpr int kEnough = 3;  ///< nodes with supports from which nothing is reported

/// The first nodes that carry a support record, at most kEnough of them.
struct SupportedNodes {
  std::array<const Node*, kEnough> nodes{};
  int count = 0;
};

SupportedNodes FindSupportedNodes(const Project& project) {
  SupportedNodes found;
  if (project.meshes.empty()) return found;
  for (auto [number, node] : *project.meshes[0]->nodes) {
    if (!node->constraint) continue;
    found.nodes[found.count++] = node;
    if (found.count == kEnough) break;
  }
  return found;
}

bool IsPrescribed(const Node& node, int d) {
  return d < node.constraint->dofs && node.constraint->codes[d] == Prescribed;
}

bool IsClamped(const Node& node) {
  for (int d = 0; d < 6; ++d)
    if (!IsPrescribed(node, d)) return false;
  return true;
}

void CheckOneNode(const Node& node, ProblemType problemType) {
  if (problemType == Plane) {
    error.message << "There is only one prescribed node in the model!!!\n"
                  << "At least 3 prescribed nodes are needed!!!\n";
  } else if (!IsClamped(node)) {
    error.message << "There is only one prescribed node in the model!!!\n"
                  << "Its 6 degrees of freedom should be prescribed!!!\n";
  }
}

/// Whether a prescribed rotation of one of the nodes has a component about `axis`.
bool IsHeldAgainstRotation(const Node& a, const Node& b, const Vector3& axis) {
  for (int k = 0; k < 3; ++k)
    if ((IsPrescribed(a, 3 + k) || IsPrescribed(b, 3 + k)) && std::abs(axis[k]) > kZero)
      return true;
  return false;
}

void CheckTwoNodes(const Node& a, const Node& b) {
  const Vector3 axis{a.x - b.x, a.y - b.y, a.z - b.z};
  if (!(Norm(axis) >= kZero)) return;
  if (IsInclined(a) || IsInclined(b)) return;
  if (IsHeldAgainstRotation(a, b, axis)) return;
  error.message << "There are only two prescribed nodew in the model!!!\n"
                << "Model can rotate around axe: " << ReaVec3(axis[0], axis[1], axis[2])
                << " !!!\n";
}

}  // namespace

void CheckSupports(const Project& project) {
  const bool planeFrame = project.problemType == Plane && project.meshes.size() == 1 &&
                          project.meshes[0]->elemType == Linear;
  if (planeFrame) return;
  const SupportedNodes supported = FindSupportedNodes(project);
  switch (supported.count) {
    case 0:
      error.message << "There are no prescribed nodes in the model!!!\n";
      break;
    case 1:
      CheckOneNode(*supported.nodes[0], project.problemType);
      break;
    case 2:
      CheckTwoNodes(*supported.nodes[0], *supported.nodes[1]);
      break;
    default:
      break;
  }
}

}  // namespace kestol
