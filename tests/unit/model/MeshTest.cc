#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "model/Mesh.h"
#include "tests/support/ExpectFatal.h"

namespace kestol {

namespace {

using Pairs = std::vector<std::pair<int, int>>;

/// A mesh of one element on nodes 1..nnode, node n at (n, 0, 0).
std::unique_ptr<Mesh> OneElem(int elemType, int nnode) {
  auto mesh = std::make_unique<Mesh>();
  mesh->dimension = 3;
  mesh->elemType = elemType;
  mesh->nnode = nnode;
  auto elem = std::make_unique<Elem>(mesh.get(), nnode);
  for (int n = 1; n <= nnode; ++n) {
    auto node = std::make_unique<Node>();
    node->number = n;
    node->x = n;
    elem->nodes[n - 1] = mesh->nodes->Insert(n, std::move(node));
  }
  elem->number = 1;
  mesh->elems.Insert(1, std::move(elem));
  return mesh;
}

// --- node count ---------------------------------------------------------------------------------

TEST(Mesh, RaisingTheNodeCountKeepsTheNodesAndAddsNullOnes) {
  const auto mesh = OneElem(Triangle, 3);
  mesh->cached = ReaVecT(4);
  mesh->SetNnode(6);
  const Elem& elem = *mesh->elems.Get(1);
  EXPECT_EQ(mesh->nnode, 6);
  EXPECT_EQ(elem.nnode, 6);
  EXPECT_EQ(mesh->femviewType, 8);
  EXPECT_EQ(mesh->cached.n, 0);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(elem.nodes[i], mesh->nodes->Get(i + 1));
  for (int i = 3; i < 6; ++i) EXPECT_EQ(elem.nodes[i], nullptr);
}

TEST(Mesh, LoweringTheNodeCountKeepsTheFirstNodes) {
  const auto mesh = OneElem(Triangle, 6);
  mesh->SetNnode(3);
  EXPECT_EQ(mesh->nnode, 3);
  EXPECT_EQ(mesh->elems.Get(1)->nnode, 3);
  EXPECT_EQ(mesh->femviewType, 7);
  EXPECT_EQ(mesh->elems.Get(1)->nodes[2], mesh->nodes->Get(3));
}

TEST(Mesh, TheSameNodeCountChangesNothing) {
  const auto mesh = OneElem(Triangle, 3);
  mesh->cached = ReaVecT(4);
  Node* const* before = mesh->elems.Get(1)->nodes.get();
  mesh->SetNnode(3);
  EXPECT_EQ(mesh->cached.n, 4);
  EXPECT_EQ(mesh->elems.Get(1)->nodes.get(), before);
}

TEST(Mesh, RefusesANodeCountThatTheTypeDoesNotHave) {
  const auto mesh = OneElem(Triangle, 3);
  EXPECT_FATAL(mesh->SetNnode(4), "Unknown Femview type\n");
}

// --- numbers ------------------------------------------------------------------------------------

TEST(Mesh, WithoutAMapNumbersStandForThemselves) {
  const auto mesh = OneElem(Triangle, 3);
  EXPECT_EQ(mesh->ExternalNumber(2), 2);
  EXPECT_EQ(mesh->ExternalNumber(99), 99);
  EXPECT_EQ(mesh->ExternalNumber(mesh->nodes->Get(3)), 3);
  EXPECT_EQ(mesh->ExternalNumber(nullptr), 0);
}

TEST(Mesh, ExternalNumbersComeFromTheMap) {
  const auto mesh = OneElem(Triangle, 3);
  *mesh->renumberMap = {3, 0, 1};
  EXPECT_EQ(mesh->ExternalNumber(1), 3);
  EXPECT_EQ(mesh->ExternalNumber(2), 2);  // no entry
  EXPECT_EQ(mesh->ExternalNumber(3), 1);
  EXPECT_EQ(mesh->ExternalNumber(0), 0);
  EXPECT_EQ(mesh->ExternalNumber(-1), -1);
  EXPECT_EQ(mesh->ExternalNumber(4), 4);
  EXPECT_EQ(mesh->ExternalNumber(mesh->nodes->Get(1)), 3);
}

TEST(Mesh, EveryMeshAsksTheFirstOnesMap) {
  const auto first = OneElem(Triangle, 3);
  const Mesh second(*first);
  first->Renumber();
  for (int i = 1; i <= 3; ++i) EXPECT_EQ(second.ExternalNumber(i), first->ExternalNumber(i));
  EXPECT_EQ(second.ExternalNumber(2), 2);
  EXPECT_NE(second.renumberMap->size(), 0u);
}

// --- edges --------------------------------------------------------------------------------------

TEST(Mesh, GivesTheEdgesOfEachType) {
  EXPECT_EQ(OneElem(Linear, 2)->CalcEdges(), (Pairs{
                                                 {1, 2}
  }));
  EXPECT_EQ(OneElem(Triangle, 3)->CalcEdges(), (Pairs{
                                                   {1, 2},
                                                   {1, 3},
                                                   {2, 3}
  }));
  EXPECT_EQ(OneElem(Triangle, 6)->CalcEdges(), (Pairs{
                                                   {1, 2},
                                                   {1, 3},
                                                   {2, 3}
  }));
  EXPECT_EQ(OneElem(Quadrilateral, 8)->CalcEdges(), (Pairs{
                                                        {1, 2},
                                                        {1, 4},
                                                        {2, 3},
                                                        {3, 4}
  }));
  EXPECT_EQ(OneElem(Tetrahedra, 10)->CalcEdges(),
            (Pairs{
                {1, 2},
                {1, 3},
                {1, 4},
                {2, 3},
                {2, 4},
                {3, 4}
  }));
  EXPECT_EQ(OneElem(Hexahedra, 20)->CalcEdges(), (Pairs{
                                                     {1, 2},
                                                     {1, 4},
                                                     {1, 5},
                                                     {2, 3},
                                                     {2, 6},
                                                     {3, 4},
                                                     {3, 7},
                                                     {4, 8},
                                                     {5, 6},
                                                     {5, 8},
                                                     {6, 7},
                                                     {7, 8}
  }));
}

TEST(Mesh, SharedEdgesStandSideBySide) {
  const auto mesh = OneElem(Triangle, 3);
  auto elem = std::make_unique<Elem>(mesh.get(), 3);
  elem->nodes[0] = mesh->nodes->Get(3);
  elem->nodes[1] = mesh->nodes->Get(2);
  mesh->elems.Insert(2, std::move(elem));  // its third node stays null
  EXPECT_EQ(mesh->CalcEdges(), (Pairs{
                                   {0, 2},
                                   {0, 3},
                                   {1, 2},
                                   {1, 3},
                                   {2, 3},
                                   {2, 3}
  }));
}

TEST(Mesh, RefusesEdgesOfAnUndefinedMesh) {
  const std::string text = "error in Mesh::CalcEdges. Mesh not correctly defined\n";
  EXPECT_FATAL(Mesh().CalcEdges(), text);
  EXPECT_FATAL(OneElem(6, 2)->CalcEdges(), text);
}

}  // namespace

}  // namespace kestol
