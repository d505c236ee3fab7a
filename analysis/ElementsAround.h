#pragma once

#include <span>
#include <vector>

namespace kestol {

class Elem;
class Mesh;
class Project;

/// The elements around each node of one triangle mesh, in element order. Ends the run with
/// "error: Node N has too many elements around (more than 25)\n" at the first element that would be
/// the 26th around a node (N as in the input).
class ElementsAround {
public:
  static constexpr int kMaxAround = 25;

  ElementsAround(const Project& project, const Mesh& mesh);

  /// All elements of the mesh in element order.
  const std::vector<Elem*>& Elements() const { return elements_; }

  /// Positions (from 0, into Elements) of the elements around the node with this internal index.
  std::span<const int> Of(int nodeIndex) const {
    return {positions_.data() + start_[nodeIndex - 1], positions_.data() + start_[nodeIndex]};
  }

private:
  std::vector<Elem*> elements_;
  std::vector<int> start_;      ///< by node index - 1, one more at the end
  std::vector<int> positions_;  ///< node after node
};

}  // namespace kestol
