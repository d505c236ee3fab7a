#include <cmath>

#include "analysis/SolidPoints.h"
#include "analysis/Tet10.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/LoadVector.h"
#include "tests/support/MeshDeck.h"
#include "tests/support/RunDeck.h"

namespace kestol {

namespace {

std::string Deck(const TestMesh& mesh, const std::string& material = "E=1e6 nu=0.25",
                 const std::string& sections = "") {
  std::string supports;
  for (std::size_t i = 1; i <= mesh.nodes.size(); ++i) supports += Print("%d 111 0 0 0\n", int(i));
  return DeckOf(mesh, "",
                "materials\n1 " + material + "\nend materials\n" +
                    Section("constraints", supports) + sections);
}

TEST(Tet10, DerivativesAgreeWithDifferencesAndSumToZero) {
  constexpr double h = 1e-6;
  const auto [r, s, t] = Vector3{0.21, 0.34, 0.17};
  const auto dN = tet10::ShapeDerivatives({r, s, t});
  double sum[3] = {};
  for (int i = 0; i < 10; ++i) {
    const auto slope = [&](const Vector3& a, const Vector3& b) {
      return (tet10::Shape(b)[i] - tet10::Shape(a)[i]) / (2 * h);
    };
    EXPECT_NEAR(dN.r[i], slope({r - h, s, t}, {r + h, s, t}), 1e-8) << i;
    EXPECT_NEAR(dN.s[i], slope({r, s - h, t}, {r, s + h, t}), 1e-8) << i;
    EXPECT_NEAR(dN.t[i], slope({r, s, t - h}, {r, s, t + h}), 1e-8) << i;
    sum[0] += dN.r[i];
    sum[1] += dN.s[i];
    sum[2] += dN.t[i];
  }
  for (const double total : sum) EXPECT_NEAR(total, 0, 1e-14);
}

TEST(Tetra4, UnitElementHasAVolumeOfASixthAndUnitGradients) {
  const auto project = ReadDeck(Deck(UnitTetrahedron(false)));
  SolidPoints<4, 1> points;
  EvaluateTetra4(*project->meshes[0]->elems.Get(1), points);
  EXPECT_DOUBLE_EQ(points.weight[0], 1.0 / 6);
  EXPECT_THAT(points.gradient[0][0], testing::ElementsAre(-1, -1, -1));
  EXPECT_THAT(points.gradient[0][1], testing::ElementsAre(1, 0, 0));
  EXPECT_THAT(points.gradient[0][2], testing::ElementsAre(0, 1, 0));
  EXPECT_THAT(points.gradient[0][3], testing::ElementsAre(0, 0, 1));
}

TEST(Tetra10, UnitElementHasTheSameVolumeAndLinearGradients) {
  const TestMesh mesh = UnitTetrahedron(true);
  const auto project = ReadDeck(Deck(mesh));
  SolidPoints<10, 4> points;
  EvaluateTetra10(*project->meshes[0]->elems.Get(1), points);
  double volume = 0;
  for (int p = 0; p < 4; ++p) {
    volume += points.weight[p];
    for (int a = 0; a < 3; ++a)
      for (int b = 0; b < 3; ++b) {
        double slope = 0;  // of coordinate b along axis a
        for (int k = 0; k < 10; ++k) slope += points.gradient[p][k][a] * mesh.nodes[k][b];
        EXPECT_NEAR(slope, a == b, 1e-14);
      }
  }
  EXPECT_NEAR(volume, 1.0 / 6, 1e-15);
}

TEST(TetraStrainMatrix, HoldsTheStatedRows) {
  const auto B = TetraStrainMatrix(2, {0, 2, 0, 0}, {0, 4, 0, 0}, {0, 6, 0, 0}, 2.0);
  EXPECT_THAT(B.entries, testing::ElementsAre(1, 0, 0,  //
                                              0, 2, 0,  //
                                              0, 0, 3,  //
                                              2, 1, 0,  //
                                              3, 0, 1,  //
                                              0, 3, 2));
}

// --- stresses at nodes --------------------------------------------------------------------------

TEST(NodalStresses, MidSideNodesStayZeroAndCornersExtrapolate) {
  // u = (x^2, 0, 0)/2: sigma_x = c x, linear, so the corners are met exactly.
  const TestMesh mesh = UnitTetrahedron(true);
  std::string lines;
  for (std::size_t i = 0; i < mesh.nodes.size(); ++i)
    lines += Print("%d 111 %.17g 0 0\n", int(i) + 1, mesh.nodes[i][0] * mesh.nodes[i][0] / 2);
  const auto project = RunDeck(
      DeckOf(mesh, "", "materials\n1 E=2 nu=0\nend materials\n" + Section("constraints", lines)));
  const ReaVecT& s = project->results.nodalStresses;
  for (int node = 1; node <= 10; ++node) {
    const int at = 6 * (NodeOf(*project, node).number - 1) + 1;
    EXPECT_NEAR(s(at), node == 2 ? 2.0 : 0.0, 1e-6) << node;
  }
}

// --- refusals -----------------------------------------------------------------------------------

TEST(SolidRefusals, NegativeOrientation) {
  TestMesh mesh = UnitTetrahedron(false);
  std::swap(mesh.elems[0][0], mesh.elems[0][1]);
  EXPECT_FATAL(RunDeck(Deck(mesh)), "error: element 1 has jacobian <=0\n");
  mesh = UnitTetrahedron(true);
  auto& nodes = mesh.elems[0];
  std::swap(nodes[0], nodes[1]);
  std::swap(nodes[5], nodes[6]);  // 2-3 and 3-1
  std::swap(nodes[7], nodes[8]);  // 1-4 and 2-4
  EXPECT_FATAL(RunDeck(Deck(mesh)), "error: element 1 has jacobian 0\n");
}

TEST(SolidRefusals, FlatElements) {
  for (const bool ten : {false, true}) {
    TestMesh mesh = UnitTetrahedron(ten);
    for (Vector3& p : mesh.nodes) p[2] = 0;
    EXPECT_FATAL(RunDeck(Deck(mesh)),
                 std::string("error: element 1 has jacobian ") + (ten ? "0\n" : "<=0\n"));
  }
}

TEST(SolidRefusals, ComeInTheOrderMaterialThenValuesThenJacobian) {
  for (const bool ten : {false, true}) {
    TestMesh mesh = UnitTetrahedron(ten);
    for (Vector3& p : mesh.nodes) p[2] = 0;
    EXPECT_FATAL(RunDeck(DeckOf(mesh, "", "constraints\n1 111 0 0 0\nend\n")),
                 "error: Material in element: 1 doesn't exist\n");
    EXPECT_FATAL(RunDeck(Deck(mesh, "nu=0.3")), "error in element 1 E is 0\n");
  }
}

TEST(SolidRefusals, JacobianOfAQuadrillionthIsEnough) {
  for (const bool ten : {false, true}) {
    TestMesh mesh = UnitTetrahedron(ten);
    const auto evaluate = [&](double height) {
      for (Vector3& p : mesh.nodes) p[2] = p[2] > 0 ? height * p[2] : 0;
      const auto project = ReadDeck(Deck(mesh));
      const Elem& elem = *project->meshes[0]->elems.Get(1);
      SolidPoints<4, 1> four;
      SolidPoints<10, 4> points;
      if (ten)
        EvaluateTetra10(elem, points);
      else
        EvaluateTetra4(elem, four);
      return ten ? points.weight[0] * 24 : four.weight[0] * 6;
    };
    EXPECT_NEAR(evaluate(1.5e-15), 1.5e-15, 1e-27);
    EXPECT_FATAL(evaluate(0.6),
                 std::string("error: element 1 has jacobian ") + (ten ? "0\n" : "<=0\n"));
  }
}

TEST(SolidRefusals, MaterialThatIsMissingOrImpossible) {
  for (const bool ten : {false, true}) {
    const TestMesh mesh = UnitTetrahedron(ten);
    EXPECT_FATAL(RunDeck(DeckOf(mesh, "", "constraints\n1 111 0 0 0\nend\n")),
                 "error: Material in element: 1 doesn't exist\n");
  }
  const struct {
    const char *material, *text;
  } kRows[] = {
      {"nu=0.3",     "error in element 1 E is 0\n"                   },
      {"E=1 nu=1",   "error in element 1 nu is 1\n"                  },
      {"E=1 nu=0.5", "error in element 1 nu must be > -1 and < 0.5\n"},
      {"E=1 nu=-1",  "error in element 1 nu must be > -1 and < 0.5\n"},
      {"E=1",        "error in element 1 nu must be > -1 and < 0.5\n"}
  };
  for (const auto& [material, text] : kRows)
    EXPECT_FATAL(RunDeck(Deck(UnitTetrahedron(false), material)), text);
}

TEST(SolidRefusals, FaceThatDoesNotExist) {
  for (const int face : {4, -2})
    EXPECT_FATAL(RunDeck(Deck(UnitTetrahedron(false), "E=1 nu=0",
                              Print("face_loads\n1 %d 0 0 1\nend\n", face))),
                 Print("error: face %d does not exist in element 1\n", face));
}

TEST(SolidRefusals, MixtureWithOtherElements) {
  EXPECT_FATAL(ReadDeck(Deck(UnitTetrahedron(false), "E=1 nu=0",
                             "mesh dimension = 3 elemtype Linear nnode = 2\ncoordinates\nend\n"
                             "elements\n9 1 2 1\nend\n")),
               "error: Element tetrahedra cannot be mixed with any other element type");
}

TEST(SolidRefusals, NodeWithoutElements) {
  TestMesh mesh = UnitTetrahedron(false);
  mesh.nodes.push_back({5, 5, 5});
  EXPECT_FATAL(RunDeck(Deck(mesh)), "error: node 5 has no elements around\n");
}

TEST(SolidsInAPlaneProblem, AreSolvedWithTwoNumberLoads) {
  std::string deck =
      Deck(UnitTetrahedron(false), "E=1 nu=0", "global_pressure_loads\n1 24 48\nend\n");
  deck.replace(deck.find("3d"), 2, "2d");
  const auto f = LoadsOf(deck);
  EXPECT_NEAR(f[0], 1, 1e-14);
  EXPECT_NEAR(f[1], 2, 1e-14);
  EXPECT_EQ(f[2], 0);
  EXPECT_EQ(RunDeck(deck)->dofsPerNode, 3);
}

}  // namespace

}  // namespace kestol
