#include "programs/mpi/RigidSolids.h"

#include <cstddef>
#include <numeric>
#include <vector>

#include "input/Project.h"

namespace kestol {

namespace {

constexpr int kCorners = 4;

/// Grows rigid bodies: an element with three corners in a body belongs to it.
class Bodies {
public:
  explicit Bodies(const Project& project) : held_(Count(project.numNodes), false) {
    for (const auto& mesh : project.meshes)
      for (const auto [number, elem] : mesh->elems) elements_.push_back(elem);
    corners_.assign(elements_.size(), 0);
    bodyOf_.assign(elements_.size(), 0);
    TakeElementsOfNodes(project.numNodes);
  }

  /// False when an element touches a body with less than a face.
  bool Cover() {
    for (std::size_t e = 0; e < elements_.size(); ++e) {
      if (corners_[e] == kCorners) continue;
      if (corners_[e] != 0) return false;
      ++body_;
      Grow(static_cast<int>(e));
      if (touchesAnother_) return false;
    }
    return true;
  }

private:
  static std::size_t Count(int n) { return static_cast<std::size_t>(n); }
  std::size_t NodeOf(int e, int corner) const {
    return Count(elements_[Count(e)]->nodes[corner]->number - 1);
  }

  void TakeElementsOfNodes(int nodeCount) {
    start_.assign(Count(nodeCount) + 1, 0);
    const auto forEach = [&](auto action) {
      for (std::size_t e = 0; e < elements_.size(); ++e)
        for (int k = 0; k < kCorners; ++k)
          action(NodeOf(static_cast<int>(e), k), static_cast<int>(e));
    };
    forEach([&](std::size_t node, int) { ++start_[node + 1]; });
    std::partial_sum(start_.begin(), start_.end(), start_.begin());
    around_.resize(Count(start_.back()));
    std::vector<int> next(start_.begin(), start_.end() - 1);
    forEach([&](std::size_t node, int e) { around_[Count(next[node]++)] = e; });
  }

  void Grow(int seed) {
    std::vector<int> reached = {seed};
    while (!reached.empty()) {
      const int e = reached.back();
      reached.pop_back();
      for (int k = 0; k < kCorners; ++k) Hold(NodeOf(e, k), reached);
    }
  }

  void Hold(std::size_t node, std::vector<int>& reached) {
    if (held_[node]) return;
    held_[node] = true;
    for (int place = start_[node]; place < start_[node + 1]; ++place) {
      const int e = around_[Count(place)];
      int& body = bodyOf_[Count(e)];
      if (body != 0 && body != body_) touchesAnother_ = true;
      body = body_;
      if (++corners_[Count(e)] == kCorners - 1) reached.push_back(e);
    }
  }

  std::vector<const Elem*> elements_;
  std::vector<int> start_, around_;  ///< elements of every node
  std::vector<bool> held_;           ///< by node: belongs to a body
  std::vector<char> corners_;        ///< by element: how many of its corners belong to one
  std::vector<int> bodyOf_;          ///< by element: which one; 0: none so far
  int body_ = 0;
  bool touchesAnother_ = false;
};

}  // namespace

bool SolidsHangTogether(const Project& project) {
  for (const auto& mesh : project.meshes)
    if (mesh->elemType != Tetrahedra) return false;
  return Bodies(project).Cover();
}

}  // namespace kestol
