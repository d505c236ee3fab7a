#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace kestol {

/// The rows of an upper triangle: row i has the columns column[start[i]] .. column[start[i + 1] -
/// 1], ascending; all numbers from 0.
struct UpperRows {
  std::vector<int> start;
  std::vector<int> column;
};

/// Collects which nodes are coupled. A mesh names a pair once for every element that has both
/// nodes; the pairs are kept in a list that is sorted, and freed of repetitions, whenever it has
/// doubled, so that it needs little more than the pairs themselves however many neighbours a node
/// has.
class NodePairs {
public:
  /// Nodes from 0, in either order. A node is coupled with itself without being named.
  void Add(int node1, int node2);

  /// The rows of the upper triangle with its diagonal, and an empty collection. All nodes are below
  /// `nodes`.
  UpperRows TakeRows(int nodes);

private:
  struct Pair {
    int upper, lower;  ///< upper < lower
  };
  void RemoveRepetitions();

  std::vector<Pair> pairs_;
  std::size_t limit_ = 0;  ///< length at which repetitions are removed
  int nodes_ = 0;          ///< beyond the highest one named
};

}  // namespace kestol
