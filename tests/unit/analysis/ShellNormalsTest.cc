// Normals of triangle meshes and the flags of coplanar nodes.
#include <cmath>

#include "analysis/ShellConversion.h"
#include "analysis/ShellNormals.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/MeshDeck.h"
#include "tests/support/RunDeck.h"

namespace kestol {

namespace {

const char* const kMaterial = "materials\n1 E=1e6 nu=0.25 G=4e5 t=0.1\nend materials\n";

std::unique_ptr<SolvedProject> Read(const TestMesh& mesh, const std::string& keywords = "") {
  return ReadDeck(DeckOf(mesh, keywords, kMaterial));
}

TEST(CheckNormals, FlatPlateFlagsEveryNode) {
  const auto project = Read(Grid(3, 2, Cut::Cross, Same));
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
  TestMesh mesh = UnitSquare();
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
  TestMesh mesh = UnitSquare();
  std::swap(mesh.elems[1][0], mesh.elems[1][1]);
  const auto project = Read(mesh);
  EXPECT_FATAL(
      CheckNormals(*project),
      "error: Elements 1 and 2 have normals in opposite directions. It is necessary to swap "
      "normals\n");
}

TEST(CheckNormals, DegenerateElementIsRefused) {
  TestMesh mesh = UnitSquare();
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

TEST(CheckNormals, MidSideNodesCountAndAreFlaggedLikeCorners) {
  TestMesh mesh = UnitSquare();
  mesh.nodes[1][2] = 0.5;  // a fold along 1-4
  ToSix(mesh);             // 5 on 1-2, 6 on 2-4, 7 on 4-1, 8 on 4-3, 9 on 3-1
  const auto project = Read(mesh, "CoplanarityAngle 0.1");
  CheckNormals(*project);
  EXPECT_THAT(project->coplanar, testing::ElementsAre(0, 1, 1, 0, 1, 1, 0, 1, 1));
}

/// Triangles about node 1 with the other nodes apart, their normals turned about x by the angles.
TestMesh Turned(const std::vector<double>& angles) {
  TestMesh mesh{"Triangle", {{0, 0, 0}}, {}};
  for (const double angle : angles) {
    const int first = static_cast<int>(mesh.nodes.size()) + 1;
    mesh.nodes.push_back({1, 0, 0});
    mesh.nodes.push_back({0, std::cos(angle), std::sin(angle)});
    mesh.elems.push_back({1, first, first + 1});
  }
  return mesh;
}

int FlagOfNode1(const std::vector<double>& angles, const char* tolerance) {
  const auto project = Read(Turned(angles), std::string("CoplanarityAngle ") + tolerance);
  CheckNormals(*project);
  return project->coplanar[0];
}

TEST(CheckNormals, EveryNormalIsComparedWithTheFirst) {
  EXPECT_EQ(FlagOfNode1({0, 0.15, -0.15}, "0.2"), 1);
  EXPECT_EQ(FlagOfNode1({0.15, -0.15, 0}, "0.2"), 0);
}

TEST(CheckNormals, ComparisonStopsAtTheFirstNormalThatIsNotCoplanar) {
  constexpr double kPi = 3.141592653589793;
  EXPECT_EQ(FlagOfNode1({0, kPi / 2, kPi}, "0.2"), 0);
  EXPECT_FATAL(FlagOfNode1({0, kPi, kPi / 2}, "0.2"),
               "error: Elements 1 and 2 have normals in opposite directions. It is necessary to "
               "swap normals\n");
  EXPECT_FATAL(FlagOfNode1({0, 0.1, kPi - 0.1}, "0.2"),
               "error: Elements 1 and 3 have normals in opposite directions. It is necessary to "
               "swap normals\n");
}

TEST(CheckNormals, WithAnAngleOverARightOneOppositeComesFirst) {
  // cos 2 = -0.42: a right angle is below +0.42.
  EXPECT_FATAL(FlagOfNode1({0, 1.5707963267948966}, "2"),
               "error: Elements 1 and 2 have normals in opposite directions. It is necessary to "
               "swap normals\n");
  EXPECT_EQ(FlagOfNode1({0, 1.0}, "2"), 1);
}

TEST(CheckNormals, NodesOutsideTheTrianglesHaveNoFlag) {
  TestMesh mesh = UnitSquare();
  mesh.nodes.push_back({5, 5, 5});
  const auto project = Read(mesh);
  CheckNormals(*project);
  EXPECT_THAT(project->coplanar, testing::ElementsAre(1, 1, 1, 1, 0));
}

TEST(CheckNormals, DegenerateElementsThenCrowdedNodesThenOppositeNormals) {
  TestMesh mesh = Fan(26);
  std::swap(mesh.elems[1][1], mesh.elems[1][2]);  // opposite to the first
  EXPECT_FATAL(CheckNormals(*Read(mesh)),
               "error: Node 1 has too many elements around (more than 25)\n");
  mesh.nodes[26] = {0, 0, 0};  // the last two triangles have no area
  EXPECT_FATAL(CheckNormals(*Read(mesh)), "error: element 25 is not correct\n");
}

TEST(CheckNormals, MessagesNameNodesAsTheDeckDoes) {
  const auto project = Read(Fan(26));
  project->meshes[0]->Renumber();
  ASSERT_NE(NodeOf(*project, 1).number, 1);
  EXPECT_FATAL(CheckNormals(*project),
               "error: Node 1 has too many elements around (more than 25)\n");
}

// --- several meshes -----------------------------------------------------------------------------

/// Flags of the square 1 2 3 4 whose second triangle is a mesh of its own, listed as `second`.
std::vector<int> FlagsOfTwoMeshes(const char* second, double heightOf3) {
  TestMesh mesh = UnitSquare();
  mesh.nodes[2][2] = heightOf3;
  mesh.elems.pop_back();
  const auto project = ReadDeck(
      DeckOf(mesh, "CoplanarityAngle 0.1",
             std::string("mesh dimension = 3 elemtype Triangle nnode = 3\ncoordinates\nend\n"
                         "elements\n7 ") +
                 second + " 1\nend\n" + kMaterial));
  CheckNormals(*project);
  return project->coplanar;
}

TEST(CheckNormals, MeshesInOnePlaneAreCoplanarWhicheverWayTheyFace) {
  EXPECT_THAT(FlagsOfTwoMeshes("1 4 3", 0), testing::Each(1));
  EXPECT_THAT(FlagsOfTwoMeshes("1 3 4", 0), testing::Each(1));
}

TEST(CheckNormals, MeshesThatMeetAtAFoldAreNotCoplanarThere) {
  EXPECT_THAT(FlagsOfTwoMeshes("1 4 3", 1), testing::ElementsAre(0, 1, 1, 0));
  EXPECT_THAT(FlagsOfTwoMeshes("1 3 4", 1), testing::ElementsAre(0, 1, 1, 0));
}

TEST(CheckNormals, AFoldInsideOneMeshIsKeptWhateverTheOther) {
  // Elements 1 and 2 fold along 1-4; element 7 of the other mesh lies in the plane of 1.
  for (const bool flatFirst : {false, true}) {
    TestMesh mesh = UnitSquare();
    mesh.nodes[2][2] = 1;
    mesh.nodes.push_back({1, -1, 0});
    TestMesh other = mesh;
    other.elems = {
        {1, 5, 2}
    };
    if (flatFirst) std::swap(mesh, other);
    std::string lines;
    for (std::size_t e = 0; e < other.elems.size(); ++e)
      lines += Print("%d %d %d %d 1\n", 7 + static_cast<int>(e), other.elems[e][0],
                     other.elems[e][1], other.elems[e][2]);
    const auto project = ReadDeck(
        DeckOf(mesh, "CoplanarityAngle 0.1",
               "mesh dimension = 3 elemtype Triangle nnode = 3\ncoordinates\nend\nelements\n" +
                   lines + "end\n" + kMaterial));
    CheckNormals(*project);
    EXPECT_THAT(project->coplanar, testing::ElementsAre(0, 1, 1, 0, 1)) << flatFirst;
  }
}

TEST(CheckNormals, MeshesAreComparedByTheirFirstNormals) {
  // Normals of the two meshes around node 1, turned about x; only the first of each must agree.
  const auto flag = [](std::vector<double> angles, std::size_t inFirstMesh) {
    TestMesh mesh = Turned(angles);
    std::string lines;
    for (std::size_t e = inFirstMesh; e < mesh.elems.size(); ++e)
      lines += Print("%d %d %d %d 1\n", 7 + static_cast<int>(e), mesh.elems[e][0], mesh.elems[e][1],
                     mesh.elems[e][2]);
    mesh.elems.resize(inFirstMesh);
    const auto project = ReadDeck(
        DeckOf(mesh, "CoplanarityAngle 0.2",
               "mesh dimension = 3 elemtype Triangle nnode = 3\ncoordinates\nend\nelements\n" +
                   lines + "end\n" + kMaterial));
    CheckNormals(*project);
    return project->coplanar[0];
  };
  EXPECT_EQ(flag({0, 0.15, -0.15}, 2), 1);
  EXPECT_EQ(flag({0.15, 0, -0.15}, 2), 0);
  EXPECT_EQ(flag({-0.15, 0, 0.15}, 1), 1);
  EXPECT_EQ(flag({-0.15, 0.15, 0}, 1), 0);
}

TEST(CheckNormals, EveryPairOfMeshesIsCompared) {
  // One triangle about node 1 in each of several meshes, the normals turned about x.
  const auto flag = [](const std::vector<double>& angles) {
    TestMesh mesh = Turned(angles);
    std::string others;
    for (std::size_t e = 1; e < mesh.elems.size(); ++e)
      others += Print(
          "mesh dimension = 3 elemtype Triangle nnode = 3\ncoordinates\nend\nelements\n"
          "%d %d %d %d 1\nend\n",
          7 + static_cast<int>(e), mesh.elems[e][0], mesh.elems[e][1], mesh.elems[e][2]);
    mesh.elems.resize(1);
    const auto project = ReadDeck(DeckOf(mesh, "CoplanarityAngle 0.5", others + kMaterial));
    CheckNormals(*project);
    return project->coplanar[0];
  };
  EXPECT_EQ(flag({0, 0.3, -0.3}), 0);  // the second and the third are 0.6 apart
  EXPECT_EQ(flag({0, 0.2, -0.2}), 1);
  EXPECT_EQ(flag({0.3, 0, -0.3}), 0);  // the first and the third
  EXPECT_EQ(flag({0.4, 0, 0.2, -0.05}), 1);
  EXPECT_EQ(flag({0.2, 0, 0.4, -0.2}), 0);  // the third and the fourth
}

TEST(CheckNormals, TheLimitOfElementsIsForEachMesh) {
  TestMesh mesh = Fan(25);
  std::string lines;
  for (std::size_t e = 0; e < mesh.elems.size(); ++e)
    lines += Print("%d %d %d %d 1\n", 101 + static_cast<int>(e), mesh.elems[e][0], mesh.elems[e][1],
                   mesh.elems[e][2]);
  const auto project = ReadDeck(
      DeckOf(mesh, "",
             "mesh dimension = 3 elemtype Triangle nnode = 3\ncoordinates\nend\nelements\n" +
                 lines + "end\n" + kMaterial));
  CheckNormals(*project);
  EXPECT_THAT(project->coplanar, testing::Each(1));
}

}  // namespace

}  // namespace kestol
