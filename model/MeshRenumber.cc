#include <algorithm>
#include <cmath>
#include <vector>

#include "model/Mesh.h"

namespace kestol {

namespace {

struct Point {
  double x, y, z;
};

/// The order of these operations settles which nodes count as equally far away, and with it the
/// numbering: squared distances would break ties differently.
double Distance(const Node& node, const Point& p) {
  const double dx = node.x - p.x, dy = node.y - p.y, dz = node.z - p.z;
  return std::sqrt(dx * dx + dy * dy + dz * dz);
}

Point Centroid(const std::vector<Node*>& nodes) {
  Point sum{0.0, 0.0, 0.0};
  for (const Node* node : nodes) {
    sum.x += node->x;
    sum.y += node->y;
    sum.z += node->z;
  }
  const auto count = static_cast<double>(nodes.size());
  return {sum.x / count, sum.y / count, sum.z / count};
}

/// The first of the nodes farthest from `p`; the first of all when every node lies on it.
const Node& FarthestFrom(const Point& p, const std::vector<Node*>& nodes) {
  const Node* farthest = nodes.front();
  double largest = 0.0;
  for (const Node* node : nodes) {
    const double distance = Distance(*node, p);
    if (distance > largest) {
      largest = distance;
      farthest = node;
    }
  }
  return *farthest;
}

/// The nodes by increasing distance from `reference`; equally distant ones keep their order.
std::vector<Node*> ByDistanceFrom(const Node& reference, const std::vector<Node*>& nodes) {
  struct Place {
    double distance;
    Node* node;
  };
  std::vector<Place> places;
  places.reserve(nodes.size());
  const Point origin{reference.x, reference.y, reference.z};
  for (Node* node : nodes) places.push_back({Distance(*node, origin), node});
  std::stable_sort(places.begin(), places.end(),
                   [](const Place& a, const Place& b) { return a.distance < b.distance; });
  std::vector<Node*> ordered;
  ordered.reserve(places.size());
  for (const Place& place : places) ordered.push_back(place.node);
  return ordered;
}

}  // namespace

void Mesh::Renumber() {
  std::vector<Node*> inKeyOrder;
  for (auto [number, node] : *nodes) inKeyOrder.push_back(node);

  std::vector<int> map(nodes->Highest(), 0);
  if (!inKeyOrder.empty()) {
    const Node& reference = FarthestFrom(Centroid(inKeyOrder), inKeyOrder);
    int index = 0;
    for (Node* node : ByDistanceFrom(reference, inKeyOrder)) {
      map[index] = ExternalNumber(node->number);  // through the map of an earlier call, if any
      node->number = ++index;
    }
  }
  *renumberMap = std::move(map);
}

}  // namespace kestol
