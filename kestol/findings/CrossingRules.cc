#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <unordered_map>
#include <vector>

#include "kestol/findings/Geometry.h"
#include "kestol/findings/Inspection.h"
#include "kestol/findings/ModelRules.h"
#include "kestol/findings/SegmentGrid.h"

namespace kestol {

namespace {

/// A beam as a segment.
struct Segment {
  const Elem* beam;
  Vector3 a, b;
  int level;  ///< of the grid
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

std::vector<Segment> SegmentsOf(const Inspection& deck) {
  std::vector<Segment> segments;
  ForEachSoundElement(deck, deck.project, [&](const Mesh& mesh, const Elem& elem) {
    if (mesh.elemType != Linear) return;
    const Vector3 a = PositionOf(*elem.nodes[0]), b = PositionOf(*elem.nodes[1]);
    const double length = Norm(Minus(b, a));
    if (length > 0.0 && !std::isinf(length))
      segments.push_back({&elem, a, b, SegmentGrid::LevelOf(length)});
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
  std::vector<std::array<std::size_t, 2>> pairs;
  for (std::size_t i = 0; i < segments.size(); ++i)
    grid.ForEachAround(segments[i].a, segments[i].b, [&](std::size_t j) {
      // Two of one size find each other.
      if (j == i || seen[j] == i || (j > i && segments[j].level == segments[i].level)) return;
      seen[j] = i;
      if (ShareNode(*segments[i].beam, *segments[j].beam)) return;
      const Approach approach = Nearest(segments[i], segments[j]);
      if (approach.distance < near && IsInside(approach.s) && IsInside(approach.t))
        pairs.push_back({std::max(i, j), std::min(i, j)});
    });
  std::sort(pairs.begin(), pairs.end());
  for (const auto& [later, earlier] : pairs)
    found.push_back({segments[later].beam, segments[earlier].beam, nullptr});
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

/// A node that stands where another does is on all its beams: that is said of the nodes.
void DropCoincident(const Inspection& deck, std::vector<Crossing>& found) {
  std::unordered_multimap<const Node*, const Node*> partners;
  for (const auto& [a, b] : deck.joined) {
    partners.emplace(a, b);
    partners.emplace(b, a);
  }
  std::erase_if(found, [&](const Crossing& crossing) {
    const auto [first, last] = partners.equal_range(crossing.node);
    return crossing.node != nullptr && std::any_of(first, last, [&](const auto& pair) {
             return Has(*crossing.beam, pair.second);
           });
  });
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
  if (deck.project.meshes.empty()) return;
  const std::vector<Segment> segments = SegmentsOf(deck);
  const double near = ScaleOfPlaces(deck.project).near;
  if (segments.empty() || std::isinf(near)) return;
  SegmentGrid grid(near);
  for (std::size_t i = 0; i < segments.size(); ++i) grid.Add(i, segments[i].a, segments[i].b);
  std::vector<Crossing> found;
  FindCrossingBeams(segments, grid, near, found);
  FindNodesOnBeams(deck, segments, grid, near, found);
  DropCoincident(deck, found);
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
