#include <cmath>

#include "algebra/Matriu.h"
#include "algebra/ReaVecT.h"
#include "analysis/MainValues.h"
#include "analysis/Smoothing.h"
#include "model/EulerAngles.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/MeshDeck.h"
#include "tests/support/RunDeck.h"

namespace kestol {

namespace {

constexpr double kPi = 3.141592653589793;

/// Main values of one point in axes along the global ones.
ReaVecT MainOf(std::array<double, 8> local, ReaVecT* directions = nullptr) {
  ReaVecT values(8), angles(6), main(8);
  std::copy(local.begin(), local.end(), values.begin());
  Matriu T(3, 3);
  T.Fill(0.0);
  for (int i = 1; i <= 3; ++i) T(i, i) = 1.0;
  MainValues(values, 1, 1, angles, 1, T, main);
  if (directions != nullptr) *directions = angles;
  return main;
}

TEST(MainValues, WithoutShearStayInTheirOrderEvenWhenTheFirstIsSmaller) {
  const ReaVecT v = MainOf({1, 5, 0, -2, 3, 0, 7, 8});
  const double expected[8] = {1, 5, 0, -2, 3, 0, 7, 8};
  for (int i = 0; i < 8; ++i) EXPECT_DOUBLE_EQ(v.data[i], expected[i]) << i;
}

TEST(MainValues, OfEqualForcesAreTurnedByAQuarterOfPi) {
  ReaVecT angles;
  const ReaVecT v = MainOf({4, 4, 3, 0, 0, 0, 0, 0}, &angles);
  EXPECT_DOUBLE_EQ(v(1), 1);
  EXPECT_DOUBLE_EQ(v(2), 7);
  EXPECT_EQ(v(3), 0);
  EXPECT_NEAR(angles(3), 2 * kPi - kPi / 4, 1e-15);  // axis 1 = (cos, -sin)
}

TEST(MainValues, OfEqualForcesTurnTheSameWayForEitherShear) {
  const ReaVecT v = MainOf({4, 4, -3, 4, 4, 3, 0, 0});
  EXPECT_DOUBLE_EQ(v(1), 7);
  EXPECT_DOUBLE_EQ(v(2), 1);
  EXPECT_DOUBLE_EQ(v(4), 1);
  EXPECT_DOUBLE_EQ(v(5), 7);
}

TEST(MainValues, LessThanAQuadrillionthIsNothing) {
  ReaVecT angles;
  MainOf({4, 4, 9e-16, 4, 4, 2e-15, 0, 0}, &angles);
  EXPECT_EQ(angles(3), 0.0);
  EXPECT_NEAR(angles(6), 2 * kPi - kPi / 4, 1e-15);
  // A difference below counts as none, one above turns by half a right angle the other way.
  MainOf({1e-15, 2e-16, 1, 2e-15, -1e-15, 1, 0, 0}, &angles);
  EXPECT_NEAR(angles(3), 2 * kPi - kPi / 4, 1e-15);
  EXPECT_NEAR(angles(6), kPi / 4, 1e-14);
}

TEST(MainValues, KeepTheOrderOfTheForcesTheyComeFrom) {
  // The angle stays within a quarter of pi, so the larger force stays the larger on its axis.
  const double root = std::hypot(2.25, 0.8);
  const ReaVecT v = MainOf({3, -1.5, 0.8, -1.5, 3, 0.8, 0, 0});
  EXPECT_NEAR(v(1), 0.75 + root, 1e-14);
  EXPECT_NEAR(v(2), 0.75 - root, 1e-14);
  EXPECT_NEAR(v(4), 0.75 - root, 1e-14);
  EXPECT_NEAR(v(5), 0.75 + root, 1e-14);
}

TEST(MainValues, AxesTurnAboutTheNormalOfTheElement) {
  ReaVecT values(8), angles(6), main(8);
  values(1) = values(2) = 4;
  values(3) = 3;  // a turn by -pi/4: axis 1 = (x - y)/sqrt 2
  Matriu T(3, 3), R(3, 3);
  EulerRotation(0.3, -0.5, 0.7, T);
  MainValues(values, 1, 1, angles, 1, T, main);
  EulerRotation(angles(1), angles(2), angles(3), R);
  const double r = std::sqrt(0.5);
  for (int k = 1; k <= 3; ++k) {
    EXPECT_NEAR(R(k, 1), r * (T(k, 1) - T(k, 2)), 1e-14);
    EXPECT_NEAR(R(k, 2), r * (T(k, 1) + T(k, 2)), 1e-14);
    EXPECT_NEAR(R(k, 3), T(k, 3), 1e-14);
  }
}

TEST(MainValuesOfMesh, TurnEveryPointFromTheAxesOfItsMaterial) {
  for (const bool six : {false, true}) {
    TestMesh mesh = UnitSquare();
    if (six) ToSix(mesh);
    std::string deck = DeckOf(mesh, "MainStresses",
                              "materials\n1 E=1 nu=0 G=1 t=1 Euler3=1.5\n"
                              "2 E=1 nu=0 G=1 t=1 Euler3=1\nend materials\n");
    deck.replace(deck.find(" 1\nend elements"), 2, " 2");
    const auto project = ReadDeck(deck);
    const int points = six ? 3 : 1;
    PointValues results;
    ReaVecT& values = results.local;
    values = ReaVecT(2 * points * 8);
    for (int p = 0; p < 2 * points; ++p) {
      values(8 * p + 4) = values(8 * p + 5) = 4;
      values(8 * p + 6) = 3;
    }
    MainValuesOfMesh(*project, *project->meshes[0], results);
    const ReaVecT &directions = results.angles, &main = results.main;
    ASSERT_EQ(directions.n, 2 * points * 6);
    ASSERT_EQ(main.n, 2 * points * 8);
    for (int p = 0; p < 2 * points; ++p) {
      const double axes = p < points ? 1.5 : 1.0;
      EXPECT_NEAR(directions(6 * p + 3), axes, 1e-14) << p;
      EXPECT_NEAR(directions(6 * p + 6), axes - kPi / 4, 1e-14) << p;
      EXPECT_NEAR(main(8 * p + 4), 1, 1e-14) << p;
      EXPECT_NEAR(main(8 * p + 5), 7, 1e-14) << p;
      EXPECT_EQ(values(8 * p + 6), 3) << p;  // the local ones stay
    }
  }
}

TEST(MainValues, KeepTheInvariantsAndRemoveTheShear) {
  ReaVecT angles;
  const double x = 3, y = -1.5, xy = 0.8;
  const ReaVecT v = MainOf({x, y, xy, y, x, -xy, 2, 1}, &angles);
  EXPECT_NEAR(v(1) + v(2), x + y, 1e-14);
  EXPECT_NEAR(v(1) * v(2), x * y - xy * xy, 1e-14);
  EXPECT_EQ(v(3), 0);
  EXPECT_EQ(v(6), 0);
  // N11 acts along axis 1.
  const double c = std::cos(angles(3)), s = std::sin(angles(3));
  EXPECT_NEAR(c * c * x + s * s * y + 2 * c * s * xy, v(1), 1e-14);
  // Deliberate: the shears turn by +theta of the moments, not with the axes above.
  const double theta = 0.5 * std::atan(2 * -xy / (x - y));
  EXPECT_NEAR(v(7), 2 * std::cos(theta) + std::sin(theta), 1e-14);
  EXPECT_NEAR(v(8), std::cos(theta) - 2 * std::sin(theta), 1e-14);
}

TEST(MainValues, MayTakeThePlaceOfTheLocalOnes) {
  ReaVecT values(8), angles(6);
  for (int i = 1; i <= 8; ++i) values(i) = 0.5 * i * i - 3.0 * i;
  std::array<double, 8> local;
  std::copy(values.begin(), values.end(), local.begin());
  Matriu T(3, 3);
  T.Fill(0.0);
  for (int i = 1; i <= 3; ++i) T(i, i) = 1.0;
  MainValues(values, 1, 1, angles, 1, T, values);
  const ReaVecT expected = MainOf(local);
  for (int i = 1; i <= 8; ++i) EXPECT_EQ(values(i), expected(i)) << i;
}

TEST(MainValues, WithATargetLeaveTheLocalOnes) {
  ReaVecT values(16), target(16), angles(12);
  values.Fill(2.0);
  Matriu T(3, 3);
  T.Fill(0.0);
  for (int i = 1; i <= 3; ++i) T(i, i) = 1.0;
  MainValues(values, 9, 1, angles, 7, T, target);
  for (const double v : values) EXPECT_EQ(v, 2.0);
  for (int i = 1; i <= 8; ++i) EXPECT_EQ(target(i), 0.0);
  EXPECT_DOUBLE_EQ(target(10), 4.0);
}

TEST(OrientationsMatch, WrapsTheFirstAndThirdAngleOnly) {
  const auto match = [](double a, double b, int k) {
    ReaVec3 x(1, 1, 1), y(1, 1, 1);
    x(k) = a;
    y(k) = b;
    return OrientationsMatch(x, y, 0.05);
  };
  for (const int k : {1, 3}) {
    EXPECT_TRUE(match(0.01, 2 * kPi - 0.01, k));
    EXPECT_TRUE(match(2 * kPi - 0.01, 0.01, k));
    EXPECT_FALSE(match(0.01, 2 * kPi - 0.06, k));
    EXPECT_TRUE(match(1.0, 1.049, k));
    EXPECT_FALSE(match(1.0, 1.06, k));
  }
  EXPECT_TRUE(match(0.2, 0.24, 2));
  EXPECT_FALSE(match(0.01, 2 * kPi - 0.01, 2));
}

/// A fan of `angles.size()` triangles about node 1, each in a plane turned about x by its angle;
/// values are given by hand.
std::unique_ptr<SolvedProject> Fan(const std::vector<double>& angles, double tolerance) {
  TestMesh mesh{"Triangle", {{0, 0, 0}}, {}};
  for (std::size_t i = 0; i < angles.size(); ++i) {
    const double c = std::cos(angles[i]), s = std::sin(angles[i]);
    const int first = static_cast<int>(mesh.nodes.size()) + 1;
    mesh.nodes.push_back({1, 0, 0});
    mesh.nodes.push_back({1, c, s});
    mesh.elems.push_back({1, first, first + 1});
  }
  auto project = ReadDeck(DeckOf(mesh, Print("DoSmoothing %g", tolerance),
                                 "materials\n1 E=1 nu=0 G=1 t=1\nend materials\n"));
  project->results.meshes[0].local = ReaVecT(8 * static_cast<int>(angles.size()));
  for (std::size_t i = 0; i < angles.size(); ++i)
    project->results.meshes[0].local(8 * static_cast<int>(i) + 1) = double(i + 1);
  return project;
}

TEST(SmoothShell, AveragesElementsOfOneOrientationAtTheirCommonNode) {
  const auto project = Fan({0.0, 0.0}, 0.1);
  SmoothPointValues(*project, project->results);
  // The common corner gets (1 + 2) / 2, the other two keep the element's own value.
  EXPECT_DOUBLE_EQ(project->results.meshes[0].smoothed(1), (1.5 + 1 + 1) / 3);
  EXPECT_DOUBLE_EQ(project->results.meshes[0].smoothed(9), (1.5 + 2 + 2) / 3);
}

TEST(SmoothShell, DoesNotMixOrientations) {
  const auto project = Fan({0.0, 0.5}, 0.1);
  SmoothPointValues(*project, project->results);
  EXPECT_DOUBLE_EQ(project->results.meshes[0].smoothed(1), 1);
  EXPECT_DOUBLE_EQ(project->results.meshes[0].smoothed(9), 2);
}

TEST(SmoothShell, KeepsThreeOrientationsAndDropsTheFourth) {
  const auto project = Fan({0.0, 0.5, 1.0, 1.4, 0.0, 1.4}, 0.1);
  SmoothPointValues(*project, project->results);
  const auto value = [&](int elem) { return project->results.meshes[0].smoothed(8 * elem + 1); };
  EXPECT_DOUBLE_EQ(value(0), (3.0 + 1 + 1) / 3);  // with the fifth
  EXPECT_DOUBLE_EQ(value(4), (3.0 + 5 + 5) / 3);
  EXPECT_DOUBLE_EQ(value(1), 2);
  EXPECT_DOUBLE_EQ(value(2), 3);
  EXPECT_DOUBLE_EQ(value(3), 4);  // no group left: its own value
  EXPECT_DOUBLE_EQ(value(5), 6);
}

}  // namespace

}  // namespace kestol
