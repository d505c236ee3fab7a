#include <array>
#include <cmath>
#include <memory>

#include "model/BeamLoad.h"
#include "model/Elem.h"
#include "model/Mesh.h"
#include "tests/support/ExpectFatal.h"

namespace kestol {

namespace {

constexpr std::array<int, 4> kCodes = {BothFixed, HingeAtEnd2, HingeAtEnd1, BothHinged};

// --- GiveLocalStrength ------------------------------------------------------------------------

TEST(GiveLocalStrength, HasAllFormulasOfItsTable) {
  const double L = 3.0, q = 7.0, xi = 0.2, x = xi * L;
  struct Row {
    int code;
    double axial, moment;
  };
  const Row rows[] = {
      {11, 0.5 * q * (L - 2 * x), q * (L * L - 6 * L * x + 6 * x * x) / 12       },
      {10, (0.625 * L - x) * q,   q * (x * x / 2 + 0.125 * L * L - 0.625 * L * x)},
      {1,  (0.375 * L - x) * q,   x * x / 2 - 0.375 * L * x                      },
      {0,  0.5 * q * (L - 2 * x), 0.5 * q * x * (x - L)                          },
  };
  for (const Row& row : rows) {
    EXPECT_DOUBLE_EQ(GiveLocalStrength(1, xi, L, q, row.code), row.axial) << row.code;
    EXPECT_DOUBLE_EQ(GiveLocalStrength(2, xi, L, q, row.code), -row.axial) << row.code;
    EXPECT_DOUBLE_EQ(GiveLocalStrength(3, xi, L, q, row.code), row.moment) << row.code;
    EXPECT_DOUBLE_EQ(GiveLocalStrength(4, xi, L, q, row.code), 0.5 * q * (L - 2 * x)) << row.code;
  }
}

TEST(GiveLocalStrength, WithEndCode1TheMomentIsNotMultipliedByQ) {
  EXPECT_EQ(GiveLocalStrength(3, 1.0, 2.0, 1000.0, 1), GiveLocalStrength(3, 1.0, 2.0, 1.0, 1));
  EXPECT_EQ(GiveLocalStrength(3, 1.0, 2.0, 0.0, 1), 0.5);  // L^2 / 8
}

TEST(GiveLocalStrength, WithOneHingeTheAxialForceFollowsTheProppedShear) {
  EXPECT_DOUBLE_EQ(GiveLocalStrength(1, 0.0, 8.0, 1.0, 10), 5.0);
  EXPECT_DOUBLE_EQ(GiveLocalStrength(1, 1.0, 8.0, 1.0, 10), -3.0);
  EXPECT_DOUBLE_EQ(GiveLocalStrength(1, 0.0, 8.0, 1.0, 1), 3.0);
  EXPECT_DOUBLE_EQ(GiveLocalStrength(1, 1.0, 8.0, 1.0, 1), -5.0);
}

TEST(GiveLocalStrength, GivesZeroForAnUnknownEndCodeWhateverTheComponent) {
  for (const int component : {-1, 0, 1, 2, 3, 4, 5})
    EXPECT_EQ(GiveLocalStrength(component, 0.3, 2.0, 5.0, 12), 0.0);
}

TEST(GiveLocalStrength, RefusesAComponentOutside1To4) {
  for (const int code : kCodes) {
    EXPECT_FATAL(GiveLocalStrength(0, 0.0, 1.0, 1.0, code), "error in GiveLocalStrength\n");
    EXPECT_FATAL(GiveLocalStrength(5, 0.0, 1.0, 1.0, code), "error in GiveLocalStrength\n");
  }
}

TEST(GiveLocalStrength, ShearIsTheDerivativeOfTheMoment) {
  const double L = 2.5, h = 1e-5;
  for (const int code : kCodes) {
    for (const double xi : {0.1, 0.5, 0.9}) {
      const double slope = (GiveLocalStrength(3, xi + h, L, 1.0, code) -
                            GiveLocalStrength(3, xi - h, L, 1.0, code)) /
                           (2 * h * L);
      EXPECT_NEAR(GiveLocalStrength(2, xi, L, 1.0, code), slope, 1e-8) << code;
    }
  }
}

// --- EquivalentEndForces ----------------------------------------------------------------------

TEST(EquivalentEndForces, OfAFixedBeamAreTheHandbookValues) {
  const double L = 4.0, q = -5.0;
  const BeamEndForces plane = EquivalentEndForces({0.0, q, 0.0, 0.0}, L, Plane, 11);
  EXPECT_DOUBLE_EQ(plane.f1[1], q * L / 2);
  EXPECT_DOUBLE_EQ(plane.f1[2], q * L * L / 12);
  EXPECT_DOUBLE_EQ(plane.f2[1], q * L / 2);
  EXPECT_DOUBLE_EQ(plane.f2[2], -q * L * L / 12);

  const BeamEndForces space = EquivalentEndForces({3.0, 0.0, q, 2.0}, L, Space, 11);
  EXPECT_DOUBLE_EQ(space.f1[0], 6.0);
  EXPECT_DOUBLE_EQ(space.f2[0], 6.0);
  EXPECT_DOUBLE_EQ(space.f1[2], q * L / 2);
  EXPECT_DOUBLE_EQ(space.f2[2], q * L / 2);
  EXPECT_DOUBLE_EQ(space.f1[3], 4.0);
  EXPECT_DOUBLE_EQ(space.f2[3], 4.0);
  EXPECT_DOUBLE_EQ(space.f1[4], -q * L * L / 12);
  EXPECT_DOUBLE_EQ(space.f2[4], q * L * L / 12);
  EXPECT_EQ(space.f1[5], 0.0);
}

TEST(EquivalentEndForces, OfAHingeAtEnd2AreThoseOfTheProppedBeam) {
  const double L = 8.0;
  const BeamEndForces forces = EquivalentEndForces({0.0, 1.0, 0.0, 0.0}, L, Plane, 10);
  EXPECT_DOUBLE_EQ(forces.f1[1], 5.0);
  EXPECT_DOUBLE_EQ(forces.f2[1], 3.0);
  EXPECT_DOUBLE_EQ(forces.f1[2], 8.0);
  EXPECT_EQ(forces.f2[2], 0.0);
}

TEST(EquivalentEndForces, OfTwoHingesAreHalvesWithoutMoments) {
  const BeamEndForces forces = EquivalentEndForces({0.0, 2.0, 4.0, 0.0}, 5.0, Space, 0);
  EXPECT_DOUBLE_EQ(forces.f1[1], 5.0);
  EXPECT_DOUBLE_EQ(forces.f2[1], 5.0);
  EXPECT_DOUBLE_EQ(forces.f1[2], 10.0);
  EXPECT_DOUBLE_EQ(forces.f2[2], 10.0);
  for (const int d : {4, 5}) {
    EXPECT_EQ(forces.f1[d], 0.0);
    EXPECT_EQ(forces.f2[d], 0.0);
  }
}

/// Releasing the rotation with f_r of end `hinge`: f := f - K_.r K_rr^-1 f_r, with the fixed beam
/// of unit EI. Order v1 t1 v2 t2.
std::array<double, 4> Release(std::array<double, 4> f, double L, int r) {
  const double k[4][4] = {
      {12 / (L * L * L),  6 / (L * L),  -12 / (L * L * L), 6 / (L * L) },
      {6 / (L * L),       4 / L,        -6 / (L * L),      2 / L       },
      {-12 / (L * L * L), -6 / (L * L), 12 / (L * L * L),  -6 / (L * L)},
      {6 / (L * L),       2 / L,        -6 / (L * L),      4 / L       }
  };
  std::array<double, 4> released = f;
  for (int i = 0; i < 4; ++i) released[i] -= k[i][r] / k[r][r] * f[r];
  return released;
}

TEST(EquivalentEndForces, OfOneHingeAreTheFixedOnesWithTheHingeReleased) {
  // Unit load: with a hinge at end 1 the moment does not know q.
  const double L = 3.0;
  const std::array<double, 4> fixed = {L / 2, L * L / 12, L / 2, -L * L / 12};
  const struct {
    int code, hinge;
  } cases[] = {
      {HingeAtEnd1, 1},
      {HingeAtEnd2, 3}
  };
  for (const auto& [code, hinge] : cases) {
    const std::array<double, 4> wanted = Release(fixed, L, hinge);
    const BeamEndForces plane = EquivalentEndForces({0.0, 1.0, 0.0, 0.0}, L, Plane, code);
    EXPECT_NEAR(plane.f1[1], wanted[0], 1e-14) << code;
    EXPECT_NEAR(plane.f1[2], wanted[1], 1e-14) << code;
    EXPECT_NEAR(plane.f2[1], wanted[2], 1e-14) << code;
    EXPECT_NEAR(plane.f2[2], wanted[3], 1e-14) << code;
    const BeamEndForces space = EquivalentEndForces({0.0, 0.0, 1.0, 0.0}, L, Space, code);
    EXPECT_NEAR(space.f1[2], wanted[0], 1e-14) << code;
    EXPECT_NEAR(space.f1[4], -wanted[1], 1e-14) << code;
    EXPECT_NEAR(space.f2[2], wanted[2], 1e-14) << code;
    EXPECT_NEAR(space.f2[4], -wanted[3], 1e-14) << code;
  }
}

TEST(EquivalentEndForces, OfAnUnloadedBeamAreZeroForEveryEndCode) {
  for (const int code : kCodes)
    for (const ProblemType type : {Plane, Space}) {
      const BeamEndForces forces = EquivalentEndForces({}, 2.0, type, code);
      for (int d = 0; d < 6; ++d) {
        EXPECT_EQ(forces.f1[d], 0.0);
        EXPECT_EQ(forces.f2[d], 0.0);
      }
    }
}

TEST(EquivalentEndForces, LeaveTheUnloadedPlaneOfAHingeAtEnd1Alone) {
  const BeamEndForces forces = EquivalentEndForces({0.0, 0.0, 1.0, 0.0}, 2.0, Space, 1);
  EXPECT_EQ(forces.f2[5], 0.0);
  EXPECT_DOUBLE_EQ(forces.f2[4], 0.5);
}

TEST(EquivalentEndForces, AddUpToTheWholeLoadForEveryEndCode) {
  const double L = 2.2;
  for (const int code : kCodes) {
    const BeamEndForces f = EquivalentEndForces({1.0, 2.0, 3.0, 4.0}, L, Space, code);
    for (int d = 0; d < 4; ++d) EXPECT_NEAR(f.f1[d] + f.f2[d], (d + 1) * L, 1e-13) << code;
  }
}

// --- LocalIntensities -------------------------------------------------------------------------

/// A beam from (0, 0, 0) to (4, 3, 0) in the space of a bare mesh; T turns about z.
class LocalIntensitiesTest : public testing::Test {
protected:
  LocalIntensitiesTest() : T_(6, 6) {
    mesh_.nnode = 2;
    elem_ = std::make_unique<Elem>(&mesh_, 2);
    elem_->number = 12;
    elem_->nodes[0] = &ends_[0];
    elem_->nodes[1] = &ends_[1];
    ends_[1].x = 4.0;
    ends_[1].y = 3.0;
    T_.Fill(0.0);
    for (int k = 0; k < 6; k += 3) {
      T_(k + 1, k + 1) = T_(k + 2, k + 2) = 0.8;
      T_(k + 1, k + 2) = -0.6;
      T_(k + 2, k + 1) = 0.6;
      T_(k + 3, k + 3) = 1.0;
    }
  }

  BeamLoad Local(LoadKind kind, std::array<double, 4> q, ProblemType problemType = Space) {
    PreassureLT load(kind);
    load.values = ReaVecT(problemType == Plane ? 3 : 6);
    for (int i = 0; i < (problemType == Plane ? 3 : 4); ++i) load.values(i + 1) = q[i];
    return LocalIntensities(load, *elem_, T_, problemType);
  }

  Mesh mesh_;
  Node ends_[2];
  std::unique_ptr<Elem> elem_;
  Matriu T_;
};

TEST_F(LocalIntensitiesTest, TakeLocalLoadsAsTheyAre) {
  const BeamLoad local = Local(LocalPressure, {1.0, 2.0, 3.0, 4.0});
  EXPECT_EQ(local.qx, 1.0);
  EXPECT_EQ(local.qy, 2.0);
  EXPECT_EQ(local.qz, 3.0);
  EXPECT_EQ(local.m, 4.0);
}

TEST_F(LocalIntensitiesTest, TurnGlobalLoadsIntoTheLocalAxes) {
  const BeamLoad local = Local(GlobalPressure, {0.0, -10.0, 2.0, 0.0});
  EXPECT_DOUBLE_EQ(local.qx, -6.0);
  EXPECT_DOUBLE_EQ(local.qy, -8.0);
  EXPECT_DOUBLE_EQ(local.qz, 2.0);
}

TEST_F(LocalIntensitiesTest, ReduceProjectedLoadsByTheSineOfTheAngle) {
  // Down on a beam of 4 in plan and 5 in length: factor 4/5.
  const BeamLoad local = Local(GlobalProjected, {0.0, -10.0, 0.0, 0.0}, Plane);
  EXPECT_DOUBLE_EQ(local.qx, -4.8);
  EXPECT_DOUBLE_EQ(local.qy, -6.4);
}

TEST_F(LocalIntensitiesTest, MeasureThatAngleInSpace) {
  ends_[1].z = 12.0;  // along (4, 3, 12) / 13
  const std::array<double, 4> q{1.0, -2.0, 2.0, 0.0};
  const double cosine = (4.0 - 6.0 + 24.0) / 39.0, sine = std::sqrt(1.0 - cosine * cosine);
  const BeamLoad whole = Local(GlobalPressure, q), projected = Local(GlobalProjected, q);
  EXPECT_DOUBLE_EQ(projected.qx, sine * whole.qx);
  EXPECT_DOUBLE_EQ(projected.qy, sine * whole.qy);
  EXPECT_DOUBLE_EQ(projected.qz, sine * whole.qz);
}

TEST_F(LocalIntensitiesTest, AreZeroForAProjectedLoadAlongTheBeam) {
  const BeamLoad local = Local(GlobalProjected, {0.8, 0.6, 0.0, 0.0});
  EXPECT_NEAR(local.qx, 0.0, 1e-7);
  EXPECT_EQ(local.qy, 0.0);
}

TEST_F(LocalIntensitiesTest, AreZeroForAProjectedLoadWithoutDirection) {
  const BeamLoad local = Local(GlobalProjected, {1e-16, 0.0, 0.0, 0.0});
  EXPECT_EQ(local.qx, 0.0);
  EXPECT_EQ(local.qy, 0.0);
}

TEST_F(LocalIntensitiesTest, DropTheNoiseOfTurning) {
  // Along the beam: the component across it is rounding only.
  const BeamLoad local = Local(GlobalPressure, {8e5, 6e5, 0.0, 0.0});
  EXPECT_DOUBLE_EQ(local.qx, 1e6);
  EXPECT_EQ(local.qy, 0.0);
  EXPECT_EQ(Local(LocalPressure, {1.0, 1e-13, 1e-15, 1e-13}).qy, 0.0);
  EXPECT_EQ(Local(LocalPressure, {1.0, 0.0, 0.0, 1e-13}).m, 0.0);
  EXPECT_EQ(Local(LocalPressure, {0.0, 1e-15, 0.0, 0.0}).qy, 0.0);
  EXPECT_EQ(Local(LocalPressure, {0.0, 2e-15, 0.0, 0.0}).qy, 2e-15);
}

TEST_F(LocalIntensitiesTest, RefuseShellLoads) {
  EXPECT_FATAL(Local(FaceLoad, {0.0, -1.0, 0.0, 0.0}, Plane),
               "error: applying a shell load to a beam element. ElemNum=12\n");
}

// --- StationStrength --------------------------------------------------------------------------

TEST(StationStrength, CountsAxialShearsTorqueAndMomentsInSpace) {
  const double L = 2.0, xi = 0.25;
  const BeamLoad load{1.0, 2.0, 3.0, 4.0};
  const auto at = [&](int c) { return StationStrength(load, c, xi, L, Space, 11); };
  EXPECT_EQ(at(1), GiveLocalStrength(1, xi, L, 1.0, 11));
  EXPECT_EQ(at(2), GiveLocalStrength(2, xi, L, 2.0, 11));
  EXPECT_EQ(at(3), GiveLocalStrength(2, xi, L, 3.0, 11));
  EXPECT_EQ(at(4), GiveLocalStrength(4, xi, L, 4.0, 11));
  EXPECT_EQ(at(5), GiveLocalStrength(3, xi, L, 3.0, 11));
  EXPECT_EQ(at(6), GiveLocalStrength(3, xi, L, 2.0, 11));
}

TEST(StationStrength, CountsAxialShearMomentInThePlane) {
  const BeamLoad load{1.0, 2.0, 0.0, 0.0};
  EXPECT_EQ(StationStrength(load, 1, 0.1, 2.0, Plane, 10), GiveLocalStrength(1, 0.1, 2.0, 1.0, 10));
  EXPECT_EQ(StationStrength(load, 2, 0.1, 2.0, Plane, 10), GiveLocalStrength(2, 0.1, 2.0, 2.0, 10));
  EXPECT_EQ(StationStrength(load, 3, 0.1, 2.0, Plane, 10), GiveLocalStrength(3, 0.1, 2.0, 2.0, 10));
}

TEST(StationStrength, OfAComponentWithoutLoadIsZeroEvenWithAHingeAtEnd1) {
  EXPECT_EQ(StationStrength({1.0, 0.0, 0.0, 0.0}, 3, 0.5, 2.0, Plane, 1), 0.0);
}

}  // namespace

}  // namespace kestol
