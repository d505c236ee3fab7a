// The element lists of mesh blocks, and later meshes on the nodes of the first.
#include "input/Words.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/MeshText.h"

namespace kestol {

namespace {

// --- elements ---------------------------------------------------------------------------------

TEST(MeshReader, RefusesABeamWithBothNodesEqual) {
  EXPECT_FATAL(Read(Beams("1 0 0\n2 0 0\n3 0 0\n", "7 3 3\n")),
               "error: element: 7  have both nodes equal\n");
}

TEST(MeshReader, ComparesNodeNumbersNotNodes) {
  EXPECT_FATAL(Read(Beams(kTwoNodes, "7 99 99\n")), "error: element: 7  have both nodes equal\n");
  EXPECT_FATAL(Read(Beams(kTwoNodes, "7 0 0\n")), "error: element: 7  have both nodes equal\n");
  const auto mesh = Read(Beams(kTwoNodes, "7 99 98\n"));
  EXPECT_EQ(mesh->elems.Get(7)->nodes[0], nullptr);
  EXPECT_EQ(mesh->elems.Get(7)->nodes[1], nullptr);
}

TEST(MeshReader, EqualNodesOfATriangleAreNotItsBusiness) {
  const auto mesh = Read(Heading("tri", 3) + "coordinates 1 0 0\nend elements 1 1 1 1\nend");
  EXPECT_EQ(mesh->elems.Get(1)->nodes[2], mesh->nodes->Get(1));
}

TEST(MeshReader, AcceptsUnknownNodesAsNull) {
  const auto mesh = Read(Beams(kTwoNodes, "1 2 3\n2 -1 1\n"));
  EXPECT_EQ(mesh->elems.Get(1)->nodes[0], mesh->nodes->Get(2));
  EXPECT_EQ(mesh->elems.Get(1)->nodes[1], nullptr);
  EXPECT_EQ(mesh->elems.Get(2)->nodes[0], nullptr);
}

TEST(MeshReader, RefusesNodesThatAreNoNumbers) {
  const std::string text = "error: element: 4 has not correct nodes\n";
  EXPECT_FATAL(Read(Beams(kTwoNodes, "4 1 b\n")), text);
  EXPECT_FATAL(Read(Beams(kTwoNodes, "4\n")), text);
  EXPECT_FATAL(Read(Beams(kTwoNodes, "4 - 1\n")), text);
}

TEST(MeshReader, RefusesRepeatedAndInvalidElementNumbers) {
  EXPECT_FATAL(Read(Beams(kTwoNodes, "4 1 2\n4 2 1\n")), "Repeated index 4 in VoidPlex");
  EXPECT_FATAL(Read(Beams(kTwoNodes, "0 1 2\n")), "Invalid void index 0");
}

TEST(MeshReader, AcceptsGapsInTheElementNumbers) {
  const auto mesh = Read(Beams(kTwoNodes, "900 1 2\n5 1 2\n"));
  EXPECT_EQ(mesh->elems.Lowest(), 5);
  EXPECT_EQ(mesh->elems.Highest(), 900);
  EXPECT_EQ(mesh->elems.Get(6), nullptr);
}

TEST(MeshReader, ReadsTheMaterialNumberInAnyBase) {
  const struct {
    const char* text;
    int number;
  } rows[] = {
      {"",       0 },
      {"3",      3 },
      {" : =3=", 3 },
      {"012",    10},
      {"0x1F",   31},
      {"08",     0 },
      {"1.5",    1 },
      {"steel",  0 },
      {"-2",     -2},
      {"7\r",    7 },
      {"\t7\t",  7 },
  };
  for (const auto& row : rows) {
    const auto mesh = Read(Beams(kTwoNodes, std::string("5 1 2 ") + row.text + "\n"));
    EXPECT_EQ(mesh->elems.Get(5)->materialNumber, row.number) << row.text;
    EXPECT_EQ(mesh->elems.Get(5)->material, nullptr) << row.text;
  }
}

TEST(MeshReader, ReadsAMaterialOfTheElementsOwn) {
  const auto mesh = Read(Beams(kTwoNodes, "5 1 2 0 E=2e11 A: 0.5\n6 1 2 3: E=1\n"));
  const Elem& elem = *mesh->elems.Get(5);
  ASSERT_NE(elem.material, nullptr);
  EXPECT_EQ(elem.materialNumber, 0);
  EXPECT_EQ(elem.material->E1, 2e11);
  EXPECT_EQ(elem.material->E2, 2e11);
  EXPECT_EQ(elem.material->A, 0.5);
  EXPECT_EQ(elem.material->Iz, -1.0);
  ASSERT_NE(mesh->elems.Get(6)->material, nullptr);
  EXPECT_EQ(mesh->elems.Get(6)->materialNumber, 3);
}

TEST(MeshReader, ScalesInlineMaterials) {
  Units units;
  units.materialLength = 0.5;
  const auto mesh = Read(Beams(kTwoNodes, "5 1 2 0 A=1\n"), &units);
  EXPECT_EQ(mesh->elems.Get(5)->material->A, 0.25);
}

TEST(MeshReader, TextWithoutAKeyMakesNoMaterial) {
  const auto mesh = Read(Beams(kTwoNodes, "5 1 2 1 : =\n"));
  EXPECT_EQ(mesh->elems.Get(5)->materialNumber, 1);
  EXPECT_EQ(mesh->elems.Get(5)->material, nullptr);
}

TEST(MeshReader, AnInlineMaterialNeedsANumberBeforeIt) {
  EXPECT_FATAL(Read(Beams(kTwoNodes, "1 1 2 E=2e11\n")),
               "error in materials. Key without value: '2e11'\n");
}

TEST(MeshReader, TheLastLineNeedsNoNewline) {
  const auto mesh = Read(Heading("l", 2) + "coordinates 1 0 0\n2 1 0\nend elements 1 1 2 4\nend");
  EXPECT_EQ(mesh->elems.Get(1)->materialNumber, 4);
}

TEST(MeshReader, LeavesTheInputBehindTheLastLine) {
  TextInput input(Beams(kTwoNodes, "1 1 2\n") + "materials\n");
  Mesh mesh;
  mesh.ReadMesh(input, nullptr);
  EXPECT_EQ(ReadWord(input), "materials");
}

TEST(MeshReader, AcceptsAMeshWithoutElements) {
  EXPECT_EQ(Read(Beams(kTwoNodes, ""))->elems.Highest(), 0);
}

TEST(MeshReader, ReadsThe20NodesOfAHexahedronOverSeveralLines) {
  std::string coordinates, nodes = "1";
  for (int n = 1; n <= 20; ++n) {
    coordinates += std::to_string(n) + " 0 0 " + std::to_string(n) + "\n";
    nodes += (n % 7 == 0 ? "\n " : " ") + std::to_string(n);
  }
  const auto mesh = Read("dimension 3 elemtype hexa nnode 20 coordinates\n" + coordinates +
                         "end elements\n" + nodes + " 6\nend");
  const Elem& elem = *mesh->elems.Get(1);
  for (int n = 1; n <= 20; ++n) EXPECT_EQ(elem.nodes[n - 1]->z, n);
  EXPECT_EQ(elem.materialNumber, 6);
}

// --- later meshes on the same nodes -------------------------------------------------------------

TEST(MeshReader, ALaterMeshMayListNoNodes) {
  const auto first = Read(Beams(kTwoNodes, "1 1 2\n"));
  Mesh second(*first);
  EXPECT_EQ(second.sharesNodes, 1);
  EXPECT_EQ(second.nodes, first->nodes);
  ReadInto(second, Beams("", "2 2 1\n"));
  EXPECT_EQ(second.elems.Get(2)->nodes[0], first->nodes->Get(2));
  EXPECT_EQ(second.elems.Get(2)->mesh, &second);
  EXPECT_EQ(first->elems.Highest(), 1);
}

TEST(MeshReader, ALaterMeshMayMoveNodesAndAddNewOnes) {
  const auto first = Read(Beams(kTwoNodes, "1 1 2\n"));
  Node* const node = first->nodes->Get(2);
  node->load = std::make_unique<ReaVecT>(3);
  Mesh second(*first);
  ReadInto(second,
           "dimension 3 elemtype l nnode 2 coordinates\n1 0 0 0\n2 6 7 8\n3 9 9 9\n"
           "end elements\n2 2 3\nend");
  EXPECT_EQ(first->nodes->Get(2), node);
  EXPECT_EQ(first->elems.Get(1)->nodes[1], node);
  EXPECT_EQ(node->dim, 3);
  EXPECT_EQ(node->x, 6.0);
  EXPECT_EQ(node->z, 8.0);
  EXPECT_NE(node->load, nullptr);
  EXPECT_EQ(first->nodes->Highest(), 3);
}

TEST(MeshReader, ABlockInThePlaneSetsZOfItsNodesBackToZero) {
  const auto first = Read("dimension 3 elemtype l nnode 2 coordinates\n1 1 1 1\nend elements end");
  Mesh second(*first);
  ReadInto(second, Beams("1 2 2\n", ""));
  EXPECT_EQ(first->nodes->Get(1)->z, 0.0);
  EXPECT_EQ(first->nodes->Get(1)->dim, 2);
}

TEST(MeshReader, ALaterMeshCannotListAdditionalNodesOnly) {
  const auto first = Read(Beams(kTwoNodes, ""));
  Mesh second(*first);
  EXPECT_FATAL(ReadInto(second, Beams("3 0 0\n", "")),
               "error: list of nodes does not contain all numbers\n");
}

TEST(MeshReader, NodesOutliveTheMeshThatReadThem) {
  auto first = Read(Beams(kTwoNodes, ""));
  Mesh second(*first);
  ReadInto(second, Beams("", "2 2 1\n"));
  first.reset();
  EXPECT_EQ(second.elems.Get(2)->nodes[0]->x, 3.0);
}

}  // namespace

}  // namespace kestol
