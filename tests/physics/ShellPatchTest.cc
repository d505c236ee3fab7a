// Shell triangles of 3 and 6 nodes: uniform fields on irregular meshes, rigid motions, and the
// modes of one element.
#include <array>
#include <cmath>

#include "tests/support/ElementStiffness.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/MeshDeck.h"
#include "tests/support/RunDeck.h"
#include "tests/support/ShellDecks.h"

namespace kestol {

namespace {

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

}  // namespace

}  // namespace kestol
