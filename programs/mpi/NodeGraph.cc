#include "programs/mpi/NodeGraph.h"

#include <algorithm>
#include <limits>
#include <new>
#include <numeric>

#include "input/Project.h"

namespace kestol {

namespace {

constexpr int kElsewhere = -1;

/// The place of every node in `nodes`; kElsewhere for the others.
std::vector<int> PlacesOf(std::span<const int> nodes, int nodeCount) {
  std::vector<int> places(static_cast<std::size_t>(nodeCount), kElsewhere);
  for (std::size_t place = 0; place < nodes.size(); ++place)
    places[static_cast<std::size_t>(nodes[place])] = static_cast<int>(place);
  return places;
}

/// The elements around each of some nodes.
struct ElementsOfNodes {
  std::vector<int> start;
  std::vector<const Elem*> elements;
};

template <class Action>
void ForEachPlaceOfElements(const Project& project, const std::vector<int>& places, Action action) {
  for (const auto& mesh : project.meshes)
    for (const auto [number, elem] : mesh->elems)
      for (int k = 0; k < elem->nnode; ++k) {
        const int place = places[static_cast<std::size_t>(elem->nodes[k]->number - 1)];
        if (place != kElsewhere) action(static_cast<std::size_t>(place), *elem);
      }
}

ElementsOfNodes ElementsAround(const Project& project, const std::vector<int>& places,
                               std::size_t count) {
  ElementsOfNodes around;
  around.start.assign(count + 1, 0);
  ForEachPlaceOfElements(project, places,
                         [&](std::size_t place, const Elem&) { ++around.start[place + 1]; });
  std::partial_sum(around.start.begin(), around.start.end(), around.start.begin());
  around.elements.resize(static_cast<std::size_t>(around.start.back()));
  std::vector<int> next(around.start.begin(), around.start.end() - 1);
  ForEachPlaceOfElements(project, places, [&](std::size_t place, const Elem& elem) {
    around.elements[static_cast<std::size_t>(next[place]++)] = &elem;
  });
  return around;
}

}  // namespace

NodeGraph GraphOf(const Project& project, std::span<const int> nodes) {
  const std::vector<int> places = PlacesOf(nodes, project.numNodes);
  const ElementsOfNodes around = ElementsAround(project, places, nodes.size());
  NodeGraph graph;
  graph.start.assign(1, 0);
  std::vector<int> lastSeen(static_cast<std::size_t>(project.numNodes), kElsewhere);
  for (std::size_t place = 0; place < nodes.size(); ++place) {
    const auto first = static_cast<std::ptrdiff_t>(graph.neighbours.size());
    lastSeen[static_cast<std::size_t>(nodes[place])] = static_cast<int>(place);
    for (int e = around.start[place]; e < around.start[place + 1]; ++e) {
      const Elem& elem = *around.elements[static_cast<std::size_t>(e)];
      for (int k = 0; k < elem.nnode; ++k) {
        const int node = elem.nodes[k]->number - 1;
        int& seen = lastSeen[static_cast<std::size_t>(node)];
        if (seen != static_cast<int>(place)) graph.neighbours.push_back(node);
        seen = static_cast<int>(place);
      }
    }
    std::sort(graph.neighbours.begin() + first, graph.neighbours.end());
    if (graph.neighbours.size() > std::numeric_limits<int>::max()) throw std::bad_alloc();
    graph.start.push_back(static_cast<int>(graph.neighbours.size()));
  }
  return graph;
}

std::vector<int> NearOrder(const NodeGraph& graph, std::span<const int> nodes, int nodeCount) {
  const std::vector<int> places = PlacesOf(nodes, nodeCount);
  std::vector<int> order;
  order.reserve(graph.Count());
  std::vector<bool> taken(graph.Count(), false);
  const auto take = [&](int place) {
    taken[static_cast<std::size_t>(place)] = true;
    order.push_back(place);
  };
  for (std::size_t seed = 0; seed < graph.Count(); ++seed) {
    if (taken[seed]) continue;
    std::size_t next = order.size();
    take(static_cast<int>(seed));
    for (; next < order.size(); ++next)
      for (const int node : graph.Of(static_cast<std::size_t>(order[next]))) {
        const int place = places[static_cast<std::size_t>(node)];
        if (place != kElsewhere && !taken[static_cast<std::size_t>(place)]) take(place);
      }
  }
  return order;
}

}  // namespace kestol
