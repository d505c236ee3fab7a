// Shell triangles of 3 and 6 nodes against series and published values.
#include <cmath>

#include "tests/support/ExpectFatal.h"
#include "tests/support/MeshDeck.h"
#include "tests/support/RunDeck.h"
#include "tests/support/ShellDecks.h"

namespace kestol {

namespace {

constexpr double kPi = 3.141592653589793;

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
