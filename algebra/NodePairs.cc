#include "algebra/NodePairs.h"

#include <algorithm>
#include <cassert>
#include <limits>
#include <new>
#include <numeric>

namespace kestol {

namespace {

constexpr std::size_t kShortestLimit = 1024;

}  // namespace

void NodePairs::Add(int node1, int node2) {
  if (node1 == node2) return;
  const auto [upper, lower] = std::minmax(node1, node2);
  assert(upper >= 0);
  if (pairs_.size() >= limit_) {
    RemoveRepetitions();
    limit_ = std::max(kShortestLimit, 2 * pairs_.size());
    pairs_.reserve(limit_);
  }
  pairs_.push_back({upper, lower});
  nodes_ = std::max(nodes_, lower + 1);
}

/// Sorts by the upper nodes by counting, and then the few lower nodes of each.
void NodePairs::RemoveRepetitions() {
  std::vector<std::size_t> end(nodes_ + 1, 0);  // of each row, once the pairs are dealt out
  for (const Pair& pair : pairs_) ++end[pair.upper + 1];
  std::partial_sum(end.begin(), end.end(), end.begin());
  std::vector<int> lower(pairs_.size());
  for (const Pair& pair : pairs_) lower[end[pair.upper]++] = pair.lower;

  pairs_.clear();
  std::size_t first = 0;
  for (int node = 0; node < nodes_; ++node) {
    const auto begin = lower.begin() + static_cast<std::ptrdiff_t>(first);
    const auto last = lower.begin() + static_cast<std::ptrdiff_t>(end[node]);
    std::sort(begin, last);
    const auto unique = std::unique(begin, last);
    for (auto other = begin; other != unique; ++other) pairs_.push_back({node, *other});
    first = end[node];
  }
}

UpperRows NodePairs::TakeRows(int nodes) {
  assert(nodes >= nodes_);
  RemoveRepetitions();
  if (pairs_.size() + nodes > std::numeric_limits<int>::max()) throw std::bad_alloc();
  UpperRows rows;
  rows.start.reserve(nodes + 1);
  rows.column.reserve(pairs_.size() + nodes);
  auto pair = pairs_.begin();
  for (int node = 0; node < nodes; ++node) {
    rows.start.push_back(static_cast<int>(rows.column.size()));
    rows.column.push_back(node);
    for (; pair != pairs_.end() && pair->upper == node; ++pair) rows.column.push_back(pair->lower);
  }
  rows.start.push_back(static_cast<int>(rows.column.size()));
  *this = {};
  return rows;
}

}  // namespace kestol
