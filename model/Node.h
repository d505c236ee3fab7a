#pragma once

#include <memory>

#include "algebra/ReaVecT.h"
#include "algebra/Vector3.h"
#include "model/Constraint.h"

namespace kestol {

/// A node of the model. It is owned by the node container of the first mesh, under its key: the
/// number written in the input.
struct Node {
  double x = 0.0, y = 0.0, z = 0.0;  ///< in result length units; z is 0 when dim is 2
  int dim = 0;                       ///< coordinates in use, 2 or 3
  int number = 0;        ///< as read; after renumbering the internal index, counted from 1
  bool isHinge = false;  ///< beams meet here through a hinge ("rotule" in the deck)
  std::unique_ptr<Constraint> constraint;  ///< null for a node without supports
  std::unique_ptr<ReaVecT> load;           ///< null, or one entry per degree of freedom
};

inline Vector3 PositionOf(const Node& node) {
  return {node.x, node.y, node.z};
}

/// Whether the node has an inclined support.
inline bool IsInclined(const Node& node) {
  return node.constraint && node.constraint->hasLocalAxes;
}

/// The equation of the first degree of freedom of the node with this internal index; both are
/// counted from 1.
inline int FirstEquation(int nodeIndex, int dofsPerNode) {
  return (nodeIndex - 1) * dofsPerNode + 1;
}

}  // namespace kestol
