#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>

#include "kestol/LinearSystem.h"
#include "kestol/ReadDeck.h"
#include "results/ShellResults.h"
#include "results/SolidResults.h"
#include "tests/support/FrameDeck.h"
#include "tests/support/MeshDeck.h"

namespace kestol {

namespace {

using testing::ElementsAre;

constexpr double kNear = 1e-12;

void ExpectTensor(const StressTensor& tensor, const StressTensor& wanted, double tolerance) {
  for (std::size_t i = 0; i < 6; ++i) EXPECT_NEAR(tensor[i], wanted[i], tolerance) << i;
}

// --- tensors ------------------------------------------------------------------------------------

TEST(StressTensor, SolverOrderHasItsLastTwoShearsExchanged) {
  const double solver[] = {1, 2, 3, 12, 13, 23};
  EXPECT_THAT(FromSolverOrder(solver), ElementsAre(1, 2, 3, 12, 23, 13));
}

TEST(StressTensor, VonMisesOfTheCasesThatOneKnows) {
  EXPECT_NEAR(VonMises({-7, 0, 0, 0, 0, 0}), 7.0, kNear);                  // uniaxial
  EXPECT_NEAR(VonMises({0, 0, 0, 2, 0, 0}), 2.0 * std::sqrt(3.0), kNear);  // pure shear
  EXPECT_NEAR(VonMises({0, 0, 0, 0, 2, 0}), 2.0 * std::sqrt(3.0), kNear);
  EXPECT_NEAR(VonMises({0, 0, 0, 0, 0, 2}), 2.0 * std::sqrt(3.0), kNear);
  EXPECT_NEAR(VonMises({5, 5, 5, 0, 0, 0}), 0.0, kNear);  // hydrostatic
  EXPECT_NEAR(VonMises({3, 5, 0, 4, 0, 0}), std::sqrt(9.0 - 15.0 + 25.0 + 48.0), kNear);
}

TEST(StressTensor, SurfaceStressesTurnWithTheFrame) {
  const double c = std::cos(0.3), s = std::sin(0.3);
  const Frame frame = {
      {c,  0, s},
      {0,  1, 0},
      {-s, 0, c}
  };
  ExpectTensor(SurfaceStressToGlobal(10, 0, 0, frame),
               {10 * c * c, 0, 10 * s * s, 0, 0, 10 * c * s}, kNear);
  ExpectTensor(SurfaceStressToGlobal(0, 7, 2, frame), {0, 7, 0, 2 * c, 2 * s, 0}, kNear);
}

TEST(StressTensor, MainStressesRunFromTheLargestToTheSmallest) {
  const MainStress main = MainStressOf({-1, 5, 2, 0, 0, 0});
  EXPECT_THAT(main.values, ElementsAre(5.0, 2.0, -1.0));
  EXPECT_EQ(std::abs(main.directions[0][1]), 1.0);
  EXPECT_EQ(std::abs(main.directions[2][0]), 1.0);
}

TEST(StressTensor, MainStressesGiveTheTensorBack) {
  std::mt19937 random(5);
  std::uniform_real_distribution<double> any(-1.0, 1.0);
  for (int k = 0; k < 1000; ++k) {
    StressTensor stress;
    for (double& component : stress) component = any(random) * (k % 3 == 0 ? 1e6 : 1.0);
    if (k % 5 == 0) stress[3] = stress[4] = 0.0;
    if (k % 7 == 0) stress[1] = stress[0];
    const MainStress main = MainStressOf(stress);
    StressTensor back{};
    double largest = 0.0;
    for (std::size_t i = 0; i < 3; ++i) {
      const Vector3& d = main.directions[i];
      const double v = main.values[i];
      largest = std::max(largest, std::abs(v));
      EXPECT_NEAR(Norm(d), 1.0, 1e-14);
      const StressTensor part = {v * d[0] * d[0], v * d[1] * d[1], v * d[2] * d[2],
                                 v * d[0] * d[1], v * d[1] * d[2], v * d[0] * d[2]};
      for (std::size_t c = 0; c < 6; ++c) back[c] += part[c];
    }
    ExpectTensor(back, stress, 1e-14 * largest);
    EXPECT_GE(main.values[0], main.values[1]);
    EXPECT_GE(main.values[1], main.values[2]);
    EXPECT_NEAR(TripleProduct(main.directions[0], main.directions[1], main.directions[2]), 1.0,
                1e-14);
  }
}

// --- shells -------------------------------------------------------------------------------------

TEST(ShellResults, FacesHaveMembraneAndBendingStress) {
  const ShellForces forces = {
      {10, 20, 30},
      {4,  5,    6},
      {7, 8}
  };
  const double t = 0.5;
  ExpectTensor(FaceStress(forces, t, ShellFace::Top), {20 + 96, 40 + 120, 0, 60 + 144, 0, 0},
               kNear);
  ExpectTensor(FaceStress(forces, t, ShellFace::Bottom), {20 - 96, 40 - 120, 0, 60 - 144, 0, 0},
               kNear);
}

std::string Plate(const std::string& keys, const std::string& sections) {
  return DeckOf(Grid(2, 2, Cut::Cross, Same), keys,
                "materials\n1 E=1e6 nu=0 t=0.1 G=5e5\nend materials\n" + sections);
}

// Clamped along x = 0, an edge moment that lifts x = 1: the top is pressed.
TEST(ShellResults, BendingUpwardsPressesTheTop) {
  const std::string deck =
      Plate("ConvertTo6Nodes\n",
            "constraints\n1 111111 0 0 0 0 0 0\n4 111111 0 0 0 0 0 0\n7 111111 0 0 0 0 0 0\n"
            "end constraints\nnodal_point_loads\n3 0 0 0 0 -1 0\n6 0 0 0 0 -2 0\n9 0 0 0 0 -1 0\n"
            "end nodal_point_loads\n");
  Project project = ReadDeckText(deck, "test");
  const Results results = SolveOnce(project);
  double mean = 0.0, count = 0.0;
  ForEachShell(project, &results, [&](const ShellView& shell) {
    EXPECT_EQ(shell.pointCount, 3);
    EXPECT_EQ(shell.thickness, 0.1);
    const StressTensor top = FaceStress(shell.Mean(), shell.thickness, ShellFace::Top, shell.axes);
    mean += top[0];
    count += 1.0;
  });
  // M = 4 over the width of 1: sigma = 6 M / t^2.
  EXPECT_NEAR(mean / count, -6.0 * 4.0 / 0.01, 60.0);
}

TEST(ShellResults, PointsLieAtTheCentroidOrAtMidSides) {
  const std::string sections =
      "constraints\n1 111111 0 0 0 0 0 0\n4 111111 0 0 0 0 0 0\n7 111111 0 0 0 0 0 0\n"
      "end constraints\n";
  Project three = ReadDeckText(Plate("", sections), "test");
  ForEachShell(three, nullptr, [&](const ShellView& shell) {
    ASSERT_EQ(shell.pointCount, 1);
    Vector3 centroid{};
    for (int k = 0; k < 3; ++k)
      centroid = Plus(centroid, Times(PositionOf(*shell.elem->nodes[k]), 1.0 / 3.0));
    EXPECT_NEAR(Norm(Minus(shell.points[0].x, centroid)), 0.0, 1e-15);
    EXPECT_EQ(shell.Mean().n, (std::array<double, 3>{}));
  });
  Project six = ReadDeckText(Plate("ConvertTo6Nodes\n", sections), "test");
  const Results results = SolveOnce(six);
  ForEachShell(six, &results, [&](const ShellView& shell) {
    ASSERT_EQ(shell.pointCount, 3);
    for (int p = 0; p < 3; ++p) {
      const Vector3 middle = Times(
          Plus(PositionOf(*shell.elem->nodes[p]), PositionOf(*shell.elem->nodes[(p + 1) % 3])),
          0.5);
      EXPECT_NEAR(Norm(Minus(shell.points[static_cast<std::size_t>(p)].x, middle)), 0.0, 1e-15);
    }
  });
}

// Local values stay what they are whatever the deck says of main values and smoothing.
TEST(ShellResults, ForcesAreLocalAndAsComputedUnderEveryOption) {
  const std::string sections =
      "constraints\n1 111111 0 0 0 0 0 0\n4 111111 0 0 0 0 0 0\n7 111111 0 0 0 0 0 0\n"
      "end constraints\nnodal_point_loads\n3 5 1 -2 0 0 0\nend nodal_point_loads\n";
  const auto forcesUnder = [&](const std::string& keys) {
    Project project = ReadDeckText(Plate(keys, sections), "test");
    const Results results = SolveOnce(project);
    std::vector<double> all;
    ForEachShell(project, &results, [&](const ShellView& shell) {
      const ShellForces& f = shell.points[0].forces;
      all.insert(all.end(), f.n.begin(), f.n.end());
      all.insert(all.end(), f.m.begin(), f.m.end());
      all.insert(all.end(), f.q.begin(), f.q.end());
    });
    return all;
  };
  const std::vector<double> plain = forcesUnder("");
  EXPECT_EQ(forcesUnder("MainStresses\n"), plain);
  EXPECT_EQ(forcesUnder("MainAndLocalStresses\nDoSmoothing 0.3\n"), plain);
  EXPECT_EQ(forcesUnder("DoSmoothing 0.3\n"), plain);
}

// The main directions diagonalise the tensor that the local forces stand for.
TEST(ShellResults, MainValuesActAlongTheirDirections) {
  const double c = std::cos(0.4), s = std::sin(0.4);
  const Frame axes = {
      {c,  0, s},
      {0,  1, 0},
      {-s, 0, c}
  };
  for (const ShellForces& forces : {
           ShellForces{{10, 4, 3},  {-2, 5, 1}, {1, 2}},
           ShellForces{{4, 10, -3}, {5, 5, 2},  {0, 0}}
  }) {
    const ShellMain main = ShellMainOf(forces, axes);
    const auto check = [&](const std::array<double, 3>& local, const std::array<double, 2>& values,
                           const std::array<Vector3, 2>& directions) {
      EXPECT_NEAR(values[0] + values[1], local[0] + local[1], 1e-12);
      for (std::size_t k = 0; k < 2; ++k) {
        const double x = Dot(directions[k], axes.x), y = Dot(directions[k], axes.y);
        EXPECT_NEAR(x * x + y * y, 1.0, 1e-12);
        EXPECT_NEAR(local[0] * x + local[2] * y, values[k] * x, 1e-12);
        EXPECT_NEAR(local[2] * x + local[1] * y, values[k] * y, 1e-12);
      }
    };
    check(forces.n, main.n, main.nDirections);
    check(forces.m, main.m, main.mDirections);
  }
}

// --- solids -------------------------------------------------------------------------------------

// A cube of 1 pulled by 2 along z: every node has that stress, mid-sides too.
void ExpectUniaxial(bool quadratic) {
  TestMesh mesh = Box(1, 1, 1, quadratic, Same);
  std::string supports = "constraints\n", loads = "face_loads\n";
  for (std::size_t i = 0; i < mesh.nodes.size(); ++i) {
    const auto& [x, y, z] = mesh.nodes[i];
    if (x == 0.0 || y == 0.0 || z == 0.0)
      supports += std::to_string(i + 1) + ' ' + (x == 0.0 ? '1' : '0') + (y == 0.0 ? '1' : '0') +
                  (z == 0.0 ? '1' : '0') + " 0 0 0\n";
  }
  for (std::size_t e = 0; e < mesh.elems.size(); ++e) {
    constexpr int kFaces[4][3] = {
        {0, 1, 2},
        {1, 2, 3},
        {2, 3, 0},
        {3, 0, 1}
    };
    for (int f = 0; f < 4; ++f)
      if (std::all_of(std::begin(kFaces[f]), std::end(kFaces[f]), [&](int k) {
            return mesh.At(mesh.elems[e][static_cast<std::size_t>(k)])[2] == 1.0;
          }))
        loads += std::to_string(e + 1) + ' ' + std::to_string(f) + " 0 0 2\n";
  }
  const std::string deck = DeckOf(mesh, "",
                                  "materials\n1 E=1e3 nu=0.25\nend materials\n" + supports +
                                      "end constraints\n" + loads + "end\n");
  Project project = ReadDeckText(deck, "test");
  const Results results = SolveOnce(project);
  const NodalStresses stresses(project, results);
  ASSERT_TRUE(stresses.Exist());
  for (int i = 1; i <= project.numNodes; ++i)
    ExpectTensor(stresses.Of(i), {0, 0, 2, 0, 0, 0}, 1e-5);
  ForEachSolid(project, results, [&](const SolidView& solid) {
    EXPECT_EQ(solid.pointCount, quadratic ? 4 : 1);
    for (int p = 0; p < solid.pointCount; ++p) {
      const SolidPoint& point = solid.points[static_cast<std::size_t>(p)];
      ExpectTensor(point.stress, {0, 0, 2, 0, 0, 0}, 1e-9);
      for (const double x : point.x) {
        EXPECT_GT(x, 0.0);
        EXPECT_LT(x, 1.0);
      }
    }
  });
}

TEST(SolidResults, UniaxialPullIsSeenAtEveryNodeOfFourNodedSolids) {
  ExpectUniaxial(false);
}
TEST(SolidResults, UniaxialPullIsSeenAtEveryNodeOfTenNodedSolids) {
  ExpectUniaxial(true);
}

TEST(SolidResults, ModelsWithoutSolidsHaveNoNodalStresses) {
  FrameDeck deck(2);
  deck.Node(1, 0, 0).Node(2, 4, 0).Beam(1, 1, 2).Material(1, "E=2e11 A=1e-2 Iz=1e-5").Clamp(1);
  Project project = ReadDeckText(deck.Text(), "test");
  const Results results = SolveOnce(project);
  EXPECT_FALSE(NodalStresses(project, results).Exist());
}

}  // namespace

}  // namespace kestol
