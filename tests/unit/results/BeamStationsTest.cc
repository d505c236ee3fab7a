#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "analysis/MeshPart.h"
#include "results/BeamStations.h"
#include "tests/support/SmallModel.h"

namespace kestol {

namespace {

constexpr int kEndCodes[] = {BothFixed, HingeAtEnd2, HingeAtEnd1, BothHinged};

// One beam with everything that the stations ask for. Section of AddMaterial: E Iz = 2e6,
// E Iy = 4e6, E A = 2e9.
class OneBeam {
public:
  explicit OneBeam(ProblemType problemType)
      : model(problemType, problemType == Plane ? 3 : 6), beam(model.project) {
    model.AddMesh(Linear, 2);
    model.AddNode(1, 0.0, 0.0);
    model.AddNode(2, 0.0, 0.0);
    model.AddElem(1, {1, 2});
    model.AddMaterial(1);
    model.Size();
    To(3.0, 0.0, 0.0);
  }

  OneBeam& To(double x, double y, double z) {
    Node& end = model.NodeOf(2);
    end.x = x;
    end.y = y;
    end.z = z;
    return *this;
  }
  OneBeam& Ends(int code) {
    model.project.endCodes = {code};
    return *this;
  }

  // Forces of the stiffness on the ends, from the displacements.
  BeamElement& Solve() {
    ends = ReaVecT(2 * model.project.dofsPerNode);
    BeamStrengths(model.project, *model.project.meshes[0], model.results.displacements, ends);
    beam.SetElem(*model.project.meshes[0]->elems.Get(1));
    return beam;
  }
  double Strength(int c, double xi) {
    Solve();
    return BeamStrength(beam, ends.begin(), c).At(xi);
  }
  std::array<double, 3> Displacement(double xi) {
    return BeamDisplacements(Solve(), model.results.displacements).At(xi);
  }

  SmallModel model;
  BeamElement beam;
  ReaVecT ends;
};

constexpr double kEA = 2e9, kEIz = 2e6, kEIy = 4e6;

void ExpectClose(double value, double wanted, double scale) {
  EXPECT_NEAR(value, wanted, 1e-10 * scale);
}

// --- closed forms ------------------------------------------------------------------------------

TEST(BeamStations, CantileverWithEndLoadBendsAsInTheBooks) {
  const double P = 1000.0, L = 3.0;
  OneBeam frame(Plane);
  frame.model.Displace(2, {0.0, P * L * L * L / (3 * kEIz), P * L * L / (2 * kEIz)});
  for (const double xi : {0.0, 0.25, 0.5, 0.8, 1.0}) {
    const double x = xi * L;
    ExpectClose(frame.Displacement(xi)[1], P * x * x * (3 * L - x) / (6 * kEIz), 1e-2);
    ExpectClose(frame.Strength(2, xi), -P, P);
    ExpectClose(frame.Strength(3, xi), P * (L - x), P * L);
  }
}

TEST(BeamStations, CantileverUnderItsWeightBendsAsInTheBooks) {
  const double q = 500.0, L = 3.0;
  OneBeam frame(Plane);
  frame.model.project.materials.Get(1)->Weight = q / 1e-2;
  frame.model.project.gravity = ReaVec3(0.0, -1.0, 0.0);
  frame.model.Displace(2, {0.0, -q * std::pow(L, 4) / (8 * kEIz), -q * L * L * L / (6 * kEIz)});
  for (const double xi : {0.0, 0.1, 0.5, 0.7, 1.0}) {
    const double x = xi * L;
    ExpectClose(frame.Displacement(xi)[1],
                -q * x * x * (6 * L * L - 4 * L * x + x * x) / (24 * kEIz), 1e-2);
    ExpectClose(frame.Strength(2, xi), q * (L - x), q * L);
    ExpectClose(frame.Strength(3, xi), -q * (L - x) * (L - x) / 2, q * L * L);
  }
}

TEST(BeamStations, SimpleSpanHasItsMomentAndItsDeflectionInTheMiddle) {
  const double q = 40.0, L = 3.0;
  for (const double direction : {1.0, -1.0}) {
    OneBeam frame(Plane);
    frame.Ends(BothHinged).model.Load(1, LocalPressure, {0.0, direction * q, 0.0});
    ExpectClose(frame.Strength(3, 0.5), -direction * q * L * L / 8, q * L * L);
    ExpectClose(frame.Strength(3, 0.0), 0.0, q * L * L);
    ExpectClose(frame.Strength(3, 1.0), 0.0, q * L * L);
    ExpectClose(frame.Strength(2, 0.0), -direction * q * L / 2, q * L);
    ExpectClose(frame.Displacement(0.5)[1], direction * 5 * q * std::pow(L, 4) / (384 * kEIz),
                1e-3);
  }
}

TEST(BeamStations, FixedSpanHasItsMomentsAndItsDeflection) {
  const double q = 40.0, L = 3.0;
  OneBeam frame(Plane);
  frame.model.Load(1, LocalPressure, {0.0, q, 0.0});
  ExpectClose(frame.Strength(3, 0.0), q * L * L / 12, q * L * L);
  ExpectClose(frame.Strength(3, 0.5), -q * L * L / 24, q * L * L);
  ExpectClose(frame.Strength(3, 1.0), q * L * L / 12, q * L * L);
  ExpectClose(frame.Displacement(0.5)[1], q * std::pow(L, 4) / (384 * kEIz), 1e-3);
}

TEST(BeamStations, ProppedSpansHaveTheirDeflection) {
  const double q = 40.0, L = 3.0;
  for (const int code : {HingeAtEnd2, HingeAtEnd1}) {
    OneBeam frame(Plane);
    frame.Ends(code).model.Load(1, LocalPressure, {0.0, q, 0.0});
    ExpectClose(frame.Displacement(0.5)[1], q * std::pow(L, 4) / (192 * kEIz), 1e-3);
  }
}

TEST(BeamStations, AxialLoadStretchesTheBeamBetweenItsEnds) {
  const double q = 40.0, L = 3.0;
  for (const int code : kEndCodes) {
    OneBeam frame(Plane);
    frame.Ends(code).model.Load(1, LocalPressure, {q, 0.0, 0.0});
    ExpectClose(frame.Displacement(0.5)[0], q * L * L / (8 * kEA), 1e-8);
    ExpectClose(frame.Displacement(1.0)[0], 0.0, 1e-8);
  }
}

TEST(BeamStations, TensionIsPositive) {
  OneBeam frame(Plane);
  frame.model.Displace(2, {0.003, 0.0, 0.0});
  for (const double xi : {0.0, 0.3, 1.0}) ExpectClose(frame.Strength(1, xi), kEA * 0.001, kEA);
}

TEST(BeamStations, ForcesOfZeroHaveNoSign) {
  for (const ProblemType problemType : {Plane, Space}) {
    OneBeam frame(problemType);
    for (int c = 1; c <= frame.model.project.dofsPerNode; ++c)
      for (const double xi : {0.0, 0.5, 1.0}) {
        EXPECT_EQ(frame.Strength(c, xi), 0.0);
        EXPECT_FALSE(std::signbit(frame.Strength(c, xi)));
      }
  }
}

TEST(BeamStations, ForcesWithoutLoadAreExactlyConstant) {
  OneBeam frame(Plane);
  frame.To(2.0, 1.3, 0.0).model.Displace(1, {1e-3, -2e-3, 3e-3});
  frame.model.Displace(2, {-2e-3, 4e-3, 1e-3});
  for (int c = 1; c <= 2; ++c)
    for (const double xi : {0.1, 0.35, 1.0})
      EXPECT_EQ(frame.Strength(c, xi), frame.Strength(c, 0.0));
}

TEST(BeamStations, CoupleAlongTheBeamGivesTorque) {
  OneBeam frame(Space);
  frame.model.Load(1, LocalPressure, {0.0, 0.0, 0.0, 8.0, 0.0, 0.0});
  ExpectClose(frame.Strength(4, 0.0), 12.0, 12.0);
  ExpectClose(frame.Strength(4, 0.5), 0.0, 12.0);
  ExpectClose(frame.Strength(4, 1.0), -12.0, 12.0);
}

// --- every end code, every plane ---------------------------------------------------------------

// A displaced and loaded beam askew in space, or in the plane.
class AskewBeam : public OneBeam {
public:
  AskewBeam(ProblemType problemType, int code, double q) : OneBeam(problemType) {
    Ends(code);
    if (problemType == Plane) {
      To(2.0, 1.5, 0.0);
      model.Displace(1, {1e-3, -2e-3, 3e-3});
      model.Displace(2, {-2e-3, 4e-3, 1e-3});
      model.Load(1, LocalPressure, {q, q, 0.0});
    } else {
      To(2.0, 1.0, -1.5);
      model.Displace(1, {1e-3, -2e-3, 3e-3, 2e-3, -1e-3, 4e-3});
      model.Displace(2, {-2e-3, 4e-3, 1e-3, 1e-3, 3e-3, -2e-3});
      model.Load(1, LocalPressure, {q, q, q, 0.0, 0.0, 0.0});
    }
  }
};

// Displacement along local axis i (from 1).
double Local(OneBeam& frame, double xi, int i) {
  const auto u = frame.Displacement(xi);
  double local = 0.0;
  for (int j = 1; j <= 3; ++j)
    if (j < 3 || frame.model.project.problemType == Space) local += frame.beam.T(j, i) * u[j - 1];
  return local;
}

// With a hinge at end 1 the moment carries no q, so that it fits the deflection for q = 1 only: the
// load is 1 there, and the section so slender that 1 is much.
class EndCodes : public testing::TestWithParam<int> {};

TEST_P(EndCodes, DeflectionsMeetTheEndNodes) {
  for (const ProblemType problemType : {Plane, Space}) {
    AskewBeam frame(problemType, GetParam(), 1000.0);
    const int dofs = frame.model.project.dofsPerNode;
    for (const int end : {0, 1}) {
      const auto u = frame.Displacement(end);
      for (int d = 0; d < (problemType == Plane ? 2 : 3); ++d)
        ExpectClose(u[d], frame.model.results.displacements(end * dofs + d + 1), 1e-2);
    }
  }
}

TEST_P(EndCodes, MomentIsTheCurvatureTimesTheStiffness) {
  for (const ProblemType problemType : {Plane, Space}) {
    AskewBeam frame(problemType, GetParam(), 1.0);
    Material& material = *frame.model.project.materials.Get(1);
    material.E1 = 100.0 / 1e-5;
    const double EIz = 100.0, EIy = 200.0;
    for (const double xi : {0.2, 0.5, 0.75}) {
      const double h = 1e-3;
      const auto curvature = [&](int axis) {
        const double dx = h * frame.Solve().L;
        return (Local(frame, xi - h, axis) - 2 * Local(frame, xi, axis) +
                Local(frame, xi + h, axis)) /
               (dx * dx);
      };
      EXPECT_NEAR(frame.Strength(problemType == Plane ? 3 : 6, xi), EIz * curvature(2), 1e-5);
      if (problemType == Space) {
        EXPECT_NEAR(frame.Strength(5, xi), EIy * curvature(3), 1e-5);
      }
    }
  }
}

TEST_P(EndCodes, ShearIsTheSlopeOfTheMoment) {
  for (const ProblemType problemType : {Plane, Space}) {
    AskewBeam frame(problemType, GetParam(), 1.0);
    frame.model.project.materials.Get(1)->E1 = 100.0 / 1e-5;
    const double L = frame.Solve().L, h = 1e-3;
    const auto slope = [&](int c, double xi) {
      return (frame.Strength(c, xi + h) - frame.Strength(c, xi - h)) / (2 * h * L);
    };
    for (const double xi : {0.2, 0.5, 0.75}) {
      EXPECT_NEAR(frame.Strength(2, xi), slope(problemType == Plane ? 3 : 6, xi), 1e-8);
      if (problemType == Space) {
        EXPECT_NEAR(frame.Strength(3, xi), slope(5, xi), 1e-8);
      }
    }
  }
}

TEST_P(EndCodes, HingedEndsHaveNoMoment) {
  for (const ProblemType problemType : {Plane, Space}) {
    AskewBeam frame(problemType, GetParam(), 1.0);
    const int Mz = problemType == Plane ? 3 : 6;
    if (GetParam() / 10 == 0) {
      EXPECT_NEAR(frame.Strength(Mz, 0.0), 0.0, 1e-6);
    }
    if (GetParam() % 10 == 0) {
      EXPECT_NEAR(frame.Strength(Mz, 1.0), 0.0, 1e-6);
    }
  }
}

TEST_P(EndCodes, RigidMotionsLeaveTheBeamStraight) {
  OneBeam frame(Space);
  frame.Ends(GetParam()).To(2.0, 1.0, -1.5);
  const double t[] = {0.3, -0.2, 0.1}, w[] = {0.02, -0.01, 0.03}, d[] = {2.0, 1.0, -1.5};
  const double spin[] = {w[1] * d[2] - w[2] * d[1], w[2] * d[0] - w[0] * d[2],
                         w[0] * d[1] - w[1] * d[0]};
  frame.model.Displace(1, {t[0], t[1], t[2], w[0], w[1], w[2]});
  frame.model.Displace(2, {t[0] + spin[0], t[1] + spin[1], t[2] + spin[2], w[0], w[1], w[2]});
  for (const double xi : {0.25, 0.6}) {
    const auto u = frame.Displacement(xi);
    for (int i = 0; i < 3; ++i) ExpectClose(u[i], t[i] + xi * spin[i], 1.0);
  }
}

INSTANTIATE_TEST_SUITE_P(BeamStations, EndCodes, testing::ValuesIn(kEndCodes),
                         [](const auto& code) { return "Code" + std::to_string(code.param); });

// --- loads -------------------------------------------------------------------------------------

TEST(BeamStations, LoadsOfABeamAddUp) {
  OneBeam both(Plane), twice(Plane);
  both.model.Load(1, LocalPressure, {5.0, 3.0, 0.0});
  both.model.Load(1, LocalPressure, {5.0, 3.0, 0.0});
  twice.model.Load(1, LocalPressure, {10.0, 6.0, 0.0});
  for (const double xi : {0.0, 0.3, 1.0}) {
    for (int c = 1; c <= 3; ++c) ExpectClose(both.Strength(c, xi), twice.Strength(c, xi), 10.0);
    for (int i = 0; i < 2; ++i)
      ExpectClose(both.Displacement(xi)[i], twice.Displacement(xi)[i], 1e-4);
  }
}

TEST(BeamStations, WithAHingeAtEndOneTheMomentIsNotMultipliedByTheLoad) {
  OneBeam one(Plane), ten(Plane);
  one.Ends(HingeAtEnd1).model.Load(1, LocalPressure, {0.0, 1.0, 0.0});
  ten.Ends(HingeAtEnd1).model.Load(1, LocalPressure, {0.0, 10.0, 0.0});
  EXPECT_EQ(one.Strength(3, 0.5), ten.Strength(3, 0.5));
  EXPECT_NE(one.Strength(3, 0.5), 0.0);
}

TEST(BeamStations, WithAHingeAtEndOneUnloadedPlanesHaveNoMoment) {
  OneBeam frame(Space);
  frame.Ends(HingeAtEnd1).model.Load(1, LocalPressure, {0.0, 2.0, 0.0, 0.0, 0.0, 0.0});
  EXPECT_EQ(frame.Strength(5, 0.5), 0.0);
  EXPECT_NE(frame.Strength(6, 0.5), 0.0);
}

TEST(BeamStations, DisplacementsInThePlaneHaveNoThirdComponent) {
  AskewBeam frame(Plane, BothFixed, 7.0);
  for (const double xi : {0.0, 0.4, 1.0}) EXPECT_EQ(frame.Displacement(xi)[2], 0.0);
}

}  // namespace

}  // namespace kestol
