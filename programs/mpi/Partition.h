#pragma once

#include <vector>

#include "programs/mpi/NodeGraph.h"
#include "programs/mpi/Team.h"

namespace kestol {

class Project;

/// Which process owns which nodes, and the numbers that the distributed system gives them: those of
/// process 0 first, then those of process 1, ... A node is its internal index less one; its place
/// in this numbering counts from 0 as well.
struct Partition {
  std::vector<int> placeOf;  ///< by node
  std::vector<int> nodeAt;   ///< by place
  std::vector<int> starts;   ///< first place of every process, and the end
  int rank = 0;

  int First() const { return starts[static_cast<std::size_t>(rank)]; }
  int End() const { return starts[static_cast<std::size_t>(rank) + 1]; }
  int OwnCount() const { return End() - First(); }
  bool IsOwn(int node) const {
    const int place = placeOf[static_cast<std::size_t>(node)];
    return First() <= place && place < End();
  }
  /// The process that owns the node.
  int OwnerOf(int node) const;
};

/// Divides the nodes among the processes so that few elements reach across (PT-Scotch), and orders
/// them so that neighbours stand near each other, whatever numbers the input gave them. Every
/// process gets the same answer; one may get no node.
Partition DivideNodes(const Project& project, const Team& team);

/// The graph of the own nodes, in the order of their places.
NodeGraph OwnGraph(const Project& project, const Partition& partition);

}  // namespace kestol
