#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "model/Mesh.h"
#include "tests/support/ExpectFatal.h"

namespace kestol {

namespace {

using Nodes = std::vector<int>;

/// A mesh of beams in the plane; node n lies at (n + shift, 0).
struct Beams : Mesh {
  Beams(const Nodes& nodeNumbers, double shift) {
    dimension = 2;
    nnode = 2;
    elemType = Linear;
    for (const int n : nodeNumbers) {
      auto node = std::make_unique<Node>();
      node->number = n;
      node->dim = 2;
      node->x = n + shift;
      nodes->Insert(n, std::move(node));
    }
  }

  void AddBeam(int number, int a, int b) {
    auto elem = std::make_unique<Elem>(this, 2);
    elem->number = number;
    elem->nodes[0] = nodes->Get(a);
    elem->nodes[1] = nodes->Get(b);
    elem->materialNumber = 6;
    elem->attributes[1] = 8;
    elems.Insert(number, std::move(elem));
  }
};

/// Nodes 1, 2 and element 1.
std::unique_ptr<Beams> Left() {
  auto mesh = std::make_unique<Beams>(Nodes{1, 2}, 0.0);
  mesh->AddBeam(1, 1, 2);
  return mesh;
}

/// Nodes 2, 3 and elements 1 and 5; node 2 lies elsewhere than that of Left.
std::unique_ptr<Beams> Right() {
  auto mesh = std::make_unique<Beams>(Nodes{2, 3}, 0.5);
  mesh->AddBeam(1, 2, 3);
  mesh->AddBeam(5, 3, 2);
  mesh->nodes->Get(3)->load = std::make_unique<ReaVecT>(3);
  mesh->nodes->Get(3)->constraint = std::make_unique<Constraint>(3);
  return mesh;
}

template <class T>
std::vector<int> Numbers(const Plex<T>& plex) {
  std::vector<int> numbers;
  for (auto [number, object] : plex) numbers.push_back(number);
  return numbers;
}

void ExpectBeam(const Mesh& mesh, int number, int a, int b) {
  const Elem* elem = mesh.elems.Get(number);
  ASSERT_NE(elem, nullptr) << number;
  EXPECT_EQ(elem->number, number);
  EXPECT_EQ(elem->mesh, &mesh);
  EXPECT_EQ(elem->nodes[0], mesh.nodes->Get(a));
  EXPECT_EQ(elem->nodes[1], mesh.nodes->Get(b));
}

TEST(MeshMerge, AddMeshTakesNodesAndElementsOver) {
  const auto mesh = Left(), other = Right();
  const Node* node = other->nodes->Get(3);
  const Elem *renumbered = other->elems.Get(1), *kept = other->elems.Get(5);
  mesh->AddMesh(*other);

  EXPECT_EQ(Numbers(*mesh->nodes), (Nodes{1, 2, 3}));
  EXPECT_EQ(mesh->nodes->Get(3), node);
  EXPECT_NE(node->load, nullptr);
  EXPECT_EQ(mesh->nodes->Get(2)->x, 2.0);  // its own node 2, not the other's
  EXPECT_EQ(Numbers(*other->nodes), (Nodes{2}));

  EXPECT_EQ(Numbers(mesh->elems), (Nodes{1, 2, 5}));
  EXPECT_EQ(mesh->elems.Get(2), renumbered);
  EXPECT_EQ(mesh->elems.Get(5), kept);
  EXPECT_EQ(kept->materialNumber, 6);
  EXPECT_EQ(Numbers(other->elems), Nodes{});
  ExpectBeam(*mesh, 1, 1, 2);
  ExpectBeam(*mesh, 2, 2, 3);
  ExpectBeam(*mesh, 5, 3, 2);
}

TEST(MeshMerge, AddMeshAllNewCopiesNodesAndElements) {
  const auto mesh = Left(), other = Right();
  mesh->AddMeshAllNew(*other);

  EXPECT_EQ(Numbers(*mesh->nodes), (Nodes{1, 2, 3}));
  const Node& copy = *mesh->nodes->Get(3);
  EXPECT_NE(&copy, other->nodes->Get(3));
  EXPECT_EQ(copy.number, 3);
  EXPECT_EQ(copy.x, 3.5);
  EXPECT_EQ(copy.dim, 2);
  EXPECT_EQ(copy.load, nullptr);
  EXPECT_EQ(copy.constraint, nullptr);
  ExpectBeam(*mesh, 2, 2, 3);
  ExpectBeam(*mesh, 5, 3, 2);
  EXPECT_EQ(mesh->elems.Get(2)->materialNumber, 0);
  EXPECT_EQ(mesh->elems.Get(2)->attributes[1], 0);

  EXPECT_EQ(Numbers(*other->nodes), (Nodes{2, 3}));
  EXPECT_EQ(Numbers(other->elems), (Nodes{1, 5}));
  ExpectBeam(*other, 1, 2, 3);
}

TEST(MeshMerge, AddMeshAllNewReverseExchangesTheNodesOfTheCopies) {
  const auto mesh = Left(), other = Right();
  mesh->AddMeshAllNewReverse(*other);
  ExpectBeam(*mesh, 1, 1, 2);
  ExpectBeam(*mesh, 2, 3, 2);
  ExpectBeam(*mesh, 5, 2, 3);
  EXPECT_NE(mesh->nodes->Get(3), other->nodes->Get(3));
  EXPECT_EQ(mesh->nodes->Get(3)->load, nullptr);
}

TEST(MeshMerge, AddMeshNewReverseElmsTakesNodesAndCopiesElements) {
  const auto mesh = Left(), other = Right();
  const Node* node = other->nodes->Get(3);
  mesh->AddMeshNewReverseElms(*other);
  EXPECT_EQ(mesh->nodes->Get(3), node);
  EXPECT_EQ(Numbers(*other->nodes), (Nodes{2}));
  EXPECT_EQ(Numbers(other->elems), (Nodes{1, 5}));
  ExpectBeam(*mesh, 2, 3, 2);
  ExpectBeam(*mesh, 5, 2, 3);
  EXPECT_EQ(mesh->elems.Get(5)->materialNumber, 0);
}

TEST(MeshMerge, NumberZeroBecomesTheNextOne) {
  const auto mesh = Left(), other = Right();
  other->nodes->Get(2)->number = 0;
  other->elems.Get(5)->number = 0;
  mesh->AddMesh(*other);
  EXPECT_EQ(Numbers(*mesh->nodes), (Nodes{1, 2, 3}));
  EXPECT_EQ(mesh->nodes->Get(3)->number, 3);
  EXPECT_EQ(mesh->nodes->Get(3)->x, 2.5);  // the other's node 2; its node 3 then stays out
  ExpectBeam(*mesh, 2, 3, 3);
  ExpectBeam(*mesh, 3, 3, 3);
}

TEST(MeshMerge, NullNodesStayNull) {
  const auto mesh = Left(), other = Right();
  other->AddBeam(9, 3, 77);
  mesh->AddMeshAllNewReverse(*other);
  EXPECT_EQ(mesh->elems.Get(9)->nodes[0], nullptr);
  EXPECT_EQ(mesh->elems.Get(9)->nodes[1], mesh->nodes->Get(3));
}

TEST(MeshMerge, MeshesOnTheSameNodesKeepThem) {
  const auto mesh = Left();
  Mesh other(*mesh);
  other.dimension = 2;
  other.nnode = 2;
  other.elemType = Linear;
  other.AddMeshAllNewReverse(*mesh);
  EXPECT_EQ(Numbers(*mesh->nodes), (Nodes{1, 2}));
  ExpectBeam(other, 1, 2, 1);
  mesh->AddMesh(other);
  ExpectBeam(*mesh, 2, 2, 1);
}

TEST(MeshMerge, AMeshCanBeAddedToItself) {
  const auto mesh = Left();
  mesh->AddMeshAllNewReverse(*mesh);
  EXPECT_EQ(Numbers(mesh->elems), (Nodes{1, 2}));
  ExpectBeam(*mesh, 2, 2, 1);
  mesh->AddMesh(*mesh);
  EXPECT_EQ(Numbers(mesh->elems), (Nodes{1, 2}));
}

TEST(MeshMerge, TakesNodesOfARenumberedMeshUnderTheNumbersOfTheInput) {
  const auto mesh = Left(), other = Right();
  other->Renumber();
  mesh->AddMesh(*other);
  for (auto [key, node] : *mesh->nodes) EXPECT_EQ(node->number, key);
  ExpectBeam(*mesh, 2, 2, 3);
}

TEST(MeshMerge, MeshesMustBeAlike) {
  const auto mesh = Left();
  for (int difference = 0; difference < 3; ++difference) {
    const auto other = Right();
    if (difference == 0) other->dimension = 3;
    if (difference == 1) other->nnode = 3;
    if (difference == 2) other->elemType = Triangle;
    EXPECT_FATAL(mesh->AddMesh(*other), "error in Mesh::AddMesh. Mesh are different\n");
    EXPECT_FATAL(mesh->AddMeshAllNew(*other), "error in Mesh::AddMeshAllNew. Mesh are different\n");
    EXPECT_FATAL(mesh->AddMeshAllNewReverse(*other),
                 "error in Mesh::AddMeshAllNewReverse. Mesh are different\n");
    EXPECT_FATAL(mesh->AddMeshNewReverseElms(*other),
                 "error in Mesh::AddMeshNewReverseElms. Mesh are different\n");
  }
}

TEST(MeshMerge, OnlyTwoNodedElementsCanBeTurnedAround) {
  Beams mesh({}, 0.0), other({}, 0.0);
  mesh.nnode = other.nnode = 3;
  EXPECT_FATAL(mesh.AddMeshAllNewReverse(other),
               "error in Mesh::AddMeshAllNewReverse. Only implemented Nnode=2\n");
  EXPECT_FATAL(mesh.AddMeshNewReverseElms(other),
               "error in Mesh::AddMeshNewReverseElms. Only implemented Nnode=2\n");
}

TEST(MeshMerge, RefusesToCountOnBehindTheLastNumber) {
  constexpr int kLast = std::numeric_limits<int>::max();
  Beams full({1, 2}, 0.0);
  full.AddBeam(1, 1, 2);
  full.AddBeam(kLast, 2, 1);
  EXPECT_FATAL(full.AddMesh(*Right()), "error: There is no number behind 2147483647\n");

  Beams far({1, kLast}, 0.0);
  const auto unnumbered = Left();
  unnumbered->nodes->Get(2)->number = 0;
  EXPECT_FATAL(far.AddMesh(*unnumbered), "error: There is no number behind 2147483647\n");
}

}  // namespace

}  // namespace kestol
