// Tetrahedra of 4 and 10 nodes against patch tests, closed solutions and published values.
#include <cmath>

#include "analysis/ElementRoutines.h"
#include "analysis/Solid.h"
#include "tests/support/ElementStiffness.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/MeshDeck.h"
#include "tests/support/RunDeck.h"

namespace kestol {

namespace {

constexpr double kPi = 3.141592653589793;

/// The cube of R. H. MacNeal and R. L. Harder (A proposed standard set of problems to test finite
/// element accuracy, 1985) with eight inner nodes, cut into 52 tetrahedra.
TestMesh PatchCube(bool quadratic) {
  TestMesh mesh{
      "Tetrahedra",
      {{0, 0, 0},
        {1, 0, 0},
        {0, 1, 0},
        {1, 1, 0},
        {0, 0, 1},
        {1, 0, 1},
        {0, 1, 1},
        {1, 1, 1},
        {.249, .342, .192},
        {.826, .288, .288},
        {.850, .649, .263},
        {.273, .750, .230},
        {.320, .186, .643},
        {.677, .305, .683},
        {.788, .693, .644},
        {.165, .745, .702}            },
      { {13, 14, 6, 2}, {13, 6, 14, 5}, {15, 4, 12, 8}, {15, 14, 6, 8}, {16, 12, 7, 8},
        {16, 15, 12, 8}, {16, 7, 14, 8}, {16, 14, 15, 8}, {16, 13, 12, 14}, {16, 12, 15, 14},
        {16, 14, 7, 5}, {16, 13, 14, 5}, {16, 7, 12, 3}, {11, 15, 6, 8}, {11, 4, 15, 8},
        {11, 15, 12, 14}, {11, 12, 15, 4}, {9, 4, 11, 2}, {9, 12, 11, 4}, {9, 12, 4, 3},
        {9, 16, 3, 1}, {9, 16, 12, 3}, {9, 16, 13, 12}, {9, 12, 13, 14}, {9, 11, 12, 14},
        {9, 13, 5, 1}, {9, 5, 16, 1}, {9, 13, 16, 5}, {10, 2, 13, 1}, {10, 9, 2, 1},
        {10, 13, 9, 1}, {10, 14, 13, 2}, {10, 9, 13, 14}, {10, 9, 11, 2}, {10, 11, 9, 14},
        {10, 11, 6, 2},   {10, 6, 14, 2},  {10, 15, 14, 6}, {10, 11, 15, 6},  {10, 15, 11, 14},
        {14, 6, 8, 5},    {14, 8, 7, 5},   {12, 7, 8, 3},   {12, 8, 4, 3},    {13, 2, 5, 1},
        {13, 6, 5, 2},    {16, 5, 3, 1},   {16, 5, 7, 3},   {11, 8, 6, 2},    {11, 4, 8, 2},
        {9, 3, 2, 1},     {9, 3, 4, 2}}
  };
  if (quadratic) ToTen(mesh);
  return mesh;
}

bool OnSurfaceOfCube(const Vector3& p) {
  for (const double c : p)
    if (c == 0.0 || c == 1.0) return true;
  return false;
}

/// Prescribes all three displacements of the picked nodes.
std::string PrescribeField(const TestMesh& mesh, const std::vector<int>& numbers,
                           const std::function<Vector3(const Vector3&)>& field) {
  std::string lines;
  for (const int n : numbers) {
    const Vector3 u = field(mesh.At(n));
    lines += Print("%d 111 %.17g %.17g %.17g\n", n, u[0], u[1], u[2]);
  }
  return Section("constraints", lines);
}

std::string Clamp(const std::vector<int>& numbers, const char* codes) {
  std::string lines;
  for (const int n : numbers) lines += Print("%d %s 0 0 0\n", n, codes);
  return Section("constraints", lines);
}

const char* const kSteel = "materials\n1 E=1e6 nu=0.25\nend materials\n";

class Solids : public testing::TestWithParam<bool> {};  // quadratic?

INSTANTIATE_TEST_SUITE_P(FourAndTenNodes, Solids, testing::Bool());

TEST_P(Solids, PatchOfLinearDisplacementsGivesUniformStressAtEveryPoint) {
  const TestMesh mesh = PatchCube(GetParam());
  const auto field = [](const Vector3& p) {
    const double s = p[0] + p[1] + p[2];
    return Vector3{1e-3 * (s + p[0]) / 2, 1e-3 * (s + p[1]) / 2, 1e-3 * (s + p[2]) / 2};
  };
  for (const char* solver : {"Solver SkyLine", "Solver Sparse 1e-13 1e-10 5000"}) {
    const auto project = RunDeck(
        DeckOf(mesh, solver, kSteel + PrescribeField(mesh, mesh.Where(OnSurfaceOfCube), field)));
    const ReaVecT& stresses = project->results.meshes[0].local;
    ASSERT_EQ(stresses.n, 52 * (GetParam() ? 24 : 6));
    for (int i = 0; i < stresses.n; ++i)
      EXPECT_NEAR(stresses.data[i], i % 6 < 3 ? 2000.0 : 400.0, 2e-6) << solver << " " << i;
  }
}

TEST_P(Solids, PatchOfLinearDisplacementsGivesUniformStressAtCornersAndNothingAtMidSides) {
  const TestMesh mesh = PatchCube(GetParam());
  const auto field = [](const Vector3& p) { return Vector3{1e-3 * p[0], 0, 0}; };
  const auto project =
      RunDeck(DeckOf(mesh, "", kSteel + PrescribeField(mesh, mesh.Where(OnSurfaceOfCube), field)));
  ASSERT_EQ(project->results.nodalStresses.n, 6 * static_cast<int>(mesh.nodes.size()));
  const double expected[6] = {1200, 400, 400, 0, 0, 0};  // lambda + 2 mu, lambda
  for (int number = 1; number <= static_cast<int>(mesh.nodes.size()); ++number) {
    const double* const stress =
        project->results.nodalStresses.begin() + 6 * (NodeOf(*project, number).number - 1);
    for (int k = 0; k < 6; ++k)
      EXPECT_NEAR(stress[k], number <= 16 ? expected[k] : 0.0, number <= 16 ? 2e-6 : 0.0)
          << number << ' ' << k;
  }
}

TEST_P(Solids, RigidMotionAsPrescribedDisplacementGivesNoStress) {
  const TestMesh mesh = PatchCube(GetParam());
  const auto field = [](const Vector3& p) {
    return Plus({0.1, -0.2, 0.3}, Cross({0.01, 0.02, -0.03}, p));
  };
  const auto project =
      RunDeck(DeckOf(mesh, "", kSteel + PrescribeField(mesh, mesh.Where(OnSurfaceOfCube), field)));
  for (const double stress : project->results.meshes[0].local) EXPECT_NEAR(stress, 0.0, 1e-8);
}

TestMesh OneTetrahedron(bool quadratic) {
  TestMesh mesh{
      "Tetrahedra", {{0.1, 0.2, 0},  {2, 0, 0.3}, {0.2, 1.5, 0}, {0, 0.4, 1.2}},
       {      }
  };
  mesh.elems.push_back({1, 2, 3, 4});
  if (quadratic) ToTen(mesh);
  return mesh;
}

Matriu ElementStiffness(const TestMesh& mesh) {
  return StiffnessOfDeck(DeckOf(mesh, "", kSteel));
}

TEST_P(Solids, HaveExactlySixZeroModes) {
  EXPECT_EQ(ZeroModes(ElementStiffness(OneTetrahedron(GetParam()))), 6);
}

TEST_P(Solids, StiffnessIsSymmetricAndTurnsWithTheElement) {
  const TestMesh mesh = OneTetrahedron(GetParam());
  TestMesh turned = mesh;
  const double c = std::cos(0.7), s = std::sin(0.7);
  const auto turn = [&](const Vector3& p) {  // about z, then x <-> y <-> z
    return Vector3{c * p[0] - s * p[1], s * p[0] + c * p[1], p[2]};
  };
  for (Vector3& p : turned.nodes) p = turn(p);
  const Matriu K = ElementStiffness(mesh), R = ElementStiffness(turned);
  const double Q[3][3] = {
      {c, -s, 0},
      {s, c,  0},
      {0, 0,  1}
  };
  for (int a = 0; a < K.nrows; a += 3)
    for (int b = 0; b < K.nrows; b += 3)
      for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) {
          double sum = 0.0;
          for (int k = 0; k < 3; ++k)
            for (int l = 0; l < 3; ++l) sum += Q[i][k] * K(a + k + 1, b + l + 1) * Q[j][l];
          EXPECT_NEAR(R(a + i + 1, b + j + 1), sum, 1e-6);
        }
}

TEST_P(Solids, SupportsCarryVolumeFaceAndOwnWeightTogether) {
  const TestMesh mesh = Box(2, 2, 2, GetParam(), Same);
  std::string volume, face;
  for (std::size_t e = 1; e <= mesh.elems.size(); ++e) volume += Print("%d -1 3 -2 1\n", int(e));
  // The upper face z = 1, found by its corners.
  constexpr int kFaces[4][3] = {
      {0, 1, 2},
      {1, 2, 3},
      {2, 3, 0},
      {3, 0, 1}
  };
  for (std::size_t e = 0; e < mesh.elems.size(); ++e)
    for (int f = 0; f < 4; ++f) {
      bool onTop = true;
      for (const int corner : kFaces[f]) onTop = onTop && mesh.At(mesh.elems[e][corner])[2] == 1.0;
      if (onTop) face += Print("%d %d 0 0 7\n", int(e) + 1, f);
    }
  const auto project =
      RunDeck(DeckOf(mesh, "GravityDirection 0 0 -1",
                     "materials\n1 E=1e6 nu=0.25 Weight=5\nend materials\n" +
                         Clamp(mesh.Where([](const Vector3& p) { return p[0] == 0.0; }), "111") +
                         Section("global_pressure_loads", volume) + Section("face_loads", face)));
  // Reactions are K u; what the loads leave on free nodes is the rest of the total.
  double sum[3] = {}, moment = 0.0;
  for (std::size_t i = 1; i <= mesh.nodes.size(); ++i) {
    const Node& node = NodeOf(*project, int(i));
    if (!node.constraint) continue;
    for (int d = 0; d < 3; ++d) sum[d] += PrintedReaction(*project, int(i), d + 1);
    moment += node.x * PrintedReaction(*project, int(i), 3);
  }
  // Volume 1, face 1. A load on the clamped nodes themselves is inside K u: the free ones carry
  // less than the whole. All of K u sums to the loads on free nodes with the opposite sign.
  double freeLoad[3] = {};
  auto loaded =
      ReadDeck(DeckOf(mesh, "GravityDirection 0 0 -1",
                      "materials\n1 E=1e6 nu=0.25 Weight=5\nend materials\n" +
                          Section("global_pressure_loads", volume) + Section("face_loads", face)));
  ReaVecT loads(3 * loaded->numNodes);
  RoutinesFor(*loaded->meshes[0]).addLoads(*loaded, *loaded->meshes[0], loads);
  double total[3] = {};
  for (std::size_t i = 1; i <= mesh.nodes.size(); ++i)
    for (int d = 1; d <= 3; ++d) {
      const double f = loads(3 * (int(i) - 1) + d);
      total[d - 1] += f;
      if (mesh.At(int(i))[0] != 0.0) freeLoad[d - 1] += f;
    }
  EXPECT_NEAR(total[0], 3.0, 1e-12);
  EXPECT_NEAR(total[1], -2.0, 1e-12);
  EXPECT_NEAR(total[2], 1.0 - 5.0 + 7.0, 1e-12);
  for (int d = 0; d < 3; ++d) EXPECT_NEAR(sum[d], -freeLoad[d], 1e-9);
  EXPECT_NEAR(moment, 0.0, 1e-12);  // x = 0 on the clamp
}

std::string FaceLoads(const TestMesh& mesh, const std::function<bool(const Vector3&)>& onFace,
                      const char* components) {
  constexpr int kFaces[4][3] = {
      {0, 1, 2},
      {1, 2, 3},
      {2, 3, 0},
      {3, 0, 1}
  };
  std::string lines;
  for (std::size_t e = 0; e < mesh.elems.size(); ++e)
    for (int f = 0; f < 4; ++f) {
      bool all = true;
      for (const int corner : kFaces[f]) all = all && onFace(mesh.At(mesh.elems[e][corner]));
      if (all) lines += Print("%d %d %s\n", int(e) + 1, f, components);
    }
  return lines;
}

// Quarter of a thick tube, inner radius 3, outer radius 9, E = 1000, p = 1, plane strain. Lame:
// u(a) = (1 + nu) p a^2 / (E (b^2 - a^2)) ((1 - 2 nu) a + b^2 / a).
double TubeRatio(double nu, int radial, int around, const char* solver) {
  const TestMesh mesh = Box(radial, around, 1, true, [](double a, double b, double c) {
    const double r = 3 + 6 * a, angle = kPi / 2 * b;
    return Vector3{b == 1.0 ? 0.0 : r * std::cos(angle), r * std::sin(angle), c};
  });
  std::string supports;
  for (std::size_t i = 0; i < mesh.nodes.size(); ++i) {
    const Vector3& p = mesh.nodes[i];
    supports += Print("%d %d%d1 0 0 0\n", int(i) + 1, p[0] == 0.0, p[1] == 0.0);
  }
  const auto inside = [](const Vector3& p) { return std::hypot(p[0], p[1]) < 3.0 + 1e-9; };
  const auto project = RunDeck(DeckOf(
      mesh, solver,
      Print("materials\n1 E=1000 nu=%g\nend materials\n", nu) + Section("constraints", supports) +
          Section("local_pressure_loads", FaceLoads(mesh, inside, "0 0 -1"))));
  const int inner = mesh.Where([](const Vector3& p) {
    return std::abs(p[0] - 3.0) < 1e-12 && p[1] == 0.0 && p[2] == 0.0;
  })[0];
  const double lame = (1 + nu) * 9 / (1000 * 72.0) * ((1 - 2 * nu) * 3 + 27);
  return Displacement(*project, inner, 1) / lame;
}

TEST(ThickTube, TenNodedElementsGiveLamesSolution) {
  EXPECT_NEAR(TubeRatio(0.3, 10, 16, "Solver Sparse 1e-10 1e-8 20000"), 1.0, 5e-3);
}

TEST(ThickTube, CoarserMeshIsStifferAndBothSolversAgree) {
  const double direct = TubeRatio(0.3, 5, 8, "Solver SkyLine");
  EXPECT_GT(direct, 0.993);
  EXPECT_LT(direct, 0.997);
  EXPECT_NEAR(TubeRatio(0.3, 5, 8, "Solver Sparse 1e-10 1e-8 20000"), direct, 1e-7);
  EXPECT_NEAR(TubeRatio(0.3, 5, 8, "Solver Automatic"), direct, 1e-7);
}

TEST(ThickTube, NearlyIncompressibleMaterialIsStiffer) {
  double last = 1.01;
  for (const double nu : {0.3, 0.49, 0.499}) {
    const double ratio = TubeRatio(nu, 5, 8, "Solver SkyLine");
    EXPECT_LT(ratio, last) << nu;
    EXPECT_GT(ratio, 0.3) << nu;
    last = ratio;
  }
}

// Straight cantilever 6 x 0.2 x 0.1, E = 1e7, nu = 0.3, unit loads at the tip (MacNeal and Harder):
// extension 3e-5, in-plane 0.1081, out-of-plane 0.4321.
std::array<double, 3> CantileverRatios(int nx, bool quadratic) {
  const TestMesh mesh = Box(nx, 2, 1, quadratic, [](double a, double b, double c) {
    return Vector3{6 * a, 0.2 * b, 0.1 * c};
  });
  const auto tip = [](const Vector3& p) { return p[0] == 6.0; };
  const double exact[3] = {3e-5, 0.1081, 0.4321};
  std::array<double, 3> ratios{};
  for (int d = 0; d < 3; ++d) {
    const std::string load = Print("%d %d %d", 50 * (d == 0), 50 * (d == 1), 50 * (d == 2));
    const auto project =
        RunDeck(DeckOf(mesh, "Solver SkyLine",
                       "materials\n1 E=1e7 nu=0.3\nend materials\n" +
                           Clamp(mesh.Where([](const Vector3& p) { return p[0] == 0.0; }), "111") +
                           Section("face_loads", FaceLoads(mesh, tip, load.c_str()))));
    double mean = 0.0;
    const std::vector<int> numbers = mesh.Where(tip);
    for (const int n : numbers) mean += Displacement(*project, n, d + 1);
    ratios[d] = mean / double(numbers.size()) / exact[d];
  }
  return ratios;
}

TEST(SolidCantilever, TenNodedElementsFollowBeamTheory) {
  for (const double ratio : CantileverRatios(12, true)) EXPECT_NEAR(ratio, 1.0, 2e-2);
  const auto fine = CantileverRatios(24, true);
  EXPECT_NEAR(fine[0], 0.9982, 1e-3);
  EXPECT_NEAR(fine[1], 0.9935, 1e-3);
  EXPECT_NEAR(fine[2], 0.9899, 1e-3);
}

TEST(SolidCantilever, FourNodedElementsAreFarTooStiffInBending) {
  const auto ratios = CantileverRatios(24, false);
  EXPECT_GT(ratios[0], 0.98);
  EXPECT_NEAR(ratios[1], 0.29, 0.02);
  EXPECT_NEAR(ratios[2], 0.09, 0.01);
}

// NAFEMS LE10 (Standard Benchmarks): plate between ellipses of semi-axes 2 x 1 and 3.25 x 2.75,
// thickness 0.6, pressure 1 MPa on top; sigma_yy at (2, 0, 0.6) is -5.38 MPa.
TEST(ThickPlate, StressAtTheInnerEllipseIsNearThePublishedOne) {
  const TestMesh mesh = Box(6, 8, 2, true, [](double a, double b, double c) {
    const double angle = kPi / 2 * b, rx = 2 + 1.25 * a, ry = 1 + 1.75 * a;
    return Vector3{b == 1.0 ? 0.0 : rx * std::cos(angle), ry * std::sin(angle), 0.6 * c};
  });
  std::string supports;
  const auto outer = [](const Vector3& p) {
    return std::abs(p[0] * p[0] / 10.5625 + p[1] * p[1] / 7.5625 - 1.0) < 1e-9;
  };
  for (std::size_t i = 0; i < mesh.nodes.size(); ++i) {
    const Vector3& p = mesh.nodes[i];
    const bool edge = outer(p);
    supports += Print("%d %d%d%d 0 0 0\n", int(i) + 1, p[0] == 0.0 || edge, p[1] == 0.0 || edge,
                      edge && std::abs(p[2] - 0.3) < 1e-9);
  }
  const auto project = RunDeck(DeckOf(
      mesh, "Solver Sparse 1e-10 1e-8 20000",
      "materials\n1 E=210e9 nu=0.3\nend materials\n" + Section("constraints", supports) +
          Section("face_loads",
                  FaceLoads(
                      mesh, [](const Vector3& p) { return p[2] > 0.6 - 1e-9; }, "0 0 -1e6"))));
  const int corner = mesh.Where([](const Vector3& p) {
    return std::abs(p[0] - 2.0) < 1e-12 && p[1] == 0.0 && std::abs(p[2] - 0.6) < 1e-12;
  })[0];
  const double sigma =
      project->results.nodalStresses(6 * (NodeOf(*project, corner).number - 1) + 2);
  EXPECT_NEAR(sigma / -5.38e6, 1.0, 3e-2);
}

}  // namespace

}  // namespace kestol
