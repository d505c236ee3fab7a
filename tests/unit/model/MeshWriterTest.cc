#include <memory>
#include <sstream>
#include <string>
#include <utility>

#include "model/Mesh.h"
#include "tests/support/ExpectFatal.h"

namespace kestol {

namespace {

/// Three nodes on a line and beams 1-2 and 2-3.
std::unique_ptr<Mesh> Chain(int dimension) {
  auto mesh = std::make_unique<Mesh>();
  mesh->dimension = dimension;
  mesh->elemType = Linear;
  mesh->nnode = 2;
  for (int n = 1; n <= 3; ++n) {
    auto node = std::make_unique<Node>();
    node->number = n;
    node->x = 1.5 * n;
    node->y = -1e-7;
    node->z = n / 3.0;
    mesh->nodes->Insert(n, std::move(node));
  }
  for (int e = 1; e <= 2; ++e) {
    auto elem = std::make_unique<Elem>(mesh.get(), 2);
    elem->number = 10 * e;
    elem->nodes[0] = mesh->nodes->Get(e);
    elem->nodes[1] = mesh->nodes->Get(e + 1);
    mesh->elems.Insert(10 * e, std::move(elem));
  }
  return mesh;
}

std::string Written(const Mesh& mesh, int externalNumbers, int compact) {
  std::ostringstream stream;
  mesh.WriteMesh(stream, externalNumbers, compact);
  return stream.str();
}

TEST(MeshWriter, WritesAPlaneMesh) {
  EXPECT_EQ(Written(*Chain(2), 1, 0),
            "MESH    dimension = 2 ElemType Linear  Nnode = 2\n"
            "Coordinates\n"
            "    1            1.5         -1e-07\n"
            "    2              3         -1e-07\n"
            "    3            4.5         -1e-07\n"
            "end coordinates\n"
            "\n"
            "Elements\n"
            "   10       1    2\n"
            "   20       2    3\n"
            "end elements\n");
}

TEST(MeshWriter, WritesZInSpace) {
  EXPECT_THAT(Written(*Chain(3), 1, 0),
              testing::HasSubstr("    1            1.5         -1e-07       0.333333\n"));
}

TEST(MeshWriter, WritesTheNamesOfAllTypes) {
  const char* names[] = {"Linear", "Triangle", "Quadrilateral", "Tetrahedra", "Hexahedra"};
  Mesh mesh;
  for (int type = Linear; type <= Hexahedra; ++type) {
    mesh.elemType = type;
    EXPECT_THAT(Written(mesh, 1, 0),
                testing::StartsWith(std::string("MESH    dimension = 0 ElemType ") +
                                    names[type - 1] + "  Nnode = 0\n"));
  }
}

TEST(MeshWriter, WritesMaterialNumbers) {
  const auto mesh = Chain(2);
  mesh->elems.Get(10)->materialNumber = 7;
  EXPECT_THAT(Written(*mesh, 1, 0), testing::HasSubstr("   10       1    2  Mat: 7\n"
                                                       "   20       2    3\n"));
  EXPECT_THAT(Written(*mesh, 1, 1), testing::HasSubstr("   10       1    2 7\n"
                                                       "   20       2    3\n"));
}

TEST(MeshWriter, WritesAMaterialOfTheElementsOwn) {
  const auto mesh = Chain(2);
  mesh->elems.Get(10)->materialNumber = 7;
  mesh->elems.Get(10)->material = std::make_unique<Material>();
  mesh->elems.Get(10)->material->E1 = 2e11;
  mesh->elems.Get(10)->material->A = 0.5;
  EXPECT_THAT(Written(*mesh, 1, 0),
              testing::HasSubstr("   10       1    2  Mat: 0 E1=2e+11 E2=0 nuXY=0 nuYX=0 Iy=0 "
                                 "Iz=0 Gxy=0 Gxz=0 Gyz=0 J=0 A=0.5 Weight=0 t=0\n"
                                 "   20       2    3\n"));
  EXPECT_THAT(Written(*mesh, 1, 1), testing::HasSubstr("   10       1    2 0\n"
                                                       "   20       2    3\n"));
}

TEST(MeshWriter, WritesNumbersOfTheInputOrInternalOnes) {
  const auto mesh = Chain(2);
  mesh->nodes->Get(3)->x = 100.0;
  mesh->Renumber();  // 3, 2, 1
  EXPECT_THAT(Written(*mesh, 1, 0), testing::HasSubstr("Coordinates\n    1            1.5 "));
  EXPECT_THAT(Written(*mesh, 1, 0), testing::HasSubstr("   20       2    3\n"));
  EXPECT_THAT(Written(*mesh, 0, 0), testing::HasSubstr("Coordinates\n    3            1.5 "));
  EXPECT_THAT(Written(*mesh, 0, 0), testing::HasSubstr("   20       2    1\n"));
}

TEST(MeshWriter, WritesNullNodesAsZero) {
  const auto mesh = Chain(2);
  mesh->elems.Get(20)->nodes[1] = nullptr;
  EXPECT_THAT(Written(*mesh, 1, 0), testing::HasSubstr("   20       2    0\n"));
  EXPECT_THAT(Written(*mesh, 0, 0), testing::HasSubstr("   20       2    0\n"));
}

TEST(MeshWriter, LargeNumbersWidenTheirFields) {
  const auto mesh = Chain(2);
  *mesh->renumberMap = {1234567, 2, 3};
  EXPECT_THAT(Written(*mesh, 1, 0), testing::HasSubstr("   10   1234567    2\n"));
}

}  // namespace

}  // namespace kestol
