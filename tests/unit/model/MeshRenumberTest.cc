#include <array>
#include <cmath>
#include <memory>
#include <numeric>
#include <vector>

#include "model/Mesh.h"
#include "tests/support/ExpectFatal.h"

namespace kestol {

namespace {

using Point = std::array<double, 3>;

/// Nodes 1, 2, ... at the given points.
std::unique_ptr<Mesh> At(const std::vector<Point>& points) {
  auto mesh = std::make_unique<Mesh>();
  for (const auto& [x, y, z] : points) {
    auto node = std::make_unique<Node>();
    node->number = mesh->nodes->Highest() + 1;
    node->x = x;
    node->y = y;
    node->z = z;
    const int number = node->number;
    mesh->nodes->Insert(number, std::move(node));
  }
  return mesh;
}

std::vector<int> Indices(const Mesh& mesh) {
  std::vector<int> indices;
  for (auto [key, node] : *mesh.nodes) indices.push_back(node->number);
  return indices;
}

TEST(MeshRenumber, NumbersALineFromItsFarEnd) {
  const auto mesh = At({
      {1,  0, 0},
      {10, 0, 0},
      {2,  0, 0},
      {0,  0, 0}
  });  // centroid 3.25
  mesh->Renumber();
  EXPECT_EQ(*mesh->renumberMap, (std::vector<int>{2, 3, 1, 4}));
  EXPECT_EQ(Indices(*mesh), (std::vector<int>{3, 1, 2, 4}));
}

TEST(MeshRenumber, TheFirstOfEquallyFarNodesIsTheReference) {
  const auto mesh = At({
      {0,  0, 0},
      {1,  0, 0},
      {-1, 0, 0}
  });
  mesh->Renumber();
  EXPECT_EQ(*mesh->renumberMap, (std::vector<int>{2, 1, 3}));
}

TEST(MeshRenumber, TheCentroidLiesHalfWayBetweenTwoNodes) {
  for (int axis = 0; axis < 3; ++axis) {
    Point end{};
    end[axis] = 1.0;
    const auto mesh = At({end, Point{}});
    mesh->Renumber();  // both are equally far: the first is the reference
    EXPECT_EQ(*mesh->renumberMap, (std::vector<int>{1, 2})) << axis;
  }
}

TEST(MeshRenumber, EquallyDistantNodesKeepTheirOrder) {
  // Node 4 is the reference; 1, 2, 3, 5, 6 lie on a circle of radius 65 about it.
  const auto mesh = At({
      {63, 16,  0},
      {63, -16, 0},
      {60, 25,  0},
      {0,  0,   0},
      {60, -25, 0},
      {65, 0,   0},
      {10, 0,   0}
  });
  mesh->Renumber();
  EXPECT_EQ(*mesh->renumberMap, (std::vector<int>{4, 7, 1, 2, 3, 5, 6}));
}

TEST(MeshRenumber, ManyEquallyDistantNodesKeepTheirOrderToo) {
  std::vector<Point> points(200, Point{1, 0, 0});
  points.push_back({-300, 0, 0});
  const auto mesh = At(points);
  mesh->Renumber();
  std::vector<int> expected(201);
  std::iota(expected.begin() + 1, expected.end(), 1);
  expected[0] = 201;
  EXPECT_EQ(*mesh->renumberMap, expected);
}

TEST(MeshRenumber, DistancesAreComparedAfterTheRoot) {
  // From node 3 the squares are 1 + 2^-52 and 1; both roots are 1.
  const auto mesh = At({
      {1, std::ldexp(1.0, -26), 0},
      {1, 0,               0                 },
      {0, 0,               0}
  });
  mesh->Renumber();
  EXPECT_EQ(*mesh->renumberMap, (std::vector<int>{3, 1, 2}));
}

TEST(MeshRenumber, UsesAllThreeCoordinates) {
  const auto mesh = At({
      {0, 0, 1},
      {0, 0, 5},
      {0, 1, 0},
      {1, 0, 0},
      {0, 0, 0}
  });
  mesh->Renumber();  // distances from node 2: 4, 0, sqrt(26), sqrt(26), 5
  EXPECT_EQ(*mesh->renumberMap, (std::vector<int>{2, 1, 5, 3, 4}));
}

TEST(MeshRenumber, NodesOnOnePointKeepTheirNumbers) {
  const auto one = At({
      {4, 5, 6}
  });
  one->Renumber();
  EXPECT_EQ(*one->renumberMap, (std::vector<int>{1}));
  const auto three = At({
      {4, 5, 6},
      {4, 5, 6},
      {4, 5, 6}
  });
  three->Renumber();
  EXPECT_EQ(*three->renumberMap, (std::vector<int>{1, 2, 3}));
}

TEST(MeshRenumber, WithoutNodesThereIsNothingToDo) {
  Mesh mesh;
  mesh.Renumber();
  EXPECT_TRUE(mesh.renumberMap->empty());
}

TEST(MeshRenumber, TheMapLeadsFromEveryIndexToItsKey) {
  std::vector<Point> points;
  for (int i = 0; i < 500; ++i)
    points.push_back({std::sin(12.9898 * i), std::cos(78.233 * i), std::sin(37.719 * i)});
  const auto mesh = At(points);
  mesh->Renumber();
  double previous = 0.0;
  const Node& reference = *mesh->nodes->Get((*mesh->renumberMap)[0]);
  for (int index = 1; index <= 500; ++index) {
    const Node& node = *mesh->nodes->Get(mesh->ExternalNumber(index));
    EXPECT_EQ(node.number, index);
    const double distance =
        std::hypot(node.x - reference.x, node.y - reference.y, node.z - reference.z);
    EXPECT_GE(distance, previous - 1e-15);
    previous = distance;
  }
}

TEST(MeshRenumber, KeysDoNotMove) {
  const auto mesh = At({
      {0, 0, 0},
      {1, 0, 0},
      {9, 0, 0}
  });
  mesh->Renumber();
  EXPECT_EQ(mesh->nodes->Get(3)->x, 9.0);
  EXPECT_EQ(mesh->nodes->Get(3)->number, 1);
}

TEST(MeshRenumber, ASecondCallGrowsTheMapAndStillGivesTheNumbersOfTheInput) {
  const auto mesh = At({
      {1,  0, 0},
      {10, 0, 0},
      {2,  0, 0}
  });
  mesh->Renumber();
  auto added = std::make_unique<Node>();
  added->number = 4;
  added->x = -50.0;  // now the farthest
  mesh->nodes->Insert(4, std::move(added));
  mesh->Renumber();
  EXPECT_EQ(*mesh->renumberMap, (std::vector<int>{4, 1, 3, 2}));
  for (auto [key, node] : *mesh->nodes) EXPECT_EQ(mesh->ExternalNumber(node), key);
}

TEST(MeshRenumber, NodesAddedLaterStandForThemselves) {
  const auto mesh = At({
      {1,  0, 0},
      {10, 0, 0},
      {2,  0, 0}
  });
  mesh->Renumber();
  EXPECT_EQ(mesh->ExternalNumber(4), 4);
}

TEST(MeshRenumber, AGapInTheKeysLeavesNoEntry) {
  const auto mesh = At({
      {1, 0, 0}
  });
  auto node = std::make_unique<Node>();
  node->number = 3;
  node->x = 7.0;
  mesh->nodes->Insert(3, std::move(node));
  mesh->Renumber();
  EXPECT_EQ(*mesh->renumberMap, (std::vector<int>{1, 3, 0}));
}

}  // namespace

}  // namespace kestol
