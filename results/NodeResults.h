#pragma once

#include <array>
#include <vector>

#include "algebra/ReaVecT.h"
#include "algebra/Vector3.h"
#include "analysis/Results.h"
#include "input/Project.h"

namespace kestol {

// What is known of the nodes. Vectors have three components also in plane problems: force (Fx, Fy,
// 0), moment (0, 0, M); solids have neither rotations nor moments. Everything is in global axes
// where nothing else is said.

struct NodeDisplacement {
  Vector3 u{}, rotation{};
};

struct NodeForces {
  Vector3 force{}, moment{};
};

/// The entries of a node in a vector over equations.
NodeForces EntriesOf(const Project& project, const ReaVecT& vector, const Node& node);

/// The node of that number in the input; refuses an unknown one.
const Node& NodeOfNumber(const Project& project, int nodeNumber);

NodeDisplacement DisplacementOf(const Project& project, const Results& results, const Node& node);
NodeDisplacement DisplacementOf(const Project& project, const Results& results, int nodeNumber);

/// The equivalent nodal forces F of all loads.
NodeForces LoadOn(const Project& project, const Results& results, const Node& node);
NodeForces LoadOn(const Project& project, const Results& results, int nodeNumber);

/// What the support of a node gives to the structure: K u - F at its prescribed degrees and its
/// springs, nothing along the others. Needs results.internalForces.
NodeForces SupportForce(const Project& project, const Results& results, const Node& node);
NodeForces SupportForce(const Project& project, const Results& results, int nodeNumber);
/// The same in the axes of the support; what it leaves free is exactly 0.
NodeForces SupportForceInItsAxes(const Project& project, const Results& results, const Node& node);

/// A force and a moment at a node in the axes of its inclined support; as they are at any other.
NodeForces InSupportAxes(const Node& node, const NodeForces& global);

/// A node that the deck holds or that the conversion to 6 nodes holds between two held ones.
struct SupportedNode {
  const Node* node;
  int number;                  ///< in the input; 0 for a created mid-side
  std::array<int, 2> between;  ///< numbers of the corners of a created mid-side; else 0
};

/// Every node with a prescribed degree or a spring, as read first, by rising number.
std::vector<SupportedNode> SupportedNodes(const Project& project);

/// Calls action(number, node) for every node that was read, by rising number: those that the result
/// files list. Nodes that the conversion to 6 nodes made are listed nowhere.
template <class Action>
void ForEachNode(const Project& project, Action action) {
  if (project.meshes.empty()) return;
  for (const auto [number, node] : *project.meshes[0]->nodes) {
    if (number > project.nodesAsRead) break;
    action(number, *node);
  }
}

}  // namespace kestol
