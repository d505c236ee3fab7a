#include "kestol/findings/Geometry.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "algebra/Tolerances.h"
#include "kestol/findings/Inspection.h"

namespace kestol {

namespace {

Vector3 Corner(const Elem& elem, int i) {
  return PositionOf(*elem.nodes[i]);
}

/// The diagonal of the box around the middle half of the nodes, by each coordinate: a few nodes far
/// away do not change it.
double SizeOfMiddle(const Project& project) {
  if (project.meshes.empty()) return 0.0;
  Vector3 size{};
  std::vector<double> values;
  for (int a = 0; a < 3; ++a) {
    values.clear();
    for (const auto [number, node] : *project.meshes[0]->nodes)
      values.push_back(PositionOf(*node)[a]);
    if (values.empty()) return 0.0;
    const auto low = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 4);
    const auto high = values.end() - 1 - (low - values.begin());
    std::nth_element(values.begin(), low, values.end());
    std::nth_element(low, high, values.end());
    size[a] = *high - *low;
  }
  return Norm(size);
}

/// Length, area or volume against what an element with such edges could have.
double RelativeSize(const Elem& elem) {
  const double longest = LongestEdge(elem);
  if (!(longest > 0.0)) return 0.0;
  switch (elem.mesh->elemType) {
    case Triangle:
      return SidesAt(elem, 0, 1, 2).Area() / (longest * longest);
    case Tetrahedra:
      return std::abs(VolumeOf(elem)) / (longest * longest * longest);
    default:
      return 1.0;
  }
}

}  // namespace

double SizeOfModel(const Project& project) {
  if (project.meshes.empty()) return 0.0;
  constexpr double kFar = std::numeric_limits<double>::infinity();
  Vector3 low{kFar, kFar, kFar}, high{-kFar, -kFar, -kFar};
  for (const auto [number, node] : *project.meshes[0]->nodes) {
    const Vector3 x = PositionOf(*node);
    for (int a = 0; a < 3; ++a) {
      low[a] = std::min(low[a], x[a]);
      high[a] = std::max(high[a], x[a]);
    }
  }
  return high[0] < low[0] ? 0.0 : Norm(Minus(high, low));
}

PlaceScale ScaleOfPlaces(const Project& project) {
  constexpr double kNear = 1e-6;
  constexpr double kCell = 1e-3;
  const double size = SizeOfModel(project), middle = SizeOfMiddle(project);
  if (!(middle > 0.0)) return {kNear * size, kCell * size};
  return {std::min(kNear * size, kCell * middle), kCell * middle};
}

bool IsWhole(const Elem& elem) {
  return std::all_of(elem.nodes.get(), elem.nodes.get() + elem.nnode,
                     [](const Node* node) { return node != nullptr; });
}

bool IsSound(const Inspection& deck, const Elem& elem) {
  if (!IsWhole(elem) || deck.IsSpoilt(RecordKind::Element, elem.number)) return false;
  return !deck.AnySpoilt(RecordKind::Node) ||
         std::none_of(elem.nodes.get(), elem.nodes.get() + elem.nnode, [&](const Node* node) {
           return deck.IsSpoilt(RecordKind::Node, node->number);
         });
}

int CornerCount(int elemType) {
  switch (elemType) {
    case Linear:
      return 2;
    case Triangle:
      return 3;
    case Tetrahedra:
      return 4;
    default:
      return 0;
  }
}

std::vector<bool> NodesWithElements(const Project& project) {
  std::vector<bool> has(static_cast<std::size_t>(project.meshes[0]->nodes->Highest()) + 1);
  for (const auto& mesh : project.meshes)
    for (const auto [number, elem] : mesh->elems)
      for (int i = 0; i < elem->nnode; ++i)
        if (elem->nodes[i] != nullptr) has[static_cast<std::size_t>(elem->nodes[i]->number)] = true;
  return has;
}

bool Has(const Elem& elem, const Node* node) {
  return std::find(elem.nodes.get(), elem.nodes.get() + elem.nnode, node) !=
         elem.nodes.get() + elem.nnode;
}

Sides SidesAt(const Elem& elem, int i, int j, int k) {
  return {Minus(Corner(elem, j), Corner(elem, i)), Minus(Corner(elem, k), Corner(elem, i))};
}

double LongestEdge(const Elem& elem) {
  double longest = 0.0;
  for (const auto& [i, j] : EdgesOf(elem.mesh->elemType))
    longest = std::max(longest, Norm(Minus(Corner(elem, j), Corner(elem, i))));
  return longest;
}

double VolumeOf(const Elem& tetra) {
  return TripleProduct(Minus(Corner(tetra, 1), Corner(tetra, 0)),
                       Minus(Corner(tetra, 2), Corner(tetra, 0)),
                       Minus(Corner(tetra, 3), Corner(tetra, 0))) /
         6.0;
}

bool HasNoSize(const Project& project, const Elem& elem) {
  constexpr double kFlat = 1e-12;
  if (elem.mesh->elemType == Linear && project.problemType == Plane) {
    const Vector3 d = Minus(Corner(elem, 1), Corner(elem, 0));
    return !(std::hypot(d[0], d[1]) >= kZero);
  }
  return CornerCount(elem.mesh->elemType) > 0 &&
         (!(LongestEdge(elem) >= kZero) || RelativeSize(elem) < kFlat);
}

DisjointSets::DisjointSets(std::size_t count) : parent_(count) {
  std::iota(parent_.begin(), parent_.end(), std::size_t{0});
}

std::size_t DisjointSets::Find(std::size_t i) {
  while (parent_[i] != i) {
    parent_[i] = parent_[parent_[i]];
    i = parent_[i];
  }
  return i;
}

}  // namespace kestol
