#include "kestol/findings/Profile.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

#include "algebra/Vector3.h"
#include "input/Project.h"

namespace kestol {

namespace {

/// Nodes by their distance from the one farthest from the centroid, as positions by node number.
std::vector<int> PositionsByDistance(const Plex<Node>& nodes) {
  std::vector<const Node*> order;
  Vector3 centroid{};
  for (const auto [number, node] : nodes) {
    order.push_back(node);
    centroid = Plus(centroid, PositionOf(*node));
  }
  centroid = Times(centroid, 1.0 / static_cast<double>(order.size()));
  const auto from = [](const Vector3& x) {
    return [x](const Node* a, const Node* b) {
      return Norm(Minus(PositionOf(*a), x)) < Norm(Minus(PositionOf(*b), x));
    };
  };
  const Node* const farthest = *std::max_element(order.begin(), order.end(), from(centroid));
  std::sort(order.begin(), order.end(), from(PositionOf(*farthest)));
  std::vector<int> positions(static_cast<std::size_t>(nodes.Highest()) + 1);
  for (std::size_t i = 0; i < order.size(); ++i)
    positions[static_cast<std::size_t>(order[i]->number)] = static_cast<int>(i);
  return positions;
}

}  // namespace

double ProfileBytes(const Project& project) {
  const Plex<Node>& nodes = *project.meshes[0]->nodes;
  if (nodes.Highest() == 0) return 0.0;
  const std::vector<int> positions = PositionsByDistance(nodes);
  const auto at = [&](const Node* node) {
    return positions[static_cast<std::size_t>(node->number)];
  };
  std::vector<int> first(positions.size());
  std::iota(first.begin(), first.end(), 0);
  for (const auto& mesh : project.meshes)
    for (const auto [number, elem] : mesh->elems) {
      int lowest = at(elem->nodes[0]);
      for (int i = 1; i < elem->nnode; ++i) lowest = std::min(lowest, at(elem->nodes[i]));
      for (int i = 0; i < elem->nnode; ++i) {
        int& f = first[static_cast<std::size_t>(at(elem->nodes[i]))];
        f = std::min(f, lowest);
      }
    }
  double blocks = 0.0;
  for (std::size_t i = 0; i < first.size(); ++i) blocks += static_cast<double>(i) - first[i] + 1.0;
  return blocks * project.dofsPerNode * project.dofsPerNode * static_cast<double>(sizeof(double));
}

}  // namespace kestol
