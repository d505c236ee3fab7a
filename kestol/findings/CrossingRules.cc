#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <unordered_map>
#include <vector>

#include "kestol/findings/CellGrid.h"
#include "kestol/findings/Geometry.h"
#include "kestol/findings/Inspection.h"
#include "kestol/findings/ModelRules.h"

namespace kestol {

namespace {

/// A beam as a segment.
struct Segment {
  const Elem* beam;
  Vector3 a, b;
};

/// The nearest points of two segments as their parameters, 0 to 1.
struct Approach {
  double s, t, distance;
};

Approach Nearest(const Segment& p, const Segment& q) {
  const Vector3 d = Minus(p.b, p.a), e = Minus(q.b, q.a), r = Minus(p.a, q.a);
  const double dd = Dot(d, d), ee = Dot(e, e), de = Dot(d, e), dr = Dot(d, r), er = Dot(e, r);
  const double determinant = dd * ee - de * de;
  constexpr double kParallel = 1e-12;
  if (determinant <= kParallel * dd * ee) return {-1.0, -1.0, HUGE_VAL};
  const double s = (de * er - ee * dr) / determinant;
  const double t = (dd * er - de * dr) / determinant;
  const Vector3 gap = Minus(Plus(p.a, Times(d, s)), Plus(q.a, Times(e, t)));
  return {s, t, Norm(gap)};
}

constexpr double kInside = 1e-6;

bool IsInside(double s) {
  return s > kInside && s < 1.0 - kInside;
}

bool ShareNode(const Elem& p, const Elem& q) {
  return Has(p, q.nodes[0]) || Has(p, q.nodes[1]);
}

/// Boxes of space, each with what reaches into it.
class SegmentGrid {
public:
  SegmentGrid(const std::vector<Segment>& segments, double near) : near_(near) {
    double sum = 0.0;
    for (const Segment& segment : segments) sum += Norm(Minus(segment.b, segment.a));
    cell_ = segments.empty() ? 1.0 : std::max(sum / static_cast<double>(segments.size()), near);
    for (std::size_t i = 0; i < segments.size(); ++i)
      ForEachCell(segments[i].a, segments[i].b,
                  [&](std::uint64_t key) { cells_[key].push_back(i); });
  }

  /// Calls look(i) for the segments that may come near to the box of a and b; some of them twice.
  template <class Look>
  void ForEachAround(const Vector3& a, const Vector3& b, Look look) const {
    ForEachCell(a, b, [&](std::uint64_t key) {
      const auto found = cells_.find(key);
      if (found == cells_.end()) return;
      for (const std::size_t i : found->second) look(i);
    });
  }

private:
  // Cells along the segment: a long one does not fill its box.
  template <class Look>
  void ForEachCell(const Vector3& a, const Vector3& b, Look look) const {
    const int steps = static_cast<int>(std::min(Norm(Minus(b, a)) / cell_, 10000.0)) + 1;
    std::uint64_t last = 0;
    for (int step = 0; step < steps; ++step) {
      const Vector3 p = Plus(a, Times(Minus(b, a), static_cast<double>(step) / steps));
      const Vector3 q = Plus(a, Times(Minus(b, a), static_cast<double>(step + 1) / steps));
      std::array<std::array<std::int64_t, 2>, 3> range{};
      for (int i = 0; i < 3; ++i)
        range[i] = {CellOf(std::min(p[i], q[i]) - near_), CellOf(std::max(p[i], q[i]) + near_)};
      for (std::int64_t i = range[0][0]; i <= range[0][1]; ++i)
        for (std::int64_t j = range[1][0]; j <= range[1][1]; ++j)
          for (std::int64_t k = range[2][0]; k <= range[2][1]; ++k) {
            const std::uint64_t key = CellKey(i, j, k);
            if (key != last) look(key);
            last = key;
          }
    }
  }
  std::int64_t CellOf(double x) const { return CellIndex(x, cell_); }

  double near_, cell_;
  std::unordered_map<std::uint64_t, std::vector<std::size_t>> cells_;
};

std::vector<Segment> SegmentsOf(const Inspection& deck) {
  std::vector<Segment> segments;
  ForEachSoundElement(deck, deck.project, [&](const Mesh& mesh, const Elem& elem) {
    if (mesh.elemType != Linear || !(elem.Length() > 0.0)) return;
    segments.push_back({&elem, PositionOf(*elem.nodes[0]), PositionOf(*elem.nodes[1])});
  });
  return segments;
}

/// Two beams that cross, or a beam and a node on it.
struct Crossing {
  const Elem* beam;   ///< the one with the larger number; the one that is passed by a node
  const Elem* other;  ///< null for a node
  const Node* node;
};

void FindCrossingBeams(const std::vector<Segment>& segments, const SegmentGrid& grid, double near,
                       std::vector<Crossing>& found) {
  std::vector<std::size_t> seen(segments.size(), segments.size());
  for (std::size_t i = 0; i < segments.size(); ++i)
    grid.ForEachAround(segments[i].a, segments[i].b, [&](std::size_t j) {
      if (j >= i || seen[j] == i) return;
      seen[j] = i;
      if (ShareNode(*segments[i].beam, *segments[j].beam)) return;
      const Approach approach = Nearest(segments[i], segments[j]);
      if (approach.distance < near && IsInside(approach.s) && IsInside(approach.t))
        found.push_back({segments[i].beam, segments[j].beam, nullptr});
    });
}

void FindNodesOnBeams(const Inspection& deck, const std::vector<Segment>& segments,
                      const SegmentGrid& grid, double near, std::vector<Crossing>& found) {
  const std::vector<bool> has = NodesWithElements(deck.project);
  std::vector<const Node*> seen(segments.size());
  for (const auto [number, node] : *deck.project.meshes[0]->nodes) {
    if (!has[static_cast<std::size_t>(number)] || deck.IsSpoilt(RecordKind::Node, number)) continue;
    const Vector3 x = PositionOf(*node);
    grid.ForEachAround(x, x, [&, on = node](std::size_t j) {
      const Segment& segment = segments[j];
      if (seen[j] == on || Has(*segment.beam, on)) return;
      seen[j] = on;
      const Vector3 d = Minus(segment.b, segment.a);
      const double s = Dot(Minus(x, segment.a), d) / Dot(d, d);
      const double end = near / Norm(d);
      if (!IsInside(s) || s <= end || s >= 1.0 - end) return;
      if (Norm(Minus(x, Plus(segment.a, Times(d, s)))) < near)
        found.push_back({segment.beam, nullptr, on});
    });
  }
}

std::string CrossingText(const Crossing& crossing) {
  const std::string beam = std::to_string(crossing.beam->number);
  if (crossing.node != nullptr)
    return "node " + std::to_string(crossing.node->number) + " stands on element " + beam +
           " but does not belong to it: divide the element there";
  return "elements " + std::to_string(crossing.other->number) + " and " + beam +
         " cross without a common node";
}

}  // namespace

void FindCrossingMembers(Inspection& deck) {
  constexpr double kNear = 1e-6;
  if (deck.project.meshes.empty()) return;
  const std::vector<Segment> segments = SegmentsOf(deck);
  if (segments.size() < 1) return;
  const double near = kNear * SizeOfModel(deck.project);
  const SegmentGrid grid(segments, near);
  std::vector<Crossing> found;
  FindCrossingBeams(segments, grid, near, found);
  FindNodesOnBeams(deck, segments, grid, near, found);
  // A node that stands where another does is on all its beams: that is said of the nodes.
  std::erase_if(found, [&](const Crossing& crossing) {
    return crossing.node != nullptr &&
           std::any_of(deck.joined.begin(), deck.joined.end(), [&](const auto& pair) {
             return (pair.first == crossing.node && Has(*crossing.beam, pair.second)) ||
                    (pair.second == crossing.node && Has(*crossing.beam, pair.first));
           });
  });
  for (const Crossing& crossing : found)
    deck.joined.emplace_back(crossing.beam->nodes[0],
                             crossing.node != nullptr ? crossing.node : crossing.other->nodes[0]);
  if (found.size() > kMostSingle) {
    Finding& finding =
        deck.Add(deck.PlaceOfRecord(RecordKind::Element, found[0].beam->number),
                 std::to_string(found.size()) +
                     " times a beam crosses another, or passes a node: " + CrossingText(found[0]));
    for (const Crossing& crossing : found) finding.elements.push_back(crossing.beam->number);
    return;
  }
  for (const Crossing& crossing : found) {
    Finding& finding = deck.Add(deck.PlaceOfRecord(RecordKind::Element, crossing.beam->number),
                                CrossingText(crossing));
    finding.elements = {crossing.beam->number};
    if (crossing.other != nullptr) finding.elements.push_back(crossing.other->number);
    if (crossing.node != nullptr) finding.nodes = {crossing.node->number};
  }
}

}  // namespace kestol
