#include <cmath>

#include "analysis/ShellPoints.h"
#include "analysis/Tri6.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/MeshDeck.h"
#include "tests/support/RunDeck.h"

namespace kestol {

namespace {

TestMesh Tilted(bool six) {
  TestMesh mesh{
      "Triangle", {{0.2, 0.1, 0.4},   {2, 0.3, 1}, {0.4, 1.5, -0.3}},
       {{1, 2, 3}}
  };
  if (six) ToSix(mesh);
  return mesh;
}

std::string Clamp(const TestMesh& mesh) {
  std::string lines;
  for (std::size_t i = 1; i <= mesh.nodes.size(); ++i)
    lines += Print("%d 111111 0 0 0 0 0 0\n", int(i));
  return Section("constraints", lines);
}

std::string Deck(const TestMesh& mesh, const std::string& material) {
  return DeckOf(mesh, "", "materials\n1 " + material + "\nend materials\n" + Clamp(mesh));
}

const char* const kPlate = "E=1e6 nu=0.25 G=4e5 t=0.1";

TEST(Tri6, DerivativesAgreeWithDifferencesAndSumToZero) {
  constexpr double h = 1e-6;
  const double r = 0.21, s = 0.34;
  const auto dN = tri6::ShapeDerivatives({r, s});
  double sumS = 0, sumT = 0;
  for (int i = 0; i < 6; ++i) {
    EXPECT_NEAR(dN.s[i], (tri6::Shape({r + h, s})[i] - tri6::Shape({r - h, s})[i]) / (2 * h), 1e-8);
    EXPECT_NEAR(dN.t[i], (tri6::Shape({r, s + h})[i] - tri6::Shape({r, s - h})[i]) / (2 * h), 1e-8);
    sumS += dN.s[i];
    sumT += dN.t[i];
  }
  EXPECT_NEAR(sumS, 0, 1e-14);
  EXPECT_NEAR(sumT, 0, 1e-14);
}

TEST(ShellStrainMatrices, HoldTheStatedRows) {
  const ShellStrain B = ShellStrainMatrices(2, 3, 5);
  EXPECT_THAT(B.membrane.entries, testing::ElementsAre(2, 0, 0, 0, 0,  //
                                                       0, 3, 0, 0, 0,  //
                                                       3, 2, 0, 0, 0));
  EXPECT_THAT(B.bending.entries, testing::ElementsAre(0, 0, 0, -2, 0,  //
                                                      0, 0, 0, 0, -3,  //
                                                      0, 0, 0, -3, -2));
  EXPECT_THAT(B.shear.entries, testing::ElementsAre(0, 0, 2, -5, 0,  //
                                                    0, 0, 3, 0, -5));
}

TEST(ShellElement, PointsStandForTheAreaAndReproduceLinearFields) {
  for (const bool six : {false, true}) {
    const TestMesh mesh = Tilted(six);
    const auto project = ReadDeck(Deck(mesh, kPlate));
    ShellElement shell(*project);
    shell.SetElem(*project->meshes[0]->elems.Get(1));
    const Vector3 o = mesh.nodes[0];
    const double area = Norm(Cross(Minus(mesh.nodes[1], o), Minus(mesh.nodes[2], o))) / 2;
    const auto check = [&](const auto& points) {
      double sum = 0;
      for (std::size_t p = 0; p < points.weight.size(); ++p) {
        sum += points.weight[p];
        double dx = 0, dy = 0, one = 0;  // of local x
        for (std::size_t i = 0; i < points.shape[p].size(); ++i) {
          const Vector3 d = Minus(mesh.nodes[i], o);
          const double x = shell.T(1, 1) * d[0] + shell.T(2, 1) * d[1] + shell.T(3, 1) * d[2];
          dx += points.dx[p][i] * x;
          dy += points.dy[p][i] * x;
          one += points.shape[p][i];
        }
        EXPECT_NEAR(dx, 1, 1e-13);
        EXPECT_NEAR(dy, 0, 1e-13);
        EXPECT_NEAR(one, 1, 1e-13);
      }
      EXPECT_NEAR(sum, area, 1e-13);
    };
    if (six) {
      ShellPoints<6, 3> points;
      shell.Evaluate(points);
      check(points);
    } else {
      ShellPoints<3, 1> points;
      shell.Evaluate(points);
      check(points);
    }
  }
}

TEST(ShellElement, LocalDegreesAreTheColumnsOfT6) {
  const auto project = ReadDeck(Deck(Tilted(false), kPlate));
  ShellElement shell(*project);
  shell.SetElem(*project->meshes[0]->elems.Get(1));
  for (int r = 0; r < 6; ++r) {
    double global[6] = {};
    global[r] = 1.0;
    const FixedMatrix<6, 1> local = shell.ToLocal(global);
    for (int k = 1; k <= 6; ++k) EXPECT_EQ(local(k, 1), shell.T6(r + 1, k)) << r << " " << k;
  }
}

TEST(ShellElement, UniformTensionTurnsWithTheElement) {
  // Displacements e (x' direction) along local x of a tilted element: Nx' = k E e, Ny' = nu Nx'.
  for (const bool six : {false, true}) {
    const TestMesh mesh = Tilted(six);
    const auto axes = ReadDeck(Deck(mesh, kPlate));
    ShellElement shell(*axes);
    shell.SetElem(*axes->meshes[0]->elems.Get(1));
    std::string lines;
    for (std::size_t i = 0; i < mesh.nodes.size(); ++i) {
      const Vector3 d = Minus(mesh.nodes[i], mesh.nodes[0]);
      const double x = shell.T(1, 1) * d[0] + shell.T(2, 1) * d[1] + shell.T(3, 1) * d[2];
      lines += Print("%d 111111 %.17g %.17g %.17g 0 0 0\n", int(i) + 1, 1e-3 * x * shell.T(1, 1),
                     1e-3 * x * shell.T(2, 1), 1e-3 * x * shell.T(3, 1));
    }
    const auto project = RunDeck(DeckOf(mesh, "",
                                        "materials\n1 " + std::string(kPlate) +
                                            "\nend materials\n" + Section("constraints", lines)));
    const double N = 0.1 * 1e6 / (1 - 0.0625) * 1e-3;
    for (int i = 0; i < project->results.meshes[0].local.n; i += 8) {
      const double* v = project->results.meshes[0].local.begin() + i;
      EXPECT_NEAR(v[0], N, 1e-9);
      EXPECT_NEAR(v[1], 0.25 * N, 1e-9);
      for (int k = 2; k < 8; ++k) EXPECT_NEAR(v[k], 0, 1e-9) << k;
    }
  }
}

// --- refusals -----------------------------------------------------------------------------------

TEST(ShellRefusals, MaterialThatDoesNotExist) {
  for (const bool six : {false, true}) {
    const TestMesh mesh = Tilted(six);
    EXPECT_FATAL(RunDeck(DeckOf(mesh, "", Clamp(mesh))),
                 "error: Material in element: 1 doesn't exist\n");
  }
}

TEST(ShellRefusals, ValuesThatAreMissing) {
  const struct {
    const char *material, *text;
  } kRows[] = {
      {"E=1 nu=0.3 G=1",             "error in element 1 Shell thickness is 0\n"            },
      {"Ey=1 nu=0.3 G=1 t=1",        "error in element 1 Ex is 0\n"                         },
      {"Ex=1 nu=0.3 G=1 t=1",        "error in element 1 Ey is 0\n"                         },
      {"E=1 nu=0.3 Gxz=1 Gyz=1 t=1", "error in element 1 Gxy is 0\n"                        },
      {"E=1 nu=0.3 Gxy=1 Gyz=1 t=1", "error in element 1 Gxz is 0\n"                        },
      {"E=1 nu=0.3 Gxy=1 Gxz=1 t=1", "error in element 1 Gyz is 0\n"                        },
      {"Ex=1 Ey=2 nu=0.3 G=1 t=1",   "error in element 1 Ex*nuXY must be equal to Ey*nuYX\n"},
      {"E=1 G=1 t=1",                "error in element 1 nuXY*nuYX must be less than 1\n"   },
  };
  for (const auto& [material, text] : kRows)
    EXPECT_FATAL(RunDeck(Deck(Tilted(false), material)), text);
}

TEST(ShellRefusals, SixNodedElementWhoseMidSidesTurnItInsideOut) {
  TestMesh mesh = Tilted(true);
  mesh.nodes[3] = Plus(mesh.nodes[3], Times(Minus(mesh.nodes[2], mesh.nodes[3]), 1.5));
  EXPECT_FATAL(RunDeck(Deck(mesh, kPlate)), "error: element 1 has jacobian 0\n");
}

TEST(ShellRefusals, JacobianOfAQuadrillionthIsEnough) {
  // A right triangle with legs h; with mid-side 5 moved by (x, y) the jacobian at the mid-sides
  // is h^2 + 2 h y, h^2 + 2 h x + 2 h y, h^2 + 2 h x.
  const auto evaluate = [](double y) {
    constexpr double h = 1e-7;
    TestMesh mesh{
        "Triangle", {{0, 0, 0},  {h, 0, 0}, {0, h, 0}},
         {{1, 2, 3}}
    };
    ToSix(mesh);
    mesh.nodes[4] = {0.9 * h, (0.5 + y) * h, 0};
    const auto project = ReadDeck(Deck(mesh, kPlate));
    ShellElement shell(*project);
    shell.SetElem(*project->meshes[0]->elems.Get(1));
    ShellPoints<6, 3> points;
    shell.Evaluate(points);
    return 6 * points.weight[0];
  };
  EXPECT_NEAR(evaluate(-0.43), 1.4e-15, 1e-21);
  EXPECT_FATAL(evaluate(-0.46), "error: element 1 has jacobian 0\n");
}

TEST(ShellRefusals, EulerAxisAlongTheNormal) {
  TestMesh mesh{
      "Triangle", {{0, 0, 0},  {1, 0, 0}, {0, 1, 0}},
       {{1, 2, 3}}
  };
  EXPECT_FATAL(RunDeck(Deck(mesh, "E=1 nu=0.3 G=1 t=1 Euler2=-1.5707963267948966")),
               "error in element 1. Normal to element and X local are parallel\n");
}

TEST(ShellRefusals, ComeInTheOrderAxesThenValuesThenJacobian) {
  TestMesh mesh{
      "Triangle", {{0, 0, 0},  {1, 0, 0}, {0, 1, 0}},
       {{1, 2, 3}}
  };
  EXPECT_FATAL(RunDeck(Deck(mesh, "E=1 nu=0.3 G=1 Euler2=-1.5707963267948966")),
               "error in element 1. Normal to element and X local are parallel\n");
  ToSix(mesh);
  mesh.nodes[3] = {0.5, 0.8, 0};
  EXPECT_FATAL(RunDeck(Deck(mesh, "E=1 nu=0.3 G=1")), "error in element 1 Shell thickness is 0\n");
  EXPECT_FATAL(RunDeck(Deck(mesh, "E=1 nu=0.3 G=1 t=1")), "error: element 1 has jacobian 0\n");
}

TEST(ShellRefusals, EdgeThatDoesNotExist) {
  EXPECT_FATAL(RunDeck(Deck(Tilted(false), kPlate) + Section("face_loads", "1 3 0 0 1\n")),
               "error: face 3 does not exist in element 1\n");
}

}  // namespace

}  // namespace kestol
