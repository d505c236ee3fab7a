#include <cmath>
#include <sstream>

#include "analysis/ShellMesh.h"
#include "tests/support/FatalExit.h"
#include "tests/support/MeshDeck.h"
#include "tests/support/RunDeck.h"

namespace {

const char* const kMaterial = "materials\n1 E=1e6 nu=0.25 G=4e5 t=0.1\nend materials\n";

Vector3 Flat(double x, double y, double) {
  return {x, y, 0};
}

/// The unit square cut along the diagonal 1-4 (nodes row by row).
TestMesh Square() {
  return Grid(1, 1, Cut::Right, Flat);
}

std::unique_ptr<Project> Read(const TestMesh& mesh, const std::string& keywords = "") {
  return ReadDeck(DeckOf(mesh, keywords, kMaterial));
}

// --- normals and flags --------------------------------------------------------------------------

TEST(CheckNormals, FlatPlateFlagsEveryNode) {
  const auto project = Read(Grid(3, 2, Cut::Cross, Flat));
  CheckNormals(*project);
  EXPECT_THAT(project->coplanar, testing::Each(1));
  EXPECT_EQ(project->coplanar.size(), 18u);
}

TEST(CheckNormals, FoldOfNinetyDegreesLeavesItsNodesUnflagged) {
  TestMesh mesh{
      "Triangle", {{0, 0, 0},  {0, 1, 0}, {1, 0, 0}, {0, 0, 1}},
       {{1, 3, 2}, {1, 2, 4}         }
  };
  const auto project = Read(mesh, "CoplanarityAngle 0.1");
  CheckNormals(*project);
  EXPECT_THAT(project->coplanar, testing::ElementsAre(0, 0, 1, 1));
}

TEST(CheckNormals, AngleDecidesWhatIsCoplanar) {
  TestMesh mesh = Square();
  mesh.nodes[1][2] = 0.05;  // a fold of less than 0.1 along the diagonal
  for (const auto& [angle, flag] : {
           std::pair{"0.2",  1},
           {"0.01", 0}
  }) {
    const auto project = Read(mesh, std::string("CoplanarityAngle ") + angle);
    CheckNormals(*project);
    EXPECT_EQ(project->coplanar[0], flag) << angle;
    EXPECT_EQ(project->coplanar[1], 1) << angle;  // one element only
  }
}

TEST(CheckNormals, OppositeNormalsAreRefusedWithBothNumbers) {
  TestMesh mesh = Square();
  std::swap(mesh.elems[1][0], mesh.elems[1][1]);
  const auto project = Read(mesh);
  EXPECT_FATAL(
      CheckNormals(*project),
      "error: Elements 1 and 2 have normals in opposite directions. It is necessary to swap "
      "normals\n");
}

TEST(CheckNormals, DegenerateElementIsRefused) {
  TestMesh mesh = Square();
  mesh.nodes[3] = {2, 0, 0};  // on the line through 1 and 2
  const auto project = Read(mesh);
  EXPECT_FATAL(CheckNormals(*project), "error: element 1 is not correct\n");
}

/// `count` triangles around node 1.
TestMesh Fan(int count) {
  TestMesh mesh{"Triangle", {{0, 0, 0}}, {}};
  for (int i = 0; i < count; ++i) {
    const double angle = 6.283185307179586 * i / count;
    mesh.nodes.push_back({std::cos(angle), std::sin(angle), 0});
  }
  for (int i = 0; i < count; ++i) mesh.elems.push_back({1, 2 + i, 2 + (i + 1) % count});
  return mesh;
}

TEST(CheckNormals, TwentyFiveElementsAroundANodeAreAccepted) {
  const auto project = Read(Fan(25));
  CheckNormals(*project);
  EXPECT_EQ(project->coplanar[0], 1);
}

TEST(CheckNormals, TwentySixElementsAroundANodeAreRefused) {
  const std::string text = "error: Node 1 has too many elements around (more than 25)\n";
  EXPECT_FATAL(CheckNormals(*Read(Fan(26))), text);
  EXPECT_FATAL(ConvertMeshesTo6Nodes(*Read(Fan(26))), text);
}

TEST(CheckNormals, ModelWithoutTrianglesHasNoFlags) {
  const auto project = Read(Box(1, 1, 1, false, [](double x, double y, double z) {
    return Vector3{x, y, z};
  }));
  CheckNormals(*project);
  EXPECT_TRUE(project->coplanar.empty());
}

// --- conversion ---------------------------------------------------------------------------------

TEST(ConvertTo6Nodes, SquareOfTwoTrianglesGetsFiveMidSidesAndSharesTheDiagonal) {
  const auto project = Read(Square());
  EXPECT_TRUE(ConvertMeshesTo6Nodes(*project));
  EXPECT_EQ(project->numNodes, 9);
  EXPECT_EQ(project->nodesAsRead, 4);
  const Mesh& mesh = *project->meshes[0];
  EXPECT_EQ(mesh.nnode, 6);
  EXPECT_EQ(mesh.femviewType, 8);
  const Elem &a = *mesh.elems.Get(1), &b = *mesh.elems.Get(2);  // 1 2 4 and 1 4 3
  EXPECT_EQ(a.nodes[5], b.nodes[3]);                            // edges 4-1 and 1-4
  const Node& middle = *a.nodes[5];
  EXPECT_DOUBLE_EQ(middle.x, 0.5);
  EXPECT_DOUBLE_EQ(middle.y, 0.5);
  EXPECT_EQ(middle.dim, 3);
  EXPECT_EQ(mesh.nodes->Get(middle.number), &middle);
  EXPECT_FALSE(ConvertMeshesTo6Nodes(*project)) << "nothing is left to convert";
}

TEST(ConvertTo6Nodes, EveryMidSideLiesHalfWayOnItsEdge) {
  const auto project = Read(Grid(3, 3, Cut::Cross, [](double x, double y, double) {
    return Vector3{x, y * (1 + x), x * y};
  }));
  ConvertMeshesTo6Nodes(*project);
  for (const auto [number, elem] : project->meshes[0]->elems)
    for (int e = 0; e < 3; ++e) {
      const Node &p = *elem->nodes[e], &q = *elem->nodes[(e + 1) % 3], &m = *elem->nodes[e + 3];
      EXPECT_DOUBLE_EQ(m.x, (p.x + q.x) / 2);
      EXPECT_DOUBLE_EQ(m.y, (p.y + q.y) / 2);
      EXPECT_DOUBLE_EQ(m.z, (p.z + q.z) / 2);
    }
  // One node on each edge: Euler's formula for a disc, edges = corners + faces - 1.
  EXPECT_EQ(project->numNodes, 25 + (25 + 36 - 1));
}

TEST(ConvertTo6Nodes, OtherMeshesAreRefused) {
  const std::string text =
      "error: trying to convert to 6 nodes a mesh that is not 3-noded triangles\n";
  TestMesh six = Square();
  ToSix(six);
  auto project = Read(six);
  EXPECT_FATAL(ConvertTo6Nodes(*project, *project->meshes[0]), text);
  project = Read(Box(1, 1, 1, false, Flat));
  EXPECT_FATAL(ConvertTo6Nodes(*project, *project->meshes[0]), text);
}

TEST(ConvertTo6Nodes, MeshesThatShareAnEdgeShareItsMidSide) {
  // The edge 2-4 of the first mesh is edge 1, 2 or 3 of the element of the second.
  for (const char* second : {"2 5 4", "4 2 5", "5 4 2"}) {
    TestMesh mesh{
        "Triangle", {{0, 0, 0},  {1, 0, 0}, {0, 1, 0}, {1, 1, 0}, {2, 1, 0}},
         {{1, 2, 4}}
    };
    const auto project = ReadDeck(
        DeckOf(mesh, "",
               std::string("mesh dimension = 3 elemtype Triangle nnode = 3\ncoordinates\nend\n"
                           "elements\n7 ") +
                   second + " 1\nend\n" + kMaterial));
    ConvertMeshesTo6Nodes(*project);
    EXPECT_EQ(project->numNodes, 5 + 5) << second;
    const Elem &a = *project->meshes[0]->elems.Get(1), &b = *project->meshes[1]->elems.Get(7);
    int shared = 0;
    for (int e = 3; e < 6; ++e) {
      ASSERT_NE(b.nodes[e], nullptr) << second;
      shared += b.nodes[e] == a.nodes[4];
    }
    EXPECT_EQ(shared, 1) << second;
    const Node& middle = *a.nodes[4];
    for (int e = 0; e < 3; ++e)
      if (b.nodes[e + 3] == &middle) {
        EXPECT_DOUBLE_EQ((b.nodes[e]->x + b.nodes[(e + 1) % 3]->x) / 2, middle.x);
        EXPECT_DOUBLE_EQ((b.nodes[e]->y + b.nodes[(e + 1) % 3]->y) / 2, middle.y);
      }
  }
}

TEST(ConvertTo6Nodes, MidSideTakesTheSupportsThatItsCornersHaveInCommon) {
  const auto project =
      ReadDeck(DeckOf(Square(), "",
                      std::string(kMaterial) + "constraints\n1 111000 0 0 0.2 0 0 0\n2 011111 0 0 "
                                               "0.4 0 0 0\n3 222222 1 1 1 1 1 1\nend\n"));
  ConvertMeshesTo6Nodes(*project);
  const Elem& a = *project->meshes[0]->elems.Get(1);
  ASSERT_NE(a.nodes[3]->constraint, nullptr);  // between 1 and 2
  EXPECT_THAT(a.nodes[3]->constraint->codes, testing::ElementsAre(0, 1, 1, 0, 0, 0));
  EXPECT_DOUBLE_EQ(a.nodes[3]->constraint->values[2], 0.3);
  EXPECT_EQ(a.nodes[4]->constraint, nullptr);                                  // node 4 is free
  EXPECT_EQ(project->meshes[0]->elems.Get(2)->nodes[5]->constraint, nullptr);  // springs stay
}

// --- whole runs ---------------------------------------------------------------------------------

std::string ClampedPlate(const std::string& keywords) {
  const TestMesh mesh = Grid(4, 4, Cut::Right, Flat);
  std::string supports, loads;
  for (const int n : mesh.Where([](const Vector3& p) { return p[0] == 0; }))
    supports += Print("%d 111111 0 0 0 0 0 0\n", n);
  for (std::size_t e = 1; e <= mesh.elems.size(); ++e) loads += Print("%d 0 0 -5\n", int(e));
  return DeckOf(
      mesh, keywords,
      kMaterial + Section("constraints", supports) + Section("global_pressure_loads", loads));
}

TEST(DoubleSolver, EqualsTheConvertedModelAndTellsOfBothAssemblies) {
  std::ostringstream info;
  const auto twice = RunDeck(ClampedPlate("Solver Double"), 1, &info);
  const auto once = RunDeck(ClampedPlate("ConvertTo6Nodes\nSolver Sparse 1e-10 1e-8 20000"));
  for (int n = 1; n <= 25; ++n)
    for (int d = 1; d <= 6; ++d)
      EXPECT_NEAR(Displacement(*twice, n, d), Displacement(*once, n, d), 1e-7) << n << " " << d;
  const std::string text = info.str();
  const auto at = [&](const char* line, std::size_t from) { return text.find(line, from); };
  const auto first = at("Running a pre-solver to prepare initial values\n", 0);
  const auto sky = at("Sky matrix storage with Txolesky\n", first);
  const auto converted = at("Mesh converted to internal 6-noded representation\n", sky);
  const auto flags = at("81 out of 81 nodes are coplanar\n", converted);
  const auto sparse = at("Sparse matrix storage with Conjugate gradients\n", flags);
  EXPECT_NE(sparse, std::string::npos) << text;
  EXPECT_EQ(at("nodes are coplanar", 0), flags + 13) << "not in the pre-solve";
}

TEST(DoubleSolver, SixNodedTrianglesAreRefusedBeforeAnythingIsWritten) {
  TestMesh mesh = Square();
  ToSix(mesh);
  std::ostringstream info;
  EXPECT_FATAL(RunDeck(DeckOf(mesh, "Solver Double", kMaterial), 1, &info),
               "error: Solver DOUBLE needs a shell mesh of 3-noded triangles\n");
  EXPECT_EQ(info.str(), "");
}

TEST(ConvertedModel, MidSideReactionsMoveToTheCorners) {
  const auto project = RunDeck(ClampedPlate("ConvertTo6Nodes"));
  double sum = 0.0, atMidSides = 0.0;
  for (const auto [key, node] : *project->meshes[0]->nodes) {
    if (!node->constraint) continue;
    sum += node->constraint->reactions[2];
    if (key > 25) atMidSides += std::abs(node->constraint->reactions[2]);
  }
  EXPECT_EQ(atMidSides, 0.0);
  // The load on mid-sides of the clamp is inside K u: 4 edges, a third of two half cells each.
  EXPECT_NEAR(sum, 5.0 - 5.0 * 4 * (1.0 / 3) * (1.0 / 32), 1e-9);
}

TEST(TrianglesOfAPlaneProblem, AreRefused) {
  std::string deck = DeckOf(Square(), "", kMaterial);
  deck.replace(deck.find("3d"), 2, "2d");
  EXPECT_FATAL(RunDeck(deck), "error: triangle elements need a problem of type 3d\n");
}

}  // namespace
