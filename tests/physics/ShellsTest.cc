// Shell triangles of 3 and 6 nodes against patch tests, series and published values.
#include <cmath>

#include "tests/support/ElementStiffness.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/MeshDeck.h"
#include "tests/support/RunDeck.h"

namespace kestol {

namespace {

constexpr double kPi = 3.141592653589793;

/// Six displacements prescribed at the picked nodes.
std::string PrescribeField(const TestMesh& mesh, const std::vector<int>& numbers,
                           const std::function<std::array<double, 6>(const Vector3&)>& field) {
  std::string lines;
  for (const int n : numbers) {
    const auto u = field(mesh.At(n));
    lines += Print("%d 111111 %.17g %.17g %.17g %.17g %.17g %.17g\n", n, u[0], u[1], u[2], u[3],
                   u[4], u[5]);
  }
  return Section("constraints", lines);
}

/// Zero values for the codes that `codesOf` gives each node; "000000" is left out.
std::string Supports(const TestMesh& mesh,
                     const std::function<std::string(const Vector3&)>& codesOf) {
  std::string lines;
  for (std::size_t i = 0; i < mesh.nodes.size(); ++i) {
    const std::string codes = codesOf(mesh.nodes[i]);
    if (codes != "000000") lines += Print("%d %s 0 0 0 0 0 0\n", int(i) + 1, codes.c_str());
  }
  return Section("constraints", lines);
}

/// "1" where any of the codes has one.
std::string Or(std::string a, const std::string& b) {
  for (std::size_t i = 0; i < a.size(); ++i)
    if (b[i] == '1') a[i] = '1';
  return a;
}

std::string OnAllElements(const TestMesh& mesh, const char* components) {
  std::string lines;
  for (std::size_t e = 1; e <= mesh.elems.size(); ++e)
    lines += Print("%d %s\n", int(e), components);
  return lines;
}

/// Load lines for the element edges whose both corners `onEdge` picks.
std::string EdgeLoads(const TestMesh& mesh, const std::function<bool(const Vector3&)>& onEdge,
                      const std::function<Vector3(const Vector3&)>& load) {
  std::string lines;
  for (std::size_t e = 0; e < mesh.elems.size(); ++e)
    for (int f = 0; f < 3; ++f) {
      const Vector3 &a = mesh.At(mesh.elems[e][f]), &b = mesh.At(mesh.elems[e][(f + 1) % 3]);
      if (!onEdge(a) || !onEdge(b)) continue;
      const Vector3 q = load(Times(Plus(a, b), 0.5));
      lines += Print("%d %d %.15g %.15g %.15g\n", int(e) + 1, f, q[0], q[1], q[2]);
    }
  return lines;
}

// --- patch tests (R. H. MacNeal, R. L. Harder, 1985) ---------------------------------------------

/// The plate 0.24 x 0.12 with four inner nodes: five quadrilaterals, each cut in two.
TestMesh Patch(bool sixNodes) {
  TestMesh mesh{
      "Triangle",
      {{0, 0, 0},
        {.24, 0, 0},
        {.24, .12, 0},
        {0, .12, 0},
        {.04, .02, 0},
        {.18, .03, 0},
        {.16, .08, 0},
        {.08, .08, 0}},
      { {1, 2, 6},
        {1, 6, 5},
        {2, 3, 7},
        {2, 7, 6},
        {3, 4, 8},
        {3, 8, 7},
        {4, 1, 5},
        {4, 5, 8},
        {5, 6, 7},
        {5, 7, 8}}
  };
  if (sixNodes) ToSix(mesh);
  return mesh;
}

bool OnPatchBoundary(const Vector3& p) {
  return p[0] == 0 || p[0] == .24 || p[1] == 0 || p[1] == .12;
}

const char* const kPatchPlate = "materials\n1 E=1e6 nu=0.25 G=4e5 t=0.001\nend materials\n";

class Patches : public testing::TestWithParam<bool> {};
INSTANTIATE_TEST_SUITE_P(ThreeAndSixNodes, Patches, testing::Bool());

TEST_P(Patches, LinearMembraneFieldGivesUniformForces) {
  const TestMesh mesh = Patch(GetParam());
  const auto field = [](const Vector3& p) {
    return std::array<double, 6>{1e-3 * (p[0] + p[1] / 2), 1e-3 * (p[1] + p[0] / 2), 0, 0, 0, 0};
  };
  const auto project = RunDeck(
      DeckOf(mesh, "", kPatchPlate + PrescribeField(mesh, mesh.Where(OnPatchBoundary), field)));
  const ReaVecT& values = project->results.meshes[0].local;
  ASSERT_EQ(values.n, 10 * 8 * (GetParam() ? 3 : 1));
  const double expected[8] = {1.333333333333333, 1.333333333333333, 0.4, 0, 0, 0, 0, 0};
  for (int i = 0; i < values.n; ++i) EXPECT_NEAR(values.data[i], expected[i % 8], 1e-9) << i;
}

std::array<double, 6> ConstantCurvature(const Vector3& p) {
  const double x = p[0], y = p[1];
  return {0, 0, 1e-3 * (x * x + x * y + y * y) / 2, 1e-3 * (y + x / 2), -1e-3 * (x + y / 2), 0};
}

// M = -D w'': what is bent upwards at its ends is compressed on the side of local z.
constexpr double kPatchMoment = -1.1111111111111e-7, kPatchTwist = -3.3333333333333e-8;

TEST(ShellPatch, SixNodedElementsBendWithConstantCurvature) {
  const TestMesh mesh = Patch(true);
  const auto project = RunDeck(
      DeckOf(mesh, "",
             kPatchPlate + PrescribeField(mesh, mesh.Where(OnPatchBoundary), ConstantCurvature)));
  const ReaVecT& values = project->results.meshes[0].local;
  for (int i = 0; i < values.n; i += 8) {
    EXPECT_NEAR(values.data[i + 3], kPatchMoment, 1.2e-13);
    EXPECT_NEAR(values.data[i + 4], kPatchMoment, 1.2e-13);
    EXPECT_NEAR(values.data[i + 5], kPatchTwist, 4e-14);
    EXPECT_NEAR(values.data[i + 6], 0.0, 1e-11);
    EXPECT_NEAR(values.data[i + 7], 0.0, 1e-11);
  }
}

TEST(ShellPatch, ThreeNodedElementsBendRightWhereEveryRotationIsGivenButWithShear) {
  const TestMesh mesh = Patch(false);
  const auto everywhere = [](const Vector3&) { return true; };
  const auto project = RunDeck(DeckOf(
      mesh, "", kPatchPlate + PrescribeField(mesh, mesh.Where(everywhere), ConstantCurvature)));
  const ReaVecT& values = project->results.meshes[0].local;
  ASSERT_EQ(values.n, 8 * 10);
  double largestShear = 0.0;
  for (int e = 0; e < 10; ++e) {
    const double* const v = values.begin() + 8 * e;
    EXPECT_NEAR(v[3], kPatchMoment, 1.2e-13) << e;
    EXPECT_NEAR(v[4], kPatchMoment, 1.2e-13) << e;
    EXPECT_NEAR(v[5], kPatchTwist, 4e-14) << e;
    // The slope of the plane through the corners less the slope at the centroid, times 5/6 G t.
    const Vector3 &a = mesh.At(mesh.elems[e][0]), &b = mesh.At(mesh.elems[e][1]),
                  &c = mesh.At(mesh.elems[e][2]);
    const auto lifted = [](const Vector3& p) {
      return Vector3{p[0], p[1], ConstantCurvature(p)[2]};
    };
    const Vector3 normal = Cross(Minus(lifted(b), lifted(a)), Minus(lifted(c), lifted(a)));
    const auto atCentroid = ConstantCurvature(Times(Plus(a, Plus(b, c)), 1.0 / 3.0));
    const double kStiffness = 5.0 / 6.0 * 4e5 * 1e-3;
    const double Qx = kStiffness * (-normal[0] / normal[2] + atCentroid[4]);
    const double Qy = kStiffness * (-normal[1] / normal[2] - atCentroid[3]);
    EXPECT_NEAR(v[6], Qx, 1e-12) << e;
    EXPECT_NEAR(v[7], Qy, 1e-12) << e;
    largestShear = std::max(largestShear, std::abs(Qx));
  }
  EXPECT_GT(largestShear, 1e-4);  // of a bending without shear
}

TEST(ShellPatch, ThreeNodedElementsInsideDoNotFindTheConstantCurvature) {
  const TestMesh mesh = Patch(false);
  const auto project = RunDeck(
      DeckOf(mesh, "",
             kPatchPlate + PrescribeField(mesh, mesh.Where(OnPatchBoundary), ConstantCurvature)));
  double worst = 0.0;
  for (int i = 3; i < project->results.meshes[0].local.n; i += 8)
    worst =
        std::max(worst, std::abs(project->results.meshes[0].local.data[i] / kPatchMoment - 1.0));
  EXPECT_GT(worst, 0.5);
}

/// Moment and shear along x in the middle of a cantilever 4 x 0.5, clamped at x = 0, under 10
/// downwards at its tip: by statics 40 and -20 per length. With `below` the elements are listed
/// backwards, so that local z points down.
std::array<double, 2> MiddleOfCantilever(bool sixNodes, bool below) {
  TestMesh mesh = Grid(32, 4, Cut::Right, [](double x, double y, double) {
    return Vector3{4 * x, 0.5 * y, 0};
  });
  if (below)
    for (auto& elem : mesh.elems) std::swap(elem[1], elem[2]);
  const auto clamp = [](const Vector3& p) { return std::string(p[0] == 0 ? "111111" : "000000"); };
  const auto tip = [](const Vector3& p) { return p[0] == 4; };
  const auto load = [](const Vector3&) { return Vector3{0, 0, -20}; };
  const auto project = RunDeck(DeckOf(mesh, sixNodes ? "ConvertTo6Nodes" : "",
                                      "materials\n1 E=1e6 nu=0 G=5e5 t=0.5\nend materials\n" +
                                          Supports(mesh, clamp) +
                                          Section("face_loads", EdgeLoads(mesh, tip, load))));
  // The mean over the cells on either side of x = 2.
  const int points = sixNodes ? 3 : 1;
  std::array<double, 2> mean{};
  int count = 0;
  for (std::size_t e = 0; e < mesh.elems.size(); ++e) {
    const Vector3 sum =
        Plus(mesh.At(mesh.elems[e][0]), Plus(mesh.At(mesh.elems[e][1]), mesh.At(mesh.elems[e][2])));
    if (std::abs(sum[0] / 3 - 2) > 0.125) continue;
    for (int p = 0; p < points; ++p, ++count) {
      const double* const v = project->results.meshes[0].local.begin() + 8 * (points * e + p);
      mean[0] += v[3];
      mean[1] += v[6];
    }
  }
  return {mean[0] / count, mean[1] / count};
}

// By equilibrium alone: the load bends the upper side into tension, where a moment is positive when
// local z points up; the shear is the slope of the moment along local x, which turns with local z.
TEST_P(Patches, SignsOfMomentAndShearFollowFromStatics) {
  const auto [moment, shear] = MiddleOfCantilever(GetParam(), false);
  EXPECT_NEAR(moment, 40.0, GetParam() ? 1e-6 : 0.4);
  EXPECT_NEAR(shear, -20.0, 1e-6);
  const auto [momentBelow, shearBelow] = MiddleOfCantilever(GetParam(), true);
  EXPECT_NEAR(momentBelow, -40.0, GetParam() ? 1e-6 : 0.4);
  EXPECT_NEAR(shearBelow, -20.0, 1e-6);
}

// --- element properties -------------------------------------------------------------------------

const char* const kPlate = "materials\n1 E=1e6 nu=0.25 G=4e5 t=0.1\nend materials\n";

TestMesh OneTriangle(bool sixNodes, const PointMap& map) {
  TestMesh mesh{
      "Triangle", {{0, 0, 0},      {2, 0.3, 0}, {0.4, 1.5, 0}},
       {{1, 2, 3}}
  };
  for (Vector3& p : mesh.nodes) p = map(p[0], p[1], p[2]);
  if (sixNodes) ToSix(mesh);
  return mesh;
}

Vector3 Tilted(double x, double y, double z) {
  const double c = std::cos(0.6), s = std::sin(0.6);
  return {c * x - s * z + 1.0, y * 0.8 - 0.6 * (s * x + c * z), 0.6 * y + 0.8 * (s * x + c * z)};
}

TEST(ShellElementStiffness, SixNodesHaveSixRigidAndSixDrillingModes) {
  EXPECT_EQ(ZeroModes(StiffnessOfDeck(DeckOf(OneTriangle(true, Tilted), "", kPlate))), 12);
}

TEST(ShellElementStiffness, ThreeNodesHaveOneShearModeMore) {
  EXPECT_EQ(ZeroModes(StiffnessOfDeck(DeckOf(OneTriangle(false, Tilted), "", kPlate))), 10);
}

TEST_P(Patches, RigidMotionsGiveNoForces) {
  const TestMesh mesh = OneTriangle(GetParam(), Tilted);
  const Matriu K = StiffnessOfDeck(DeckOf(mesh, "", kPlate));
  for (int mode = 0; mode < 6; ++mode) {
    std::vector<double> u(K.nrows, 0.0);
    Vector3 axis{};
    if (mode >= 3) axis[mode - 3] = 1.0;
    for (std::size_t i = 0; i < mesh.nodes.size(); ++i) {
      const Vector3 turned = Cross(axis, mesh.nodes[i]);
      for (int d = 0; d < 3; ++d) {
        u[6 * i + d] = mode < 3 ? double(d == mode) : turned[d];
        u[6 * i + 3 + d] = axis[d];
      }
    }
    for (int r = 1; r <= K.nrows; ++r) {
      double force = 0.0;
      for (int c = 1; c <= K.ncols; ++c) force += K(r, c) * u[c - 1];
      EXPECT_NEAR(force, 0.0, 1e-7) << "mode " << mode << " row " << r;
    }
  }
}

// --- plates -------------------------------------------------------------------------------------

/// One quarter of a simply supported (hard) or clamped rectangular plate, corner at the origin,
/// symmetry at x = a/2 and y = b/2; deflection of the centre, downwards positive.
double QuarterPlate(double a, double b, int cells, bool sixNodes, bool clamped,
                    const std::string& material, double q, double centreLoad) {
  const TestMesh mesh = Grid(cells, cells, Cut::Cross, [=](double x, double y, double) {
    return Vector3{a / 2 * x, b / 2 * y, 0};
  });
  const auto codes = [=](const Vector3& p) {
    std::string all = "110001";  // the membrane sleeps
    if (p[0] == 0) all = Or(all, clamped ? "001111" : "001100");
    if (p[1] == 0) all = Or(all, clamped ? "001111" : "001010");
    if (p[0] == a / 2) all = Or(all, "000010");
    if (p[1] == b / 2) all = Or(all, "000100");
    return all;
  };
  const int centre =
      mesh.Where([=](const Vector3& p) { return p[0] == a / 2 && p[1] == b / 2; })[0];
  std::string loads =
      Section("global_pressure_loads", OnAllElements(mesh, Print("0 0 %.15g", -q).c_str()));
  if (centreLoad != 0)
    loads = Section("nodal_point_loads", Print("%d 0 0 %.15g 0 0 0\n", centre, -centreLoad / 4));
  const auto project = RunDeck(
      DeckOf(mesh, sixNodes ? "ConvertTo6Nodes" : "",
             "materials\n1 " + material + "\nend materials\n" + Supports(mesh, codes) + loads));
  return -Displacement(*project, centre, 3);
}

// Navier's series with transverse shear (S. Timoshenko, S. Woinowsky-Krieger, Theory of Plates and
// Shells, for the thin part): 46.6594 for t = 0.1, 44383.9 for t = 0.01 (E = q = a = 1, nu = 0.3).
TEST(SimplySupportedPlate, SixNodedElementsGiveTheSeries) {
  const auto material = [](double t) { return Print("E=1 nu=0.3 G=0.384615384615385 t=%g", t); };
  EXPECT_NEAR(QuarterPlate(1, 1, 8, true, false, material(0.1), 1, 0) / 46.6594, 1.0, 3e-3);
  EXPECT_NEAR(QuarterPlate(1, 1, 8, true, false, material(0.01), 1, 0) / 44383.9, 1.0, 3e-3);
}

// The square plate of 4 x 4 cells, each cut in two, simply supported along its four sides: the
// deflection of its centre against the series for t = 0.01.
double WholePlate(bool diagonalsCutCorners) {
  TestMesh mesh = Grid(4, 4, Cut::Right, Same);
  for (std::size_t e = 0; e < mesh.elems.size(); e += 2) {
    const int a = mesh.elems[e][0], b = mesh.elems[e][1], c = mesh.elems[e][2],
              d = mesh.elems[e + 1][2];
    const Vector3& corner = mesh.At(a);
    const bool alongTheMainDiagonal = (corner[0] < 0.5) == (corner[1] < 0.5);
    if (alongTheMainDiagonal != diagonalsCutCorners) continue;
    mesh.elems[e] = {a, b, d};
    mesh.elems[e + 1] = {b, c, d};
  }
  const auto codes = [](const Vector3& p) {
    const bool onEdge = p[0] == 0 || p[0] == 1 || p[1] == 0 || p[1] == 1;
    return std::string(onEdge ? "111001" : "110001");
  };
  const auto project = RunDeck(DeckOf(
      mesh, "ConvertTo6Nodes",
      "materials\n1 E=1 nu=0.3 G=0.384615384615385 t=0.01\nend materials\n" +
          Supports(mesh, codes) + Section("global_pressure_loads", OnAllElements(mesh, "0 0 -1"))));
  return -Displacement(*project, 13, 3) / 44383.9;
}

TEST(SimplySupportedPlate, DiagonalsThatCutItsCornersBecomeSupportsOfTheConvertedPlate) {
  EXPECT_NEAR(WholePlate(false), 0.94, 0.01);
  EXPECT_NEAR(WholePlate(true), 0.44, 0.01);
}

TEST(SimplySupportedPlate, ThreeNodedElementsNeedAThickPlateAndAFineMesh) {
  const double ratio =
      QuarterPlate(1, 1, 16, false, false, "E=1 nu=0.3 G=0.384615384615385 t=0.1", 1, 0) / 46.6594;
  EXPECT_NEAR(ratio, 0.9972, 3e-3);
}

// MacNeal and Harder: square plate of side 2, t = 1e-4, E = 1.7472e7, nu = 0.3.
TEST(ThinPlate, SixNodedElementsGiveThePublishedDeflections) {
  const std::string material = "E=1.7472e7 nu=0.3 G=6.72e6 t=1e-4";
  EXPECT_NEAR(QuarterPlate(2, 2, 8, true, false, material, 1e-4, 0) / 4.062, 1.0, 2e-2);
  EXPECT_NEAR(QuarterPlate(2, 2, 8, true, false, material, 0, 4e-4) / 11.60, 1.0, 2e-2);
  EXPECT_NEAR(QuarterPlate(2, 2, 8, true, true, material, 1e-4, 0) / 1.26, 1.0, 2e-2);
  EXPECT_NEAR(QuarterPlate(2, 2, 8, true, true, material, 0, 4e-4) / 5.60, 1.0, 2e-2);
}

// --- membranes ----------------------------------------------------------------------------------

// NAFEMS LE1 (Standard Benchmarks): quarter of the ring between the ellipses 2 x 1 and 3.25 x 2.75,
// t = 0.1, outward pressure 10 MPa on the outer edge; sigma_yy at (2, 0) is 92.7 MPa.
double EllipticMembrane(int cells, bool sixNodes) {
  const auto map = [](double a, double b, double) {
    const double angle = kPi / 2 * b, rx = 2 + 1.25 * a, ry = 1 + 1.75 * a;
    return Vector3{b == 1.0 ? 0.0 : rx * std::cos(angle), ry * std::sin(angle), 0};
  };
  TestMesh mesh = Grid(cells, cells, Cut::Right, [](double x, double y, double z) {
    return Vector3{x, y, z};
  });
  if (sixNodes) ToSix(mesh);
  for (Vector3& p : mesh.nodes) p = map(p[0], p[1], 0);
  // Mid-sides stay on the chords, as a conversion would put them.
  if (sixNodes)
    for (auto& elem : mesh.elems)
      for (int e = 0; e < 3; ++e)
        mesh.nodes[elem[e + 3] - 1] =
            Times(Plus(mesh.At(elem[e]), mesh.At(elem[(e + 1) % 3])), 0.5);
  const auto codes = [](const Vector3& p) {
    std::string all = "001111";
    if (p[0] == 0) all[0] = '1';
    if (p[1] == 0) all[1] = '1';
    return all;
  };
  const auto outer = [](const Vector3& p) {
    return std::abs(p[0] * p[0] / 10.5625 + p[1] * p[1] / 7.5625 - 1.0) < 1e-9;
  };
  // 10 MPa on a thickness of 0.1, along the normal of each chord.
  std::string lines;
  for (std::size_t e = 0; e < mesh.elems.size(); ++e)
    for (int f = 0; f < 3; ++f) {
      const Vector3 &a = mesh.At(mesh.elems[e][f]), &b = mesh.At(mesh.elems[e][(f + 1) % 3]);
      if (!outer(a) || !outer(b)) continue;
      const Vector3 n = Unit(Cross(Minus(b, a), {0, 0, 1}));
      lines += Print("%d %d %.15g %.15g 0\n", int(e) + 1, f, 1e6 * n[0], 1e6 * n[1]);
    }
  const auto project =
      RunDeck(DeckOf(mesh, "Solver SkyLine",
                     "materials\n1 E=210e9 nu=0.3 G=80.76923e9 t=0.1\nend materials\n" +
                         Supports(mesh, codes) + Section("face_loads", lines)));
  // The mean of the elements at the corner (2, 0), three points extrapolated to the corner first.
  double sum = 0.0;
  int count = 0;
  const int points = sixNodes ? 3 : 1;
  for (std::size_t e = 0; e < mesh.elems.size(); ++e)
    for (int c = 0; c < 3; ++c) {
      const Vector3& p = mesh.At(mesh.elems[e][c]);
      if (std::abs(p[0] - 2) > 1e-12 || p[1] != 0) continue;
      const double* v = project->results.meshes[0].local.begin() + 8 * points * e + 1;
      // corner c from the edge mid-points c (c, c+1) and c+2 (c+2, c)
      sum += points == 1 ? v[0] : v[8 * c] + v[8 * ((c + 2) % 3)] - v[8 * ((c + 1) % 3)];
      ++count;
    }
  return sum / count / 0.1 / 1e6;
}

TEST(EllipticMembrane, SixNodedElementsGiveThePublishedStress) {
  EXPECT_NEAR(EllipticMembrane(16, true) / 92.7, 1.0, 2e-2);
}

TEST(EllipticMembrane, CoarseOrLinearMeshesAreBelow) {
  EXPECT_NEAR(EllipticMembrane(8, true), 88.47, 1.5);
  EXPECT_NEAR(EllipticMembrane(32, false), 85.25, 1.5);
}

// Straight cantilever 6 x 0.2 x 0.1, E = 1e7, nu = 0.3 (MacNeal and Harder): extension 3e-5,
// in-plane 0.1081, out-of-plane 0.4321 for unit loads at the tip.
TEST(ShellCantilever, SixNodedElementsFollowBeamTheory) {
  const TestMesh mesh = Grid(12, 2, Cut::Right, [](double x, double y, double) {
    return Vector3{6 * x, 0.2 * y, 0};
  });
  const auto clamp = [](const Vector3& p) { return std::string(p[0] == 0 ? "111111" : "000000"); };
  const double exact[3] = {3e-5, 0.1081, 0.4321};
  const double expected[3] = {.9987, .9947, .9932};
  for (int d = 0; d < 3; ++d) {
    const auto load = [&](const Vector3&) {
      Vector3 q{};
      q[d] = 5.0;
      return q;
    };
    const auto tip = [](const Vector3& p) { return p[0] == 6.0; };
    const auto project = RunDeck(
        DeckOf(mesh, "ConvertTo6Nodes",
               "materials\n1 E=1e7 nu=0.3 G=3.84615384615385e6 t=0.1\nend materials\n" +
                   Supports(mesh, clamp) + Section("face_loads", EdgeLoads(mesh, tip, load))));
    double mean = 0.0;
    for (const int n : mesh.Where(tip)) mean += Displacement(*project, n, d + 1) / 3;
    EXPECT_NEAR(mean / exact[d], 1.0, 1e-2) << d;
    EXPECT_NEAR(mean / exact[d], expected[d], 2e-3) << d;
  }
}

// --- curved shells ------------------------------------------------------------------------------

// NAFEMS LE2, case 2: cylinder sector R = 1, 30 degrees, L = 0.5, t = 0.01; outward pressure
// 0.6 MPa and 60 MPa tension on the straight free edge; hoop membrane stress 60 MPa.
TEST(CylinderPatch, HoopForceIsUniform) {
  for (const bool six : {false, true}) {
    const TestMesh mesh = Grid(12, 8, Cut::Right, [](double x, double y, double) {
      const double angle = kPi / 6 * x;
      return Vector3{std::cos(angle), std::sin(angle), 0.5 * y};
    });
    const auto codes = [](const Vector3& p) {
      if (p[1] == 0) return std::string("111111");
      // symmetry of the curved edges: axial displacement and the rotations about x and y
      return std::string(p[2] == 0 || p[2] == 0.5 ? "001110" : "000000");
    };
    const auto edge = [](const Vector3& p) {
      return std::abs(std::atan2(p[1], p[0]) - kPi / 6) < 1e-9;
    };
    // Along the tangent of the edge: with the pressure on half a facet it balances the chord.
    const auto tension = [](const Vector3&) {
      return Vector3{-6e5 * std::sin(kPi / 6), 6e5 * std::cos(kPi / 6), 0};
    };
    // local z points along the right-hand normal of (around, axial): outwards
    const auto project = RunDeck(DeckOf(
        mesh, std::string("CoplanarityAngle 0.1\n") + (six ? "ConvertTo6Nodes" : ""),
        "materials\n1 E=210e9 nu=0.3 G=80.76923e9 t=0.01\nend materials\n" + Supports(mesh, codes) +
            Section("local_pressure_loads", OnAllElements(mesh, "0 0 6e5")) +
            Section("face_loads", EdgeLoads(mesh, edge, tension))));
    // Hoop force of an element in the middle; the local x of such a shell is horizontal.
    const int points = six ? 3 : 1;
    const double N = project->results.meshes[0].local.data[8 * points * (2 * (12 * 4 + 6))];
    EXPECT_NEAR(N / 0.01 / 60e6, 1.0, 2e-3) << six;
  }
}

// Scordelis-Lo roof: radius 25, length 50, 80 degrees, t = 0.25, E = 4.32e8, nu = 0, 90 per area;
// the middle of the free edge goes down by 0.3024 (deep shell theory 0.3086).
TEST(CylindricalRoof, ConvertedQuarterIsWithinFivePerCent) {
  const TestMesh mesh = Grid(8, 8, Cut::Right, [](double x, double y, double) {
    const double angle = kPi * 40 / 180 * x;
    return Vector3{25 * std::sin(angle), 25 * y, 25 * std::cos(angle)};
  });
  const auto codes = [](const Vector3& p) {
    std::string all = "000000";
    if (p[1] == 0) all = Or(all, "101000");
    if (p[1] == 25) all = Or(all, "010101");
    if (p[0] == 0) all = Or(all, "100011");
    return all;
  };
  const auto project =
      RunDeck(DeckOf(mesh, "ConvertTo6Nodes\nCoplanarityAngle 0.2\nGravityDirection 0 0 -1",
                     "materials\n1 E=4.32e8 nu=0 G=2.16e8 t=0.25 Weight=360\nend materials\n" +
                         Supports(mesh, codes)));
  const int edge = 81;
  EXPECT_NEAR(-Displacement(*project, edge, 3) / 0.3024, 1.0, 5e-2);
}

}  // namespace

}  // namespace kestol
