#pragma once

#include <vector>

#include "algebra/Vector3.h"
#include "input/Project.h"

namespace kestol {

/// The nodes of a prepared model by internal index, and the groups that elements connect.
class Parts {
public:
  explicit Parts(const Project& project);

  int Count() const { return static_cast<int>(nodes_.size()); }
  /// Internal indices (from 1) of the nodes of a part, rising.
  const std::vector<int>& NodesOf(int part) const { return nodes_[static_cast<std::size_t>(part)]; }
  /// The part of a node; -1 for a node without elements.
  int PartOf(int nodeIndex) const { return part_[static_cast<std::size_t>(nodeIndex)]; }
  /// The node with that internal index.
  const Node& NodeAt(int index) const { return *byIndex_[static_cast<std::size_t>(index)]; }
  int NodeCount() const { return static_cast<int>(byIndex_.size()) - 1; }

  /// The normal of a node that has shells of one plane only, else 0: no element feels its rotation
  /// about it.
  const Vector3& DrillingAxis(int index) const;
  /// What elements feel of a node's rotation.
  Vector3 Felt(int index, const Vector3& rotation) const {
    const Vector3& n = DrillingAxis(index);
    return Minus(rotation, Times(n, Dot(n, rotation)));
  }

private:
  std::vector<const Node*> byIndex_;     // [0] is null
  std::vector<int> part_;                // by node index
  std::vector<std::vector<int>> nodes_;  // by part
  std::vector<Vector3> drilling_;        // by node index; empty without shells
};

}  // namespace kestol
