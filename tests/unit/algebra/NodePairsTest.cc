#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <set>

#include "algebra/NodePairs.h"

namespace kestol {

namespace {

using testing::ElementsAre;

TEST(NodePairs, RowsHoldTheirNodeAndItsLaterNeighboursAscending) {
  NodePairs pairs;
  pairs.Add(0, 3);
  pairs.Add(2, 0);
  pairs.Add(3, 2);
  const UpperRows rows = pairs.TakeRows(5);
  EXPECT_THAT(rows.start, ElementsAre(0, 3, 4, 6, 7, 8));
  EXPECT_THAT(rows.column, ElementsAre(0, 2, 3, 1, 2, 3, 3, 4));
}

TEST(NodePairs, APairCountsOnceHoweverOftenItIsNamed) {
  NodePairs pairs;
  for (int k = 0; k < 100000; ++k) {
    pairs.Add(k % 2, 1 - k % 2);
    pairs.Add(1, 1);
  }
  const UpperRows rows = pairs.TakeRows(2);
  EXPECT_THAT(rows.start, ElementsAre(0, 2, 3));
  EXPECT_THAT(rows.column, ElementsAre(0, 1, 1));
}

TEST(NodePairs, WithoutPairsThereIsTheDiagonal) {
  EXPECT_THAT(NodePairs().TakeRows(3).column, ElementsAre(0, 1, 2));
  EXPECT_THAT(NodePairs().TakeRows(0).start, ElementsAre(0));
}

TEST(NodePairs, IsEmptyOnceTheRowsAreTaken) {
  NodePairs pairs;
  pairs.Add(0, 1);
  pairs.TakeRows(2);
  EXPECT_THAT(pairs.TakeRows(2).column, ElementsAre(0, 1));
  pairs.Add(0, 1);
  EXPECT_THAT(pairs.TakeRows(2).column, ElementsAre(0, 1, 1));
}

TEST(NodePairs, ManyPairsAtRandomGiveTheRowsOfASet) {
  std::mt19937 random(3);
  const int nodes = 300;
  NodePairs pairs;
  std::vector<std::set<int>> wanted(nodes);
  for (int node = 0; node < nodes; ++node) wanted[node].insert(node);
  for (int k = 0; k < 20000; ++k) {
    const int a = static_cast<int>(random() % nodes);
    const int b = static_cast<int>(random() % 40 * (random() % 7)) % nodes;
    pairs.Add(a, b);
    wanted[std::min(a, b)].insert(std::max(a, b));
  }
  const UpperRows rows = pairs.TakeRows(nodes);
  ASSERT_EQ(rows.start.size(), nodes + 1u);
  for (int node = 0; node < nodes; ++node) {
    const std::vector<int> row(rows.column.begin() + rows.start[node],
                               rows.column.begin() + rows.start[node + 1]);
    EXPECT_THAT(row, testing::ElementsAreArray(wanted[node])) << node;
  }
}

}  // namespace

}  // namespace kestol
