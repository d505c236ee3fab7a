// Nodal forces of own weight, volume loads and face loads of tetrahedra, by hand.
#include <cmath>

#include "analysis/Tet10.h"
#include "analysis/Tri6.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/LoadVector.h"
#include "tests/support/MeshDeck.h"

namespace kestol {

namespace {

/// Ten nodes with every edge curved.
TestMesh Curved() {
  TestMesh mesh = UnitTetrahedron(true);
  CurveEdges(mesh, 4);
  return mesh;
}

std::string Deck(const TestMesh& mesh, const std::string& sections,
                 const std::string& material = "E=1 nu=0", const std::string& keywords = "") {
  return DeckOf(mesh, keywords, "materials\n1 " + material + "\nend materials\n" + sections);
}

const char* const kKinds[] = {"local_pressure_loads", "global_pressure_loads",
                              "global_projected_pressure_loads", "face_loads"};

/// Corners and mid-sides (from 0) of the faces 0..3, and their outward areas on the unit element.
constexpr int kCorners[4][3] = {
    {0, 1, 2},
    {1, 2, 3},
    {2, 3, 0},
    {3, 0, 1}
};
constexpr int kMiddles[4][3] = {
    {4, 5, 6},
    {5, 9, 8},
    {9, 7, 6},
    {7, 4, 8}
};
constexpr Vector3 kArea[4] = {
    {0,   0,   -.5},
    {.5,  .5,  .5 },
    {-.5, 0,   0  },
    {0,   -.5, 0  }
};

testing::Matcher<std::vector<double>> Is(const std::vector<double>& expected) {
  return testing::Pointwise(testing::DoubleNear(1e-14), expected);
}

/// The load vector with the same force on each node that carries a face.
std::vector<double> OnFace(bool ten, int face, const Vector3& force) {
  std::vector<double> f(ten ? 30 : 12, 0.0);
  for (const int node : ten ? kMiddles[face] : kCorners[face])
    for (int d = 0; d < 3; ++d) f[3 * node + d] = force[d];
  return f;
}

// --- volume loads -------------------------------------------------------------------------------

TEST(SolidVolumeLoads, OfFourNodesPutAQuarterOnEach) {
  const auto f =
      LoadsOf(Deck(UnitTetrahedron(false), Section("global_pressure_loads", "1 -1 24 0 -48\n")));
  for (int node = 1; node <= 4; ++node) {
    const Vector3 force = At(f, node, 3);
    EXPECT_NEAR(force[0], 1, 1e-14);
    EXPECT_EQ(force[1], 0);
    EXPECT_NEAR(force[2], -2, 1e-14);
  }
}

TEST(SolidVolumeLoads, OfTenNodesAreTheIntegralsOfTheShapeFunctions) {
  const auto f =
      LoadsOf(Deck(UnitTetrahedron(true), Section("global_pressure_loads", "1 -1 120 0 0\n")));
  for (int node = 1; node <= 10; ++node)  // -V/20 and V/5, but for the seven digits of the points
    EXPECT_NEAR(At(f, node, 3)[0], node <= 4 ? -1 : 4, 1e-5) << node;
}

TEST(SolidVolumeLoads, OfACurvedElementAreTheSumOverTheFourPoints) {
  const TestMesh mesh = Curved();
  const auto f = LoadsOf(Deck(mesh, Section("global_pressure_loads", "1 -1 1 2 3\n")));
  std::array<double, 10> expected{};
  constexpr double n = 0.5854102, o = 0.1381966;
  for (const Vector3& p : {
           Vector3{o, o, o},
           {n, o, o},
           {o, n, o},
           {o, o, n}
  }) {
    const auto dN = tet10::ShapeDerivatives(p);
    const auto N = tet10::Shape(p);
    Vector3 r{}, s{}, t{};
    for (int k = 0; k < 10; ++k) {
      r = Plus(r, Times(mesh.nodes[k], dN.r[k]));
      s = Plus(s, Times(mesh.nodes[k], dN.s[k]));
      t = Plus(t, Times(mesh.nodes[k], dN.t[k]));
    }
    for (int k = 0; k < 10; ++k) expected[k] += N[k] * Dot(Cross(r, s), t) / 24;
  }
  for (int k = 0; k < 10; ++k)
    for (int d = 0; d < 3; ++d) EXPECT_NEAR(At(f, k + 1, 3)[d], expected[k] * (d + 1), 1e-15) << k;
}

TEST(SolidVolumeLoads, AreGlobalWhateverTheirKind) {
  for (const bool ten : {false, true}) {
    const auto global =
        LoadsOf(Deck(UnitTetrahedron(ten), Section("global_pressure_loads", "1 -1 1 2 3\n")));
    EXPECT_NE(At(global, 1, 3)[2], 0);
    for (const char* const kind : kKinds)
      EXPECT_EQ(LoadsOf(Deck(UnitTetrahedron(ten), Section(kind, "1 -1 1 2 3\n"))), global) << kind;
  }
}

TEST(SolidOwnWeight, ActsAlongGravity) {
  const std::string heavy = "E=1 nu=0 Weight=24";
  const auto upwards =
      LoadsOf(Deck(UnitTetrahedron(false), "", heavy));  // along +z without a keyword
  const auto along = LoadsOf(Deck(UnitTetrahedron(false), "", heavy, "GravityDirection 0 -5 0"));
  for (int node = 1; node <= 4; ++node) {
    EXPECT_EQ(At(upwards, node, 3), (Vector3{0, 0, 1}));
    EXPECT_EQ(At(along, node, 3), (Vector3{0, -1, 0}));
  }
}

TEST(SolidOwnWeight, OfTenNodesIsAVolumeLoad) {
  EXPECT_EQ(LoadsOf(Deck(Curved(), "", "E=1 nu=0 Weight=7")),
            LoadsOf(Deck(Curved(), Section("global_pressure_loads", "1 -1 0 0 7\n"))));
}

TEST(SolidOwnWeight, ThatIsNotGivenOrNothingIsNone) {
  for (const char* const material : {"E=1 nu=0", "E=1 nu=0 Weight=0", "E=1 nu=0 Weight=9e-16"})
    EXPECT_THAT(LoadsOf(Deck(UnitTetrahedron(false), "", material)), testing::Each(0.0))
        << material;
}

TEST(SolidOwnWeight, CountsFromAQuadrillionthOn) {
  EXPECT_GT(At(LoadsOf(Deck(UnitTetrahedron(false), "", "E=1 nu=0 Weight=2e-15")), 1, 3)[2], 0.0);
}

TEST(SolidOwnWeight, StaysInThePlaneOfAPlaneProblem) {
  const auto plane = [](const char* gravity) {
    std::string deck = Deck(UnitTetrahedron(false), "", "E=1 nu=0 Weight=24", gravity);
    return LoadsOf(deck.replace(deck.find("3d"), 2, "2d"));
  };
  // Deliberate: only a positive z is refused; a negative one is ignored.
  for (const char* const upwards : {"", "GravityDirection 1 0 2e-15"})
    EXPECT_FATAL(plane(upwards), "error: for 2D problems GravityDirection_Z must be 0.0\n");
  EXPECT_EQ(At(plane("GravityDirection 1 0 9e-16"), 1, 3), (Vector3{1, 0, 0}));
  const Vector3 force = At(plane("GravityDirection 0 -3 -4"), 1, 3);
  EXPECT_NEAR(force[1], -0.6, 1e-14);
  EXPECT_EQ(force[2], 0.0);
}

TEST(SolidOwnWeight, AddsToTheLoadsOfTheElement) {
  const std::string sections = Section("global_pressure_loads", "1 -1 24 0 0\n1 0 0 0 6\n") +
                               Section("local_pressure_loads", "1 0 0 0 -12\n");
  const auto f = LoadsOf(Deck(UnitTetrahedron(false), sections, "E=1 nu=0 Weight=48"));
  for (int node = 1; node <= 4; ++node) {
    EXPECT_NEAR(At(f, node, 3)[0], 1, 1e-14);
    // Face 0 is an area of 1/2 with the normal -z; it takes 6 + 12 per area.
    EXPECT_NEAR(At(f, node, 3)[2], node < 4 ? 2 + 3 : 2, 1e-14);
  }
}

// --- flat faces ---------------------------------------------------------------------------------

class SolidFaceLoads : public testing::TestWithParam<bool> {};  // ten nodes?
INSTANTIATE_TEST_SUITE_P(FourAndTenNodes, SolidFaceLoads, testing::Bool());

TEST_P(SolidFaceLoads, PressureActsAlongTheOutwardNormal) {
  for (int face = 0; face < 4; ++face)
    EXPECT_THAT(LoadsOf(Deck(UnitTetrahedron(GetParam()),
                             Section("local_pressure_loads", Print("1 %d 0 0 6\n", face)))),
                Is(OnFace(GetParam(), face, Times(kArea[face], 2))))
        << face;
}

TEST_P(SolidFaceLoads, LocalAxesFollowTheRuleOfSurfacesWithoutGivenAxes) {
  const double r = 1 / std::sqrt(2.0), s = 1 / std::sqrt(6.0);
  const Vector3 kX[4] = {
      {-1, 0,  0}, // normal -z: x = y x n
      {-r, r,  0}, // x = z x n
      {0,  -1, 0},
      {1,  0,  0}
  };
  const Vector3 kY[4] = {
      {0,  1,  0    },
      {-s, -s, 2 * s},
      {0,  0,  1    },
      {0,  0,  1    }
  };
  for (int face = 0; face < 4; ++face) {
    const double third = 2 * Norm(kArea[face]);  // of a load of 6
    const auto load = [&](const char* q) {
      return LoadsOf(Deck(UnitTetrahedron(GetParam()),
                          Section("local_pressure_loads", Print("1 %d %s\n", face, q))));
    };
    EXPECT_THAT(load("6 0 0"), Is(OnFace(GetParam(), face, Times(kX[face], third)))) << face;
    EXPECT_THAT(load("0 6 0"), Is(OnFace(GetParam(), face, Times(kY[face], third)))) << face;
  }
}

TEST_P(SolidFaceLoads, GlobalAndFaceLoadsArePerAreaOfTheFace) {
  for (const char* const kind : {"global_pressure_loads", "face_loads"})
    for (int face = 0; face < 4; ++face)
      EXPECT_THAT(
          LoadsOf(Deck(UnitTetrahedron(GetParam()), Section(kind, Print("1 %d 3 -6 9\n", face)))),
          Is(OnFace(GetParam(), face, Times({3, -6, 9}, Norm(kArea[face]) / 3))))
          << kind << face;
}

TEST_P(SolidFaceLoads, ProjectedLoadsAreReducedByTheSlopeOnEitherSide) {
  const auto load = [](const char* line) {
    return LoadsOf(
        Deck(UnitTetrahedron(GetParam()), Section("global_projected_pressure_loads", line)));
  };
  for (const int q : {6, -6}) {  // the area of face 1 projected along z is 1/2
    EXPECT_THAT(load(Print("1 1 0 0 %d\n", q).c_str()), Is(OnFace(GetParam(), 1, {0, 0, q / 6.0})));
    EXPECT_THAT(load(Print("1 0 0 0 %d\n", q).c_str()), Is(OnFace(GetParam(), 0, {0, 0, q / 6.0})));
  }
  EXPECT_THAT(load("1 2 0 0 6\n"), Is(OnFace(GetParam(), 2, {})));  // along the face
  EXPECT_THAT(load("1 1 0 0 0\n"), Is(OnFace(GetParam(), 1, {})));  // no direction
}

TEST_P(SolidFaceLoads, EulerAnglesTurnTheLoadItself) {
  EXPECT_THAT(LoadsOf(Deck(UnitTetrahedron(GetParam()),
                           Section("face_loads", "1 0 6 0 0 Euler3=1.5707963267948966\n"))),
              Is(OnFace(GetParam(), 0, {0, 1, 0})));
}

// --- curved faces -------------------------------------------------------------------------------

TEST(SolidCurvedFaces, UniformPressureOnAllFacesHasNoResultant) {
  // The rule of the mid-sides integrates the area vector, of degree two, exactly.
  const auto f = LoadsOf(Deck(
      Curved(), Section("local_pressure_loads", "1 0 0 0 5\n1 1 0 0 5\n1 2 0 0 5\n1 3 0 0 5\n")));
  Vector3 sum{};
  double largest = 0;
  for (int node = 1; node <= 10; ++node) {
    sum = Plus(sum, At(f, node, 3));
    largest = std::max(largest, Norm(At(f, node, 3)));
  }
  EXPECT_NEAR(Norm(sum), 0, 1e-15);
  EXPECT_GT(largest, 0.1);
}

/// The outward area vector of a face of `Curved` at its mid-side k (0..2).
Vector3 AreaAt(const TestMesh& mesh, int face, int k) {
  const auto dN = tri6::ShapeDerivatives(tri6::kPoints[k]);
  Vector3 s{}, t{};
  for (int i = 0; i < 6; ++i) {
    const Vector3& p = mesh.nodes[i < 3 ? kCorners[face][i] : kMiddles[face][i - 3]];
    s = Plus(s, Times(p, dN.s[i]));
    t = Plus(t, Times(p, dN.t[i]));
  }
  const Vector3 area = Cross(s, t);
  return Dot(area, kArea[face]) > 0 ? area : Times(area, -1);
}

TEST(SolidCurvedFaces, EachMidSideHasItsOwnAreaAndNormal) {
  const TestMesh mesh = Curved();
  for (int face = 0; face < 4; ++face) {
    const auto load = [&](const char* kind, const char* q) {
      return LoadsOf(Deck(mesh, Section(kind, Print("1 %d %s\n", face, q))));
    };
    const auto pressure = load(kKinds[0], "0 0 6"), global = load(kKinds[1], "6 0 0"),
               projected = load(kKinds[2], "0 0 -6");
    for (int k = 0; k < 3; ++k) {
      const Vector3 area = AreaAt(mesh, face, k);
      const int node = kMiddles[face][k] + 1;
      for (int d = 0; d < 3; ++d) EXPECT_NEAR(At(pressure, node, 3)[d], area[d], 1e-15) << face;
      EXPECT_NEAR(At(global, node, 3)[0], Norm(area), 1e-15) << face;
      EXPECT_NEAR(At(projected, node, 3)[2], -std::abs(area[2]), 1e-15) << face;
    }
    for (int node = 1; node <= 4; ++node) EXPECT_EQ(At(pressure, node, 3), Vector3{});
  }
}

TEST(SolidLoads, OfAnElementWithoutMaterialAreRefused) {
  for (const bool ten : {false, true})
    for (const char* const section : {"", "face_loads\n1 0 1 0 0\nend\n"})
      EXPECT_FATAL(LoadsOf(DeckOf(UnitTetrahedron(ten), "", section)),
                   "error: Material in element: 1 doesn't exist\n");
}

}  // namespace

}  // namespace kestol
