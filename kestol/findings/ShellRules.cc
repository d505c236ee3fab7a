#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "kestol/findings/ElementGroups.h"
#include "kestol/findings/Geometry.h"
#include "kestol/findings/Inspection.h"
#include "kestol/findings/ModelRules.h"
#include "model/Constraint.h"

namespace kestol {

namespace {

/// Two triangles at one edge.
struct Neighbours {
  const Elem *a, *b;
  bool areTurned;  ///< they run along the edge in the same sense
  bool isRefused;  ///< their normals are opposite within the coplanarity angle
};

std::vector<Neighbours> NeighboursOf(const Inspection& deck, const Mesh& mesh) {
  // Deliberate: the solver refuses exactly opposite normals only; a fold may have any others.
  constexpr double kSmooth = 0.5;  // cosine
  const double c = std::cos(deck.project.CoplanarityAngle);
  struct Side {
    const Elem* elem;
    bool isForward;
  };
  std::map<std::pair<const Node*, const Node*>, std::vector<Side>> sides;
  for (const auto [number, elem] : mesh.elems) {
    if (!IsSound(deck, *elem) || HasNoSize(deck.project, *elem)) continue;
    for (int i = 0; i < 3; ++i) {
      const Node *a = elem->nodes[i], *b = elem->nodes[(i + 1) % 3];
      sides[std::minmax(a, b)].push_back({elem, a < b});
    }
  }
  std::vector<Neighbours> neighbours;
  for (const auto& [edge, around] : sides) {
    if (around.size() != 2) continue;
    const auto& [p, q] = std::pair{around[0], around[1]};
    const bool turned = p.isForward == q.isForward;
    const double d = Dot(p.elem->UnitNormal(), q.elem->UnitNormal());
    if (turned && d > -kSmooth) continue;  // a sharp fold: it cannot be told
    if (!turned && d < kSmooth) continue;
    neighbours.push_back({p.elem, q.elem, turned, turned && d < -c});
  }
  return neighbours;
}

/// Which elements are turned against the rest of their smooth surface: of the two sides of each
/// surface the one with fewer elements; with as many, the one without the lowest number.
std::set<const Elem*> TurnedElements(const std::vector<Neighbours>& neighbours) {
  std::map<const Elem*, std::vector<std::pair<const Elem*, bool>>> next;
  for (const Neighbours& pair : neighbours) {
    next[pair.a].emplace_back(pair.b, pair.areTurned);
    next[pair.b].emplace_back(pair.a, pair.areTurned);
  }
  std::vector<const Elem*> order;
  order.reserve(next.size());
  for (const auto& [elem, others] : next) order.push_back(elem);
  std::sort(order.begin(), order.end(), [](auto* a, auto* b) { return a->number < b->number; });
  std::map<const Elem*, bool> side;
  std::set<const Elem*> turned;
  for (const Elem* start : order) {
    if (side.contains(start)) continue;
    std::vector<const Elem*> surface{start};
    side[start] = false;
    for (std::size_t i = 0; i < surface.size(); ++i)
      for (const auto& [other, isTurned] : next[surface[i]])
        if (side.emplace(other, side[surface[i]] != isTurned).second) surface.push_back(other);
    const auto count =
        std::count_if(surface.begin(), surface.end(), [&](const Elem* elem) { return side[elem]; });
    const bool fewer = 2 * count <= static_cast<std::ptrdiff_t>(surface.size());
    for (const Elem* elem : surface)
      if (side[elem] == fewer && count > 0) turned.insert(elem);
  }
  return turned;
}

void AddTurned(Inspection& deck, const Group& group, const std::vector<Neighbours>& neighbours) {
  const std::vector<int> numbers = NumbersOf(group);
  std::vector<int> others;
  bool isRefused = false;
  const std::set<const Elem*> inside(group.begin(), group.end());
  for (const Neighbours& pair : neighbours) {
    if (!pair.areTurned || inside.contains(pair.a) == inside.contains(pair.b)) continue;
    others.push_back((inside.contains(pair.a) ? pair.b : pair.a)->number);
    isRefused = isRefused || pair.isRefused;
  }
  std::sort(others.begin(), others.end());
  others.erase(std::unique(others.begin(), others.end()), others.end());
  Finding& finding = deck.AddAs(
      isRefused ? Severity::Error : Severity::Warning,
      deck.PlaceOfRecord(RecordKind::Element, numbers.front()),
      std::string(numbers.size() == 1 ? "element " : "elements ") + ListText(numbers) +
          (numbers.size() == 1 ? " has its" : " have their") + " normal against " +
          (others.size() == 1 ? "element " : "elements ") + ListText(others) +
          (numbers.size() == 1 ? ": exchange two of its nodes" : ": exchange two nodes of each"));
  finding.elements = numbers;
  finding.elements.insert(finding.elements.end(), others.begin(), others.end());
}

}  // namespace

void FindOppositeNormals(Inspection& deck) {
  for (const auto& mesh : deck.project.meshes) {
    if (mesh->elemType != Triangle) continue;
    const std::vector<Neighbours> neighbours = NeighboursOf(deck, *mesh);
    const std::set<const Elem*> turned = TurnedElements(neighbours);
    const Group list(turned.begin(), turned.end());
    for (const Group& group : GroupsOf(list)) AddTurned(deck, group, neighbours);
  }
}

// --- conversion to 6 nodes --------------------------------------------------------------------

namespace {

/// An edge of 3-noded shells and what is beside it.
struct ShellEdge {
  std::vector<const Elem*> elements;
  std::vector<const Node*> opposite;  ///< the third corners
};
using ShellEdges = std::map<std::pair<const Node*, const Node*>, ShellEdge>;

ShellEdges EdgesOf3NodedShells(const Inspection& deck) {
  ShellEdges edges;
  for (const auto& mesh : deck.project.meshes) {
    if (mesh->elemType != Triangle || mesh->nnode != 3) continue;
    for (const auto [number, elem] : mesh->elems) {
      if (!IsSound(deck, *elem)) continue;
      for (int i = 0; i < 3; ++i) {
        ShellEdge& edge = edges[std::minmax(elem->nodes[i], elem->nodes[(i + 1) % 3])];
        edge.elements.push_back(elem);
        edge.opposite.push_back(elem->nodes[(i + 2) % 3]);
      }
    }
  }
  return edges;
}

/// Whether `node` is held wherever the support is: then the whole surface is.
bool IsHeldLike(const Node& node, const Constraint& support) {
  for (int d = 0; d < support.dofs; ++d)
    if (support.codes[d] == Prescribed &&
        (!node.constraint || node.constraint->codes[d] != Prescribed))
      return false;
  return true;
}

}  // namespace

void FindCornerDiagonals(Inspection& deck) {
  const Project& project = deck.project;
  if (project.ConvertTo6Nodes == 0 && project.solverChoice != SolveDouble) return;
  const ShellEdges edges = EdgesOf3NodedShells(deck);
  std::set<const Node*> border;
  for (const auto& [ends, edge] : edges)
    if (edge.elements.size() == 1) border.insert({ends.first, ends.second});
  for (const auto& [ends, edge] : edges) {
    const auto& [a, b] = ends;
    if (edge.elements.size() < 2 || !border.contains(a) || !border.contains(b)) continue;
    const auto hasNoSize = [&](const Elem* elem) { return HasNoSize(project, *elem); };
    if (std::any_of(edge.elements.begin(), edge.elements.end(), hasNoSize)) continue;
    const auto support = MergeTwoConstraints(a->constraint.get(), b->constraint.get());
    if (!support || std::all_of(edge.opposite.begin(), edge.opposite.end(),
                                [&](const Node* node) { return IsHeldLike(*node, *support); }))
      continue;
    const auto [low, high] = std::minmax(a->number, b->number);
    const std::vector<int> elements = NumbersOf(edge.elements);
    Finding& finding =
        deck.Add(deck.PlaceOfRecord(RecordKind::Element, elements.front()),
                 "the inner edge " + std::to_string(low) + "-" + std::to_string(high) +
                     " joins two supported nodes: its mid-side becomes a support too");
    finding.nodes = {low, high};
    finding.elements = elements;
  }
}

}  // namespace kestol
