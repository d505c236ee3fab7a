// Nodal forces of own weight, surface loads and edge loads of shells, by hand.
#include <cmath>

#include "tests/support/ExpectFatal.h"
#include "tests/support/LoadVector.h"
#include "tests/support/MeshDeck.h"

namespace kestol {

namespace {

constexpr Vector3 kX = {0, 1, 0}, kY = {-0.8, 0, 0.6}, kZ = {0.6, 0, 0.8};  // local axes

/// A point of the plane of the element by its local coordinates.
Vector3 Place(double x, double y) {
  return Plus({1, 2, 3}, Plus(Times(kX, x), Times(kY, y)));
}

/// A right triangle with sides 3 (edge 0), 5 (edge 1) and 4 (edge 2) in a plane that leans: area 6.
TestMesh Leaning(bool six) {
  TestMesh mesh{
      "Triangle", {Place(0,  0), Place(3, 0), Place(0, 4)},
       {{1, 2, 3}}
  };
  if (six) ToSix(mesh);
  return mesh;
}

const char* const kMaterial = "E=1e6 nu=0.25 G=4e5 t=0.1";

std::string Deck(const TestMesh& mesh, const std::string& sections,
                 const std::string& material = kMaterial, const std::string& keywords = "") {
  return DeckOf(mesh, keywords, "materials\n1 " + material + "\nend materials\n" + sections);
}

std::vector<double> LoadsOfLeaning(bool six, const std::string& keyword, const std::string& line) {
  return LoadsOf(Deck(Leaning(six), Section(keyword, line + "\n")));
}

/// The load vector of one element with the same force and moment on each of its three carriers.
std::vector<double> OnCarriers(bool six, const Vector3& force, const Vector3& moment = {}) {
  std::vector<double> f(six ? 36 : 18, 0.0);
  for (int k = six ? 3 : 0; k < (six ? 6 : 3); ++k)
    for (int d = 0; d < 3; ++d) {
      f[6 * k + d] = force[d];
      f[6 * k + 3 + d] = moment[d];
    }
  return f;
}

testing::Matcher<std::vector<double>> Is(const std::vector<double>& expected) {
  return testing::Pointwise(testing::DoubleNear(1e-12), expected);
}

// Three nodes: a third of the area on each corner. Six nodes: a third on each mid-side.
class ShellLoads : public testing::TestWithParam<bool> {};
INSTANTIATE_TEST_SUITE_P(ThreeAndSixNodes, ShellLoads, testing::Bool());

TEST_P(ShellLoads, LocalPressureActsAlongTheLocalAxes) {
  const auto load = [](const char* q) {
    return LoadsOfLeaning(GetParam(), "local_pressure_loads", q);
  };
  EXPECT_THAT(load("1 7 0 0"), Is(OnCarriers(GetParam(), Times(kX, 14))));
  EXPECT_THAT(load("1 0 7 0"), Is(OnCarriers(GetParam(), Times(kY, 14))));
  EXPECT_THAT(load("1 0 0 7"), Is(OnCarriers(GetParam(), Times(kZ, 14))));
}

TEST_P(ShellLoads, FourthComponentIsAMomentAboutLocalXPerArea) {
  EXPECT_THAT(LoadsOfLeaning(GetParam(), "local_pressure_loads", "1 0 0 0 5"),
              Is(OnCarriers(GetParam(), {}, Times(kX, 10))));
  EXPECT_THAT(LoadsOfLeaning(GetParam(), "local_pressure_loads", "1 0 0 7 -5"),
              Is(OnCarriers(GetParam(), Times(kZ, 14), Times(kX, -10))));
}

TEST_P(ShellLoads, LocalAxesAreThoseOfTheMaterial) {
  // A quarter turn about z: local x is global y.
  TestMesh mesh{
      "Triangle", {{0, 0, 0},  {3, 0, 0}, {0, 4, 0}},
       {{1, 2, 3}}
  };
  if (GetParam()) ToSix(mesh);
  EXPECT_THAT(LoadsOf(Deck(mesh, Section("local_pressure_loads", "1 7 0 0 5\n"),
                           std::string(kMaterial) + " Euler3=1.5707963267948966")),
              Is(OnCarriers(GetParam(), {0, 14, 0}, {0, 10, 0})));
}

TEST_P(ShellLoads, GlobalPressureIsPerAreaOfTheSurface) {
  EXPECT_THAT(LoadsOfLeaning(GetParam(), "global_pressure_loads", "1 1 -2 3"),
              Is(OnCarriers(GetParam(), {2, -4, 6})));
}

TEST_P(ShellLoads, FaceLoadWithoutEdgeIsAGlobalPressure) {
  for (const char* const line : {"1 1 -2 3", "1 -1 1 -2 3"})
    EXPECT_THAT(LoadsOfLeaning(GetParam(), "face_loads", line),
                Is(OnCarriers(GetParam(), {2, -4, 6})));
}

TEST_P(ShellLoads, ProjectedPressureIsReducedByTheSlopeOnEitherSide) {
  const auto load = [](const char* q) {
    return LoadsOfLeaning(GetParam(), "global_projected_pressure_loads", q);
  };
  EXPECT_THAT(load("1 0 0 -10"), Is(OnCarriers(GetParam(), {0, 0, -16})));
  EXPECT_THAT(load("1 0 0 10"), Is(OnCarriers(GetParam(), {0, 0, 16})));
  EXPECT_THAT(load("1 -10 0 0"), Is(OnCarriers(GetParam(), {-12, 0, 0})));
  EXPECT_THAT(load("1 0 10 0"), Is(OnCarriers(GetParam(), {})));  // along the surface
  EXPECT_THAT(load("1 0 0 0"), Is(OnCarriers(GetParam(), {})));   // no direction
}

TEST_P(ShellLoads, ProjectedPressureWithoutDirectionIsNone) {
  const auto load = [](const char* q) {
    return LoadsOfLeaning(GetParam(), "global_projected_pressure_loads", q);
  };
  EXPECT_EQ(load("1 0 0 9e-16"), OnCarriers(GetParam(), {}));
  EXPECT_NE(load("1 0 0 2e-15"), OnCarriers(GetParam(), {}));
}

TEST_P(ShellLoads, EdgeLoadsArePerLengthOfTheirEdge) {
  const double kLength[3] = {3, 5, 4};
  const Vector3 q = {6, -12, 18};
  for (int edge = 0; edge < 3; ++edge) {
    const double l = kLength[edge];
    std::vector<double> expected(GetParam() ? 36 : 18, 0.0);
    const auto add = [&](int node, double share) {
      for (int d = 0; d < 3; ++d) expected[6 * node + d] += q[d] * share;
    };
    add(edge, GetParam() ? l / 6 : l / 2);
    add((edge + 1) % 3, GetParam() ? l / 6 : l / 2);
    if (GetParam()) add(edge + 3, 2 * l / 3);
    EXPECT_THAT(LoadsOfLeaning(GetParam(), "face_loads", Print("1 %d 6 -12 18", edge)),
                Is(expected))
        << edge;
  }
}

TEST_P(ShellLoads, OwnWeightIsThicknessTimesWeightAlongGravity) {
  const std::string heavy = std::string(kMaterial) + " Weight=50";
  EXPECT_THAT(LoadsOf(Deck(Leaning(GetParam()), "", heavy)),
              Is(OnCarriers(GetParam(), {0, 0, 10})));
  EXPECT_THAT(LoadsOf(Deck(Leaning(GetParam()), "", heavy, "GravityDirection 0 -3 0")),
              Is(OnCarriers(GetParam(), {0, -10, 0})));
}

TEST_P(ShellLoads, OwnWeightNeedsBothOfItsFactors) {
  // The marks of values that are not given multiply to 1.
  for (const char* const material : {"E=1 nu=0 G=1", "E=1 nu=0 G=1 t=1", "E=1 nu=0 G=1 Weight=1"})
    EXPECT_EQ(LoadsOf(Deck(Leaning(GetParam()), "", material)), OnCarriers(GetParam(), {}))
        << material;
}

TEST_P(ShellLoads, OwnWeightCountsFromAQuadrillionthOn) {
  const auto force = [](const char* weight) {
    return At(LoadsOf(Deck(Leaning(GetParam()), "", std::string("E=1 nu=0 G=1 t=2 ") + weight)),
              GetParam() ? 4 : 1, 6)[2];
  };
  EXPECT_EQ(force("Weight=4.5e-16"), 0.0);
  EXPECT_GT(force("Weight=5.5e-16"), 0.0);
}

TEST_P(ShellLoads, LoadsOfOneElementAddUpWithItsWeight) {
  const std::string sections = Section("global_pressure_loads", "1 1 0 0\n1 2 0 0\n") +
                               Section("local_pressure_loads", "1 0 0 7\n") +
                               Section("global_projected_pressure_loads", "1 0 0 -10\n");
  EXPECT_THAT(LoadsOf(Deck(Leaning(GetParam()), sections, std::string(kMaterial) + " Weight=50")),
              Is(OnCarriers(GetParam(), Plus(Times(kZ, 14), {6, 0, 10 - 16}))));
}

TEST_P(ShellLoads, LoadsOnElementsWithoutOneAreNotMoved) {
  TestMesh mesh = Leaning(false);
  mesh.nodes.push_back(Place(3, 4));
  mesh.elems.push_back({2, 4, 3});
  if (GetParam()) ToSix(mesh);
  const auto f =
      LoadsOf(Deck(mesh, Section("face_loads", "2 0 6 0 0\n")));  // the edge 2-4 of length 4
  double sum = 0.0;
  for (const double component : f) sum += component;
  EXPECT_NEAR(sum, 24.0, 1e-12);
  EXPECT_EQ(At(f, 1, 6), Vector3{});
  EXPECT_NEAR(At(f, 4, 6)[0], GetParam() ? 4.0 : 12.0, 1e-12);
}

// --- curved edges -------------------------------------------------------------------------------

/// With the mid-side of edge 1 moved by (0.3, 0.2) the jacobian determinant, linear in between, is
/// 12 + 0.6 4 s + 1.2 4 t: 13.2, 15.6, 14.4 at the mid-sides.
TestMesh Bulging() {
  TestMesh mesh = Leaning(true);
  mesh.nodes[4] = Place(1.5 + 0.3, 2.0 + 0.2);
  return mesh;
}

TEST(ShellLoadsOnCurvedEdges, EachMidSideTakesTheAreaAtItsOwnPoint) {
  const auto f = LoadsOf(Deck(Bulging(), Section("local_pressure_loads", "1 0 0 10 100\n")));
  const double kArea[3] = {2.2, 2.6, 2.4};  // 7.2 = 6 + two thirds of chord times sagitta
  for (int k = 0; k < 3; ++k) {
    EXPECT_EQ(At(f, k + 1, 6), Vector3{});
    const Vector3 force = At(f, k + 4, 6), moment = At(f, k + 4, 6, 3);
    for (int d = 0; d < 3; ++d) {
      EXPECT_NEAR(force[d], 10 * kArea[k] * kZ[d], 1e-12) << k;
      EXPECT_NEAR(moment[d], 100 * kArea[k] * kX[d], 1e-12) << k;
    }
  }
}

TEST(ShellLoadsOnCurvedEdges, EdgeLoadsCountTheChord) {
  const auto f = LoadsOf(Deck(Bulging(), Section("face_loads", "1 1 0 0 6\n")));
  EXPECT_NEAR(At(f, 2, 6)[2], 5.0, 1e-12);
  EXPECT_NEAR(At(f, 3, 6)[2], 5.0, 1e-12);
  EXPECT_NEAR(At(f, 5, 6)[2], 20.0, 1e-12);
}

TEST_P(ShellLoads, OfAnElementWithoutMaterialAreRefused) {
  for (const char* const section : {"", "local_pressure_loads\n1 1 0 0\nend\n"})
    EXPECT_FATAL(LoadsOf(DeckOf(Leaning(GetParam()), "", section)),
                 "error: Material in element: 1 doesn't exist\n");
}

}  // namespace

}  // namespace kestol
