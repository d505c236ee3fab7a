#include <algorithm>
#include <cmath>
#include <sstream>

#include "analysis/ShellConversion.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/MeshDeck.h"
#include "tests/support/RunDeck.h"

namespace kestol {

namespace {

const char* const kMaterial = "materials\n1 E=1e6 nu=0.25 G=4e5 t=0.1\nend materials\n";

std::unique_ptr<SolvedProject> Read(const TestMesh& mesh, const std::string& keywords = "") {
  return ReadDeck(DeckOf(mesh, keywords, kMaterial));
}

// --- conversion ---------------------------------------------------------------------------------

TEST(ConvertTo6Nodes, SquareOfTwoTrianglesGetsFiveMidSidesAndSharesTheDiagonal) {
  const auto project = Read(UnitSquare());
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

TEST(ConvertTo6Nodes, NewNodesAreNumberedByElementAndEdge) {
  const auto project = Read(UnitSquare());  // elements 1 2 4 and 1 4 3
  project->meshes[0]->nodes->Get(1)->dim = 2;
  ConvertMeshesTo6Nodes(*project);
  const Plex<Node>& nodes = *project->meshes[0]->nodes;
  const int kNumbers[2][3] = {
      {5, 6, 7},
      {7, 8, 9}
  };
  for (int e = 0; e < 2; ++e)
    for (int k = 0; k < 3; ++k) {
      const Node* const node = project->meshes[0]->elems.Get(e + 1)->nodes[k + 3];
      EXPECT_EQ(node, nodes.Get(kNumbers[e][k]));
      EXPECT_EQ(node->number, kNumbers[e][k]);
      EXPECT_EQ(node->dim, 3);
      EXPECT_EQ(node->load, nullptr);
    }
  EXPECT_EQ(nodes.Highest(), 9);
}

TEST(ConvertTo6Nodes, NeighboursFindTheSharedEdgeWhereverTheirNodesBegin) {
  for (int turn1 = 0; turn1 < 3; ++turn1)
    for (int turn2 = 0; turn2 < 3; ++turn2) {
      TestMesh mesh = UnitSquare();
      std::rotate(mesh.elems[0].begin(), mesh.elems[0].begin() + turn1, mesh.elems[0].end());
      std::rotate(mesh.elems[1].begin(), mesh.elems[1].begin() + turn2, mesh.elems[1].end());
      const auto project = Read(mesh);
      ConvertMeshesTo6Nodes(*project);
      EXPECT_EQ(project->numNodes, 9) << turn1 << turn2;
      for (const auto [number, elem] : project->meshes[0]->elems)
        for (int e = 0; e < 3; ++e) {
          const Node &p = *elem->nodes[e], &q = *elem->nodes[(e + 1) % 3];
          ASSERT_NE(elem->nodes[e + 3], nullptr) << turn1 << turn2;
          EXPECT_EQ(elem->nodes[e + 3]->x, (p.x + q.x) / 2) << turn1 << turn2;
          EXPECT_EQ(elem->nodes[e + 3]->y, (p.y + q.y) / 2) << turn1 << turn2;
        }
    }
}

TEST(ConvertTo6Nodes, MidSidesOfAMeshReadWithSixNodesAreTaken) {
  TestMesh six{
      "Triangle", {{0, 0, 0},  {1, 0, 0}, {0, 1, 0}, {1, 1, 0}},
       {{1, 2, 4}}
  };
  ToSix(six);  // 5 on 1-2, 6 on 2-4, 7 on 4-1
  const auto project =
      ReadDeck(DeckOf(six, "",
                      std::string("mesh dimension = 3 elemtype Triangle nnode = 3\ncoordinates\n"
                                  "end\nelements\n7 1 4 3 1\nend\n") +
                          kMaterial));
  EXPECT_TRUE(ConvertMeshesTo6Nodes(*project));
  EXPECT_EQ(project->numNodes, 9);
  EXPECT_EQ(project->meshes[1]->elems.Get(7)->nodes[3], project->meshes[0]->nodes->Get(7));
}

TEST(ConvertTo6Nodes, OtherMeshesAreRefused) {
  const std::string text =
      "error: trying to convert to 6 nodes a mesh that is not 3-noded triangles\n";
  TestMesh six = UnitSquare();
  ToSix(six);
  auto project = Read(six);
  EXPECT_FATAL(ConvertTo6Nodes(*project, *project->meshes[0]), text);
  project = Read(Box(1, 1, 1, false, Same));
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
      ReadDeck(DeckOf(UnitSquare(), "",
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

TEST(ConvertTo6Nodes, MidSideOfInclinedSupportsIsInclinedHalfWay) {
  const auto project = ReadDeck(
      DeckOf(UnitSquare(), "",
             kMaterial + Section("constraints",
                                 "1 010000 0 0.2 0 0 0 0 Euler3=0.2\n"
                                 "2 110000 0 0.6 0 0 0 0 Euler3=0.8\n4 010000 0 0.1 0 0 0 0\n")));
  ConvertMeshesTo6Nodes(*project);
  const Constraint& merged = *project->meshes[0]->nodes->Get(5)->constraint;  // on 1-2
  EXPECT_EQ(merged.hasLocalAxes, 1);
  EXPECT_NEAR(merged.Euler3, 0.5, 1e-12);
  EXPECT_THAT(merged.codes, testing::ElementsAre(0, 1, 0, 0, 0, 0));
  EXPECT_DOUBLE_EQ(merged.values[1], 0.4);  // each along its own axes
  const Constraint& other = *project->meshes[0]->nodes->Get(7)->constraint;  // on 4-1
  EXPECT_NEAR(other.Euler3, 0.1, 1e-12);
}

// --- whole runs ---------------------------------------------------------------------------------

std::string ClampedPlate(const std::string& keywords) {
  const TestMesh mesh = Grid(4, 4, Cut::Right, Same);
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
  TestMesh mesh = UnitSquare();
  ToSix(mesh);
  std::ostringstream info;
  EXPECT_FATAL(RunDeck(DeckOf(mesh, "Solver Double", kMaterial), 1, &info),
               "error: Solver DOUBLE needs a shell mesh of 3-noded triangles\n");
  EXPECT_EQ(info.str(), "");
}

TEST(ConvertedModel, TurnsWithItsInclinedSupports) {
  // A strip on local codes, straight and turned by 0.5 about z; mid-sides get merged supports.
  const double c = std::cos(0.5), s = std::sin(0.5);
  const auto solve = [&](bool turned) {
    const TestMesh mesh = Grid(4, 2, Cut::Right, [&](double x, double y, double) {
      x *= 2;
      return turned ? Vector3{c * x - s * y, s * x + c * y, 0} : Vector3{x, y, 0};
    });
    const char* const axes = turned ? " Euler3=0.5" : "";
    std::string supports, loads;
    for (int i = 1; i <= 5; ++i)  // the edge y = 0
      supports += Print("%d 011100 0 %g 0 0.002 0 0%s\n", i, 1e-3 * i, axes);
    supports += Print("15 100000 0.003 0 0 0 0 0%s\n", axes);
    loads += turned ? Print("11 %.17g %.17g 20 0 0 0\n", 300 * c - 50 * s, 300 * s + 50 * c)
                    : Print("11 300 50 20 0 0 0\n");
    return RunDeck(
        DeckOf(mesh, "ConvertTo6Nodes",
               kMaterial + Section("constraints", supports) + Section("nodal_point_loads", loads)));
  };
  const auto straight = solve(false), turned = solve(true);
  ASSERT_EQ(straight->numNodes, 45);
  for (int n = 1; n <= 45; ++n)
    for (const int first : {1, 4}) {
      const double x = Displacement(*straight, n, first), y = Displacement(*straight, n, first + 1);
      EXPECT_NEAR(Displacement(*turned, n, first), c * x - s * y, 1e-9) << n;
      EXPECT_NEAR(Displacement(*turned, n, first + 1), s * x + c * y, 1e-9) << n;
      EXPECT_NEAR(Displacement(*turned, n, first + 2), Displacement(*straight, n, first + 2), 1e-9);
    }
}

TEST(ConvertedModel, MidSideReactionsMoveToTheCorners) {
  const auto project = RunDeck(ClampedPlate("ConvertTo6Nodes"));
  double sum = 0.0, atMidSides = 0.0;
  for (const auto [key, node] : *project->meshes[0]->nodes) {
    if (!node->constraint) continue;
    const double reaction = PrintedReaction(*project, key, 3);
    sum += reaction;
    if (key > 25) atMidSides += std::abs(reaction);
  }
  EXPECT_EQ(atMidSides, 0.0);
  // The load on mid-sides of the clamp is inside K u: 4 edges, a third of two half cells each.
  EXPECT_NEAR(sum, 5.0 - 5.0 * 4 * (1.0 / 3) * (1.0 / 32), 1e-9);
}

TEST(TrianglesOfAPlaneProblem, AreRefused) {
  std::string deck = DeckOf(UnitSquare(), "", kMaterial);
  deck.replace(deck.find("3d"), 2, "2d");
  EXPECT_FATAL(RunDeck(deck), "error: triangle elements need a problem of type 3d\n");
}

}  // namespace

}  // namespace kestol
