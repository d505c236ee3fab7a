#pragma once

#include <vector>

#include "analysis/MeshPart.h"

namespace kestol {

struct Partition;
class Project;

/// Elements of every mesh that one process works on.
class ElementShare {
public:
  /// Those for which chooses(elem) holds, in the order of their meshes.
  template <class Chooses>
  ElementShare(const Project& project, Chooses chooses);

  /// One part per mesh; the share must outlive them.
  const std::vector<MeshPart>& Parts() const { return parts_; }

  ElementShare(const ElementShare&) = delete;
  ElementShare& operator=(const ElementShare&) = delete;

private:
  std::vector<std::vector<Elem*>> chosen_;  ///< by mesh
  std::vector<MeshPart> parts_;
};

/// What the own rows of the system need: elements with an own node.
ElementShare ElementsOnOwnNodes(const Project& project, const Partition& partition);

/// What the own rows of K u at supports need.
ElementShare ElementsOnOwnSupports(const Project& project, const Partition& partition);

/// Every element is that of one process: the owner of its first node.
ElementShare ElementsOf(const Project& project, const Partition& partition, int rank);

}  // namespace kestol
