#pragma once

#include <span>
#include <vector>

namespace kestol {

class Project;

/// Which nodes elements join, for some nodes of a model. Nodes are counted from 0: internal index
/// less one.
struct NodeGraph {
  std::vector<int> start;       ///< by place in the list of nodes, one more at the end
  std::vector<int> neighbours;  ///< ascending, without the node itself

  std::span<const int> Of(std::size_t place) const {
    return {neighbours.data() + start[place], neighbours.data() + start[place + 1]};
  }
  std::size_t Count() const { return start.size() - 1; }
};

/// The rows of the listed nodes.
NodeGraph GraphOf(const Project& project, std::span<const int> nodes);

/// The places of the graph's nodes in an order in which neighbours stand near each other (Cuthill
/// and McKee): matrices of nodes that a mesh generator numbered at random stay in the caches.
/// `nodes` is the list that the graph was made for; neighbours outside of it are left out.
std::vector<int> NearOrder(const NodeGraph& graph, std::span<const int> nodes, int nodeCount);

}  // namespace kestol
