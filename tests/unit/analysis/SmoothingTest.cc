// Averages around nodes: shell values per orientation, stresses of solids.
#include "analysis/Smoothing.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/MeshDeck.h"
#include "tests/support/RunDeck.h"
#include "tests/support/Vectors.h"

namespace kestol {

namespace {

constexpr double kTwoPi = 6.283185307179586;

TestMesh Square(bool six) {
  TestMesh mesh = UnitSquare();
  if (six) ToSix(mesh);
  return mesh;
}

const char* const kMaterial =
    "materials\n1 E=1 nu=0 G=1 t=1\n2 E=1 nu=0 G=1 t=1 Euler3=0.5\nend materials\n";

/// The square with the values first * place at the points of the first element and second * place
/// at those of the other.
class SmoothSquare {
public:
  SmoothSquare(bool six, const std::string& keywords, const std::vector<double>& first,
               const std::vector<double>& second)
      : project(ReadDeck(DeckOf(Square(six), "DoSmoothing 0.1\n" + keywords, kMaterial))) {
    std::vector<double> all = first;
    all.insert(all.end(), second.begin(), second.end());
    const int points = static_cast<int>(all.size());
    ReaVecT values(8 * points);
    for (int p = 0; p < points; ++p)
      for (int k = 1; k <= 8; ++k) values(8 * p + k) = k * all[p];
    Values().local = Values().main = values;
    Values().angles = ReaVecT(6 * points);
  }

  PointValues& Values() { return project->results.meshes[0]; }
  void Smooth() { SmoothShell(*project, *project->meshes[0], Values()); }

  /// The third angle of the main axes of forces (0) or moments (1) at a point (from 0).
  double& Direction(int point, int moments) { return Values().angles(6 * point + 3 * moments + 3); }

  /// Whether places first..last hold `expected` times the place at every point.
  static void ExpectPlaces(const ReaVecT& values, int first, int last,
                           const std::vector<double>& expected) {
    for (std::size_t p = 0; p < expected.size(); ++p)
      for (int k = first; k <= last; ++k)
        EXPECT_NEAR(values(8 * static_cast<int>(p) + k), k * expected[p], 1e-12) << p << " " << k;
  }

  std::unique_ptr<SolvedProject> project;
};

// Nodes 1 and 4 hold the mean, (1 + 10)/2.
const std::vector<double> kThreeBefore = {1, 10}, kThreeAfter = {4, 7};

TEST(SmoothShell, AveragesAllEightValuesAtTheCornersAndGivesBackTheirMean) {
  SmoothSquare square(false, "", {1}, {10});
  square.Smooth();
  SmoothSquare::ExpectPlaces(square.Values().smoothed, 1, 8, kThreeAfter);
}

TEST(SmoothShell, ExtrapolatesThreePointsToTheCornersAndBack) {
  // Corners 2 0 4 at nodes 1 2 4 and 50 -30 70 at nodes 1 4 3: means 26 at node 1, -13 at node 4.
  SmoothSquare square(true, "", {1, 2, 3}, {10, 20, 60});
  square.Smooth();
  SmoothSquare::ExpectPlaces(square.Values().smoothed, 1, 8, {13, -6.5, 6.5, 6.5, 28.5, 48});
}

TEST(SmoothShell, LeavesALinearFieldAsItIs) {
  // 1 + x + 2 y at the mid-sides.
  SmoothSquare square(true, "", {1.5, 3, 2.5}, {2.5, 3.5, 2});
  square.Smooth();
  SmoothSquare::ExpectPlaces(square.Values().smoothed, 1, 8, {1.5, 3, 2.5, 2.5, 3.5, 2});
}

TEST(SmoothShell, LocalValuesFollowTheAxesOfTheMaterial) {
  for (const char* const option : {"", "MainAndLocalStresses"}) {
    SmoothSquare square(false, option, {1}, {10});
    square.project->meshes[0]->elems.Get(2)->materialNumber = 2;
    square.Smooth();
    SmoothSquare::ExpectPlaces(square.Values().smoothed, 1, 8, kThreeBefore);
  }
}

TEST(SmoothShell, MainForcesAndMainMomentsHaveOrientationsOfTheirOwn) {
  for (const int moments : {0, 1}) {
    SmoothSquare square(false, "MainStresses", {1}, {10});
    square.Direction(1, moments) = 0.5;
    square.Smooth();
    const ReaVecT& values = square.Values().main;
    SmoothSquare::ExpectPlaces(values, 1, 3, moments == 0 ? kThreeBefore : kThreeAfter);
    SmoothSquare::ExpectPlaces(values, 4, 8, moments == 0 ? kThreeAfter : kThreeBefore);
  }
}

TEST(SmoothShell, WithBothArraysLocalValuesFollowTheElementsAndMainValuesTheirAxes) {
  for (const int moments : {0, 1}) {
    SmoothSquare square(false, "MainAndLocalStresses", {1}, {10});
    square.Direction(1, moments) = 0.5;
    square.Smooth();
    SmoothSquare::ExpectPlaces(square.Values().smoothed, 1, 8, kThreeAfter);
    const ReaVecT& main = square.Values().main;
    SmoothSquare::ExpectPlaces(main, 1, 3, moments == 0 ? kThreeBefore : kThreeAfter);
    SmoothSquare::ExpectPlaces(main, 4, 8, moments == 0 ? kThreeAfter : kThreeBefore);
  }
}

TEST(SmoothShell, LocalValuesAreKeptAsComputed) {
  for (const char* const option : {"", "MainStresses", "MainAndLocalStresses"}) {
    SmoothSquare square(false, option, {1}, {10});
    square.Smooth();
    SmoothSquare::ExpectPlaces(square.Values().local, 1, 8, kThreeBefore);
    EXPECT_EQ(square.Values().smoothed.n, *option == '\0' || option[4] == 'A' ? 16 : 0) << option;
  }
}

TEST(SmoothShell, WithoutMainValuesTheirArrayIsNotTouched) {
  SmoothSquare square(false, "", {1}, {10});
  square.Smooth();
  SmoothSquare::ExpectPlaces(square.Values().main, 1, 8, kThreeBefore);
}

TEST(SmoothShell, MainAxesOfThreePointsAreTakenAsOneMean) {
  // 0.2 and -0.2 are 0 in the mean, with 0.3 they are 0.1: the short way round.
  for (const auto& [other, same] : {
           std::pair{0.15, true },
           {0.25, false}
  }) {
    SmoothSquare square(true, "MainStresses", {1, 2, 3}, {10, 20, 60});
    for (const int moments : {0, 1}) {
      const double angles[3] = {0.2, kTwoPi - 0.2, 0.3};
      for (int p = 0; p < 3; ++p) {
        square.Direction(p, moments) = angles[p];
        square.Direction(p + 3, moments) = other;
      }
    }
    square.Smooth();
    SmoothSquare::ExpectPlaces(square.Values().main, 1, 8,
                               same ? std::vector<double>{13, -6.5, 6.5, 6.5, 28.5, 48}
                                    : std::vector<double>{1, 2, 3, 10, 20, 60});
  }
}

/// Triangles about node 1 with the other nodes apart, main axes of the given third angles and the
/// values 1, 2, 3 .. in place 1; gives place 1 after the smoothing.
std::vector<double> FanOfMainAxes(const std::vector<double>& angles) {
  TestMesh mesh{"Triangle", {{0, 0, 0}}, {}};
  for (std::size_t i = 0; i < angles.size(); ++i) {
    const int first = static_cast<int>(mesh.nodes.size()) + 1;
    mesh.nodes.push_back({1, 0, 0});
    mesh.nodes.push_back({0, 1, 0});
    mesh.elems.push_back({1, first, first + 1});
  }
  const auto project = ReadDeck(DeckOf(mesh, "DoSmoothing 0.1\nMainStresses", kMaterial));
  const int count = static_cast<int>(angles.size());
  PointValues values;
  values.main = ReaVecT(8 * count);
  values.angles = ReaVecT(6 * count);
  for (int i = 0; i < count; ++i) {
    values.main(8 * i + 1) = i + 1;
    values.angles(6 * i + 3) = angles[i];
  }
  SmoothShell(*project, *project->meshes[0], values);
  std::vector<double> first;
  for (int i = 0; i < count; ++i) first.push_back(values.main(8 * i + 1));
  return first;
}

testing::Matcher<std::vector<double>> Are(const std::vector<double>& expected) {
  return testing::Pointwise(testing::DoubleNear(1e-12), expected);
}

TEST(SmoothShell, AGroupKeepsTheOrientationOfItsFirstElement) {
  EXPECT_THAT(FanOfMainAxes({1.0, 1.09, 1.18}), Are({3.5 / 3, 5.5 / 3, 3}));
}

TEST(SmoothShell, TheFirstGroupThatMatchesTakesTheElement) {
  EXPECT_THAT(FanOfMainAxes({1.0, 1.18, 1.09}), Are({4.0 / 3, 2, 8.0 / 3}));
}

TEST(SmoothShell, TheThirdOrientationIsAveragedToo) {
  EXPECT_THAT(FanOfMainAxes({0.0, 1.0, 2.0, 2.0}), Are({1, 2, 9.5 / 3, 11.5 / 3}));
}

TEST(SmoothShell, AFourthOrientationTakesPartInAGroupThatMatchesItOnly) {
  // The fourth, 3.0, is dropped; the fifth finds the first group.
  EXPECT_THAT(FanOfMainAxes({0.0, 1.0, 2.0, 3.0, kTwoPi - 0.05}),
              Are({5.0 / 3, 2, 3, 4, 13.0 / 3}));
}

TEST(OrientationsMatch, UpToTheToleranceItself) {
  for (const int k : {1, 2, 3}) {
    ReaVec3 a(0, 0, 0), b(0, 0, 0);
    b(k) = 0.25;
    EXPECT_TRUE(OrientationsMatch(a, b, 0.25)) << k;
    EXPECT_FALSE(OrientationsMatch(a, b, 0.2499)) << k;
  }
}

TEST(SmoothPointValues, MeshesAreNotMixed) {
  const auto project = ReadDeck(
      DeckOf(Square(false), "DoSmoothing 0.1",
             std::string("mesh dimension = 3 elemtype Triangle nnode = 3\ncoordinates\nend\n"
                         "elements\n7 1 2 4 1\nend\nmesh dimension = 3 elemtype Linear nnode = 2\n"
                         "coordinates\nend\nelements\n9 1 2 1\nend\n") +
                 kMaterial));
  project->results.meshes[0].local = ReaVecT(16);
  project->results.meshes[1].local = ReaVecT(8);
  project->results.meshes[2].local = ReaVecT(12);
  project->results.meshes[0].local.Fill(1.0);
  project->results.meshes[1].local.Fill(5.0);
  project->results.meshes[2].local.Fill(7.0);
  SmoothPointValues(*project, project->results);
  EXPECT_EQ(project->results.meshes[0].smoothed.n, 16);
  EXPECT_EQ(project->results.meshes[1].smoothed.n, 8);
  EXPECT_THAT(Entries(project->results.meshes[0].smoothed), testing::Each(1.0));
  EXPECT_THAT(Entries(project->results.meshes[1].smoothed), testing::Each(5.0));
  EXPECT_THAT(Entries(project->results.meshes[2].local), testing::Each(7.0))
      << "beams are left alone";
  EXPECT_EQ(project->results.meshes[2].smoothed.n, 0);
}

// --- solids -------------------------------------------------------------------------------------

/// Two tetrahedra on the face 2 3 4: elements 1 2 3 4 and 2 3 4 5.
TestMesh Pair(bool ten) {
  TestMesh mesh{
      "Tetrahedra",
      {{0, 0, 0},  {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 1, 1}},
      {{1, 2, 3, 4}, {2, 3, 4, 5}}
  };
  if (ten) ToTen(mesh);
  return mesh;
}

std::unique_ptr<SolvedProject> ReadPair(bool ten) {
  return ReadDeck(DeckOf(Pair(ten), "", "materials\n1 E=1 nu=0\nend materials\n"));
}

TEST(AverageSolidStresses, OfFourNodesIsTheMeanOfTheElementsAround) {
  const auto project = ReadPair(false);
  project->results.meshes[0].local = ReaVecT(12);
  for (int k = 1; k <= 6; ++k) {
    project->results.meshes[0].local(k) = k;
    project->results.meshes[0].local(6 + k) = 10 * k;
  }
  project->results.nodalStresses = ReaVecT(30);
  project->results.nodalStresses.Fill(99.0);  // of nothing: it is filled anew
  SmoothPointValues(*project, project->results);
  const double expected[5] = {1, 5.5, 5.5, 5.5, 10};
  for (int node = 0; node < 5; ++node)
    for (int k = 1; k <= 6; ++k)
      EXPECT_DOUBLE_EQ(project->results.nodalStresses(6 * node + k), k * expected[node]) << node;
}

TEST(AverageSolidStresses, OfTenNodesExtrapolatesToTheCornersAndLeavesZeroAtMidSides) {
  const auto project = ReadPair(true);
  const double corners[2][4] = {
      {3,  -1, 4, 7},
      {20, 50, 1, 9}
  };
  project->results.meshes[0].local = ReaVecT(48);
  for (int e = 0; e < 2; ++e)
    for (int p = 0; p < 4; ++p)
      for (int k = 1; k <= 6; ++k) {
        double value = 0;  // of the linear shape functions at the point
        for (int c = 0; c < 4; ++c) value += (c == p ? 0.5854102 : 0.1381966) * corners[e][c];
        project->results.meshes[0].local(24 * e + 6 * p + k) = k * value;
      }
  SmoothPointValues(*project, project->results);
  const double expected[5] = {3, (-1 + 20) / 2.0, (4 + 50) / 2.0, (7 + 1) / 2.0, 9};
  ASSERT_EQ(project->results.nodalStresses.n, 6 * 14);
  for (int node = 0; node < 14; ++node)
    for (int k = 1; k <= 6; ++k)
      EXPECT_NEAR(project->results.nodalStresses(6 * node + k), node < 5 ? k * expected[node] : 0.0,
                  1e-12)
          << node;
}

TEST(AverageSolidStresses, NodesOutsideEveryElementAreRefused) {
  const auto project = ReadPair(false);
  project->meshes[0]->elems.Get(2)->nodes[3] = project->meshes[0]->elems.Get(1)->nodes[0];
  EXPECT_FATAL(AverageSolidStresses(*project, *project->meshes[0], ReaVecT(12)),
               "error: node 5 has no elements around\n");
}

}  // namespace

}  // namespace kestol
