#include <algorithm>
#include <cmath>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "kestol/findings/CellGrid.h"
#include "kestol/findings/Geometry.h"
#include "kestol/findings/Inspection.h"
#include "kestol/findings/ModelRules.h"
#include "model/Constraint.h"

namespace kestol {

namespace {

/// Whether supports and springs leave the node no freedom.
bool IsHeldWholly(const Project& project, const Node& node) {
  if (!node.constraint) return false;
  for (int d = 0; d < project.dofsPerNode; ++d) {
    const int code = node.constraint->codes[d];
    const bool held = code == Prescribed || (code == Spring && node.constraint->values[d] > 0.0);
    if (!held) return false;
  }
  return true;
}

bool IsSolid(const Project& project) {
  return !project.meshes.empty() && project.meshes[0]->elemType == Tetrahedra;
}

/// Calls look(node) for every node that no element has, unless one was meant to have it.
template <class Look>
void ForEachLooseNode(const Inspection& deck, Look look) {
  const Project& project = deck.project;
  if (project.meshes.empty() || deck.AnyLostElement()) return;
  const std::vector<bool> has = NodesWithElements(project);
  for (const auto [number, node] : *project.meshes[0]->nodes)
    if (!has[static_cast<std::size_t>(number)] && !deck.IsSpoilt(RecordKind::Node, number) &&
        !deck.IsSpoilt(RecordKind::Support, number))
      look(*node);
}

}  // namespace

void FindUnusedNodes(Inspection& deck) {
  ForEachLooseNode(deck, [&](const Node& node) {
    if (!IsHeldWholly(deck.project, node) || IsSolid(deck.project)) return;
    deck.Add(deck.PlaceOfRecord(RecordKind::Node, node.number),
             "no element has node " + std::to_string(node.number))
        .nodes = {node.number};
  });
}

namespace {

/// Why nodes without elements are a mistake.
std::string HoldText(bool areOfSolids, bool haveSupports, bool areMany) {
  if (areOfSolids) return ", and solids may have none such";
  if (!haveSupports) return areMany ? ", and nothing holds them" : ", and nothing holds it";
  return areMany ? ", and their supports do not hold them wholly"
                 : ", and its support does not hold it wholly";
}

}  // namespace

void FindOrphanNodes(Inspection& deck) {
  std::vector<int> numbers;
  std::vector<bool> hasSupport;
  const bool isSolid = IsSolid(deck.project);
  ForEachLooseNode(deck, [&](const Node& node) {
    if (!isSolid && IsHeldWholly(deck.project, node)) return;
    numbers.push_back(node.number);
    hasSupport.push_back(node.constraint != nullptr);
  });
  if (numbers.size() > kMostSingle) {
    const bool anySupport =
        std::find(hasSupport.begin(), hasSupport.end(), true) != hasSupport.end();
    deck.Add(deck.PlaceOfRecord(RecordKind::Node, numbers.front()),
             "no element has the nodes " + ListText(numbers) + HoldText(isSolid, anySupport, true))
        .nodes = numbers;
    return;
  }
  for (std::size_t i = 0; i < numbers.size(); ++i)
    deck.Add(deck.PlaceOfRecord(RecordKind::Node, numbers[i]),
             "no element has node " + std::to_string(numbers[i]) +
                 HoldText(isSolid, hasSupport[i], false) + ": give it an element or leave it out")
        .nodes = {numbers[i]};
}

// --- nodes in one place -----------------------------------------------------------------------

namespace {

using NodePair = std::pair<const Node*, const Node*>;

/// Finds nodes closer than `near` through a grid of cells that are much larger.
class NodeGrid {
public:
  explicit NodeGrid(const PlaceScale& scale) : near_(scale.near), cell_(scale.cell) {}

  /// Calls look(other) for the nodes near `node` that were added before, until that is false.
  template <class Look>
  void ForEachNear(const Node& node, Look look) const {
    const Vector3 x = PositionOf(node);
    std::array<std::array<std::int64_t, 2>, 3> range{};
    for (int a = 0; a < 3; ++a) range[a] = {CellOf(x[a] - near_), CellOf(x[a] + near_)};
    for (std::int64_t i = range[0][0]; i <= range[0][1]; ++i)
      for (std::int64_t j = range[1][0]; j <= range[1][1]; ++j)
        for (std::int64_t k = range[2][0]; k <= range[2][1]; ++k) {
          const auto [first, last] = cells_.equal_range(CellKey(i, j, k));
          for (auto found = first; found != last; ++found)
            if (Norm(Minus(PositionOf(*found->second), x)) < near_ && !look(*found->second)) return;
        }
  }
  void Add(const Node& node) {
    const Vector3 x = PositionOf(node);
    cells_.emplace(CellKey(CellOf(x[0]), CellOf(x[1]), CellOf(x[2])), &node);
  }

private:
  std::int64_t CellOf(double x) const { return CellIndex(x, cell_); }
  double near_, cell_;
  std::unordered_multimap<std::uint64_t, const Node*> cells_;
};

/// Pairs of nodes that stand at one place, the one with the larger number behind. Where a crowd
/// stands, each later node is paired with the first ones alone.
std::vector<NodePair> CoincidentPairs(const Project& project) {
  constexpr int kCrowd = 8;
  std::vector<NodePair> pairs;
  const PlaceScale scale = ScaleOfPlaces(project);
  if (!(scale.near > 0.0) || std::isinf(scale.near)) return pairs;
  NodeGrid grid(scale);
  for (const auto [number, node] : *project.meshes[0]->nodes) {
    int others = 0;
    grid.ForEachNear(*node, [&, later = node](const Node& other) {
      pairs.emplace_back(&other, later);
      return ++others < kCrowd;
    });
    if (others < kCrowd) grid.Add(*node);
  }
  return pairs;
}

/// Leaves the pairs out that an element joins.
void DropJoined(const Project& project, std::vector<NodePair>& pairs) {
  if (pairs.empty()) return;
  std::unordered_multimap<const Node*, std::size_t> byNode;
  for (std::size_t i = 0; i < pairs.size(); ++i) byNode.emplace(pairs[i].first, i);
  std::vector<bool> joined(pairs.size());
  for (const auto& mesh : project.meshes)
    for (const auto [number, elem] : mesh->elems)
      for (int i = 0; i < elem->nnode; ++i) {
        const auto [first, last] = byNode.equal_range(elem->nodes[i]);
        for (auto found = first; found != last; ++found)
          if (Has(*elem, pairs[found->second].second)) joined[found->second] = true;
      }
  std::size_t kept = 0;
  for (std::size_t i = 0; i < pairs.size(); ++i)
    if (!joined[i]) pairs[kept++] = pairs[i];
  pairs.resize(kept);
}

}  // namespace

namespace {

/// Nodes that a finding says no element has: wherever they stand, that is the mistake.
std::set<int> ToldAsLoose(const Inspection& deck) {
  std::set<int> nodes;
  for (const Finding& finding : deck.findings)
    if (finding.code == "orphan-node" || finding.code == "unused")
      nodes.insert(finding.nodes.begin(), finding.nodes.end());
  return nodes;
}

}  // namespace

void FindCoincidentNodes(Inspection& deck) {
  const Project& project = deck.project;
  if (project.meshes.empty() || project.meshes[0]->nodes->Highest() == 0) return;
  std::vector<NodePair> pairs = CoincidentPairs(project);
  DropJoined(project, pairs);
  const std::set<int> loose = ToldAsLoose(deck);
  const auto isOther = [&](const Node* node) {
    return deck.IsSpoilt(RecordKind::Node, node->number) || loose.contains(node->number);
  };
  std::erase_if(pairs,
                [&](const NodePair& pair) { return isOther(pair.first) || isOther(pair.second); });
  deck.joined.insert(deck.joined.end(), pairs.begin(), pairs.end());
  if (pairs.size() > kMostSingle) {
    std::vector<int> numbers;
    numbers.reserve(pairs.size());
    for (const auto& [first, second] : pairs) numbers.push_back(second->number);
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    deck.Add(deck.PlaceOfRecord(RecordKind::Node, numbers.front()),
             std::to_string(numbers.size()) +
                 " nodes stand where others stand: " + ListText(numbers, 4))
        .nodes = numbers;
    return;
  }
  for (const auto& [first, second] : pairs)
    deck.Add(deck.PlaceOfRecord(RecordKind::Node, second->number),
             "nodes " + std::to_string(first->number) + " and " + std::to_string(second->number) +
                 " stand at one place, and nothing joins them")
        .nodes = {first->number, second->number};
}

// --- parts ------------------------------------------------------------------------------------

void FindParts(Inspection& deck) {
  const Project& project = deck.project;
  if (project.meshes.empty() || deck.AnyLostElement()) return;
  DisjointSets sets(static_cast<std::size_t>(project.meshes[0]->nodes->Highest()) + 1);
  const auto id = [](const Node* node) { return static_cast<std::size_t>(node->number); };
  for (const auto& mesh : project.meshes)
    for (const auto [number, elem] : mesh->elems)
      for (int i = 1; i < elem->nnode; ++i) sets.Join(id(elem->nodes[0]), id(elem->nodes[i]));
  for (const auto& [a, b] : deck.joined) sets.Join(id(a), id(b));
  std::unordered_map<std::size_t, std::vector<int>> parts;
  for (const auto& mesh : project.meshes)
    for (const auto [number, elem] : mesh->elems)
      parts[sets.Find(id(elem->nodes[0]))].push_back(number);
  if (parts.size() < 2) return;
  std::vector<std::vector<int>> ordered;
  for (auto& [root, elements] : parts) {
    std::sort(elements.begin(), elements.end());
    ordered.push_back(std::move(elements));
  }
  std::sort(ordered.begin(), ordered.end(),
            [](const auto& a, const auto& b) { return a.front() < b.front(); });
  const std::vector<int>& second = ordered[1];
  deck.Add(deck.PlaceOfRecord(RecordKind::Element, second.front()),
           "the model has " + std::to_string(ordered.size()) +
               " parts that share no node: element" + (second.size() == 1 ? " " : "s ") +
               ListText(second, 4) + (second.size() == 1 ? " is" : " are") +
               " apart from element " + std::to_string(ordered[0].front()))
      .elements = second;
}

}  // namespace kestol
