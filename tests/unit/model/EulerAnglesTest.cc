#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

#include "algebra/Matriu.h"
#include "model/EulerAngles.h"

namespace kestol {

namespace {

constexpr double kPi = std::numbers::pi;

FixedMatrix<3, 3> AboutX(double a) {
  return {
      {1, 0, 0, 0, std::cos(a), -std::sin(a), 0, std::sin(a), std::cos(a)}
  };
}
FixedMatrix<3, 3> AboutY(double a) {
  return {
      {std::cos(a), 0, std::sin(a), 0, 1, 0, -std::sin(a), 0, std::cos(a)}
  };
}
FixedMatrix<3, 3> AboutZ(double a) {
  return {
      {std::cos(a), -std::sin(a), 0, std::sin(a), std::cos(a), 0, 0, 0, 1}
  };
}

void ExpectSameFrame(const FixedMatrix<3, 3>& A, const FixedMatrix<3, 3>& B, double tolerance) {
  for (int k = 0; k < 9; ++k) EXPECT_NEAR(A.entries[k], B.entries[k], tolerance);
}

/// Angles around the circle, on the axes and beside them.
std::vector<double> Angles(double from, double to) {
  std::vector<double> angles;
  for (int step = 0; step <= 12; ++step) {
    const double angle = from + (to - from) * step / 12.0;
    for (const double beside : {0.0, 0.1, 1e-7, 1e-11}) angles.push_back(angle + beside);
  }
  return angles;
}

template <class Check>
void ForManyFrames(Check check) {
  for (const double e1 : Angles(0.0, 2 * kPi))
    for (const double e2 : Angles(-kPi / 2, kPi / 2))
      for (const double e3 : Angles(0.0, 2 * kPi)) check(e1, e2, e3);
}

TEST(EulerAngles, RotationTurnsAboutXThenYThenZ) {
  ForManyFrames([](double e1, double e2, double e3) {
    ExpectSameFrame(EulerRotation(e1, e2, e3), AboutZ(e3) * (AboutY(e2) * AboutX(e1)), 1e-15);
  });
}

TEST(EulerAngles, TurnAboutZTakesLocalXTowardsGlobalY) {
  const FixedMatrix<3, 3> R = EulerRotation(0, 0, kPi / 6);
  EXPECT_NEAR(R(1, 1), std::sqrt(3.0) / 2, 1e-15);
  EXPECT_NEAR(R(2, 1), 0.5, 1e-15);
  EXPECT_NEAR(R(1, 2), -0.5, 1e-15);
}

TEST(EulerAngles, FramesAreOrthonormalAndRightHanded) {
  ForManyFrames([](double e1, double e2, double e3) {
    const FixedMatrix<3, 3> R = EulerRotation(e1, e2, e3);
    ExpectSameFrame(TransposeTimes(R, R),
                    {
                        {1, 0, 0, 0, 1, 0, 0, 0, 1}
    },
                    1e-15);
    EXPECT_NEAR(R(1, 1) * R(2, 2) - R(1, 2) * R(2, 1), R(3, 3), 1e-15);
  });
}

TEST(EulerAngles, MatriuFormGivesTheSameEntriesWithoutANewBuffer) {
  Matriu R(3, 3);
  const double* const buffer = R.data.get();
  EulerRotation(0.3, -0.4, 2.5, R);
  EXPECT_EQ(R.data.get(), buffer);
  const FixedMatrix<3, 3> expected = EulerRotation(0.3, -0.4, 2.5);
  for (int i = 1; i <= 3; ++i)
    for (int j = 1; j <= 3; ++j) EXPECT_EQ(R(i, j), expected(i, j));
}

TEST(EulerAngles, AnglesOfAFrameGiveTheFrameBackAlsoWhenXIsVertical) {
  ForManyFrames([](double e1, double e2, double e3) {
    const FixedMatrix<3, 3> R = EulerRotation(e1, e2, e3);
    const ReaVec3 a = FrameToAngles(R);
    ExpectSameFrame(EulerRotation(a(1), a(2), a(3)), R, 2e-12);  // angles below 1e-12 become 0
  });
}

TEST(EulerAngles, NearlyVerticalXKeepsTheFrameToTheLastDigits) {
  for (const double tilt : {1e-3, 1e-6, 1e-9, 1e-12, 1e-14, 1e-15, 1e-16, 0.0})
    for (const double sign : {-1.0, 1.0}) {
      const FixedMatrix<3, 3> R = EulerRotation(0.7, sign * (kPi / 2 - tilt), 1.9);
      const ReaVec3 a = FrameToAngles(R);
      ExpectSameFrame(EulerRotation(a(1), a(2), a(3)), R, 1e-15);
    }
}

TEST(EulerAngles, AnglesComeBackThemselvesInsideTheirRanges) {
  for (const double e1 : {0.0, 0.5, 3.0, 6.0})
    for (const double e2 : {-1.5, -0.2, 0.0, 1.2})
      for (const double e3 : {0.0, 1.0, 4.0, 6.2}) {
        const ReaVec3 a = FrameToAngles(EulerRotation(e1, e2, e3));
        EXPECT_NEAR(a(1), e1, 1e-14);
        EXPECT_NEAR(a(2), e2, 1e-14);
        EXPECT_NEAR(a(3), e3, 1e-14);
      }
}

TEST(EulerAngles, FirstAndThirdLieInOneTurnAndSecondInHalfATurn) {
  ForManyFrames([](double e1, double e2, double e3) {
    const ReaVec3 a = FrameToAngles(EulerRotation(e1, e2, e3));
    EXPECT_EQ(a.n, 3);
    for (const int k : {1, 3}) {
      EXPECT_GE(a(k), 0.0);
      EXPECT_LT(a(k), 2 * kPi);
      EXPECT_FALSE(std::signbit(a(k)));
    }
    EXPECT_LE(std::abs(a(2)), kPi / 2);
  });
}

TEST(EulerAngles, AnglesWithinRoundingOfZeroAreExactlyZero) {
  const double tiny = 5e-13;
  for (const double sign : {-1.0, 1.0}) {
    const ReaVec3 a = FrameToAngles(EulerRotation(sign * tiny, sign * tiny, sign * tiny));
    for (int k = 1; k <= 3; ++k) {
      EXPECT_EQ(a(k), 0.0);
      EXPECT_FALSE(std::signbit(a(k)));
    }
  }
  const ReaVec3 kept = FrameToAngles(EulerRotation(2e-12, -2e-12, 2e-12));
  EXPECT_NEAR(kept(1), 2e-12, 1e-15);
  EXPECT_NEAR(kept(2), -2e-12, 1e-15);
  EXPECT_NEAR(kept(3), 2e-12, 1e-15);
}

TEST(EulerAngles, VerticalXHasTheFirstAngleZero) {
  // x up, y along global x, z along global y: a beam that stands.
  const ReaVec3 a = FrameToAngles(FixedMatrix<3, 3>{
      {0, 1, 0, 0, 0, 1, 1, 0, 0}
  });
  EXPECT_EQ(a(1), 0.0);
  EXPECT_DOUBLE_EQ(a(2), -kPi / 2);
  EXPECT_DOUBLE_EQ(a(3), 3 * kPi / 2);
}

TEST(EulerAngles, FrameOfALargerMatrixIsItsUpperLeftBlock) {
  Matriu T(6, 6);
  T.Fill(9.0);
  const FixedMatrix<3, 3> R = EulerRotation(0.3, 0.2, 0.1);
  for (int i = 1; i <= 3; ++i)
    for (int j = 1; j <= 3; ++j) T(i, j) = R(i, j);
  const ReaVec3 a = FrameToAngles(T);
  EXPECT_NEAR(a(1), 0.3, 1e-15);
  EXPECT_NEAR(a(2), 0.2, 1e-15);
  EXPECT_NEAR(a(3), 0.1, 1e-15);
}

TEST(EulerAngles, MeanOfTwoGoesTheShortWayRound) {
  const ReaVec3 m = MeanAngles({0.1, 0.3, 6.1}, {6.1, -0.1, 0.3});
  EXPECT_NEAR(m(1), 3.1 + kPi, 1e-14);  // (0.1 + 2 pi + 6.1) / 2
  EXPECT_NEAR(m(2), 0.1, 1e-15);
  EXPECT_NEAR(m(3), 3.2 - kPi, 1e-14);  // (0.3 + 2 pi + 6.1) / 2 - 2 pi
}

TEST(EulerAngles, MeanOfTwoWithinHalfATurnIsPlain) {
  const ReaVec3 m = MeanAngles({1.0, -0.5, 2.0}, {4.0, 0.2, 5.0});
  EXPECT_DOUBLE_EQ(m(1), 2.5);
  EXPECT_DOUBLE_EQ(m(2), -0.15);
  EXPECT_DOUBLE_EQ(m(3), 3.5);
}

TEST(EulerAngles, MeanOfThreeEqualSetsIsTheSet) {
  const ReaVec3 a(6.2, -1.2, 0.0);
  const ReaVec3 m = MeanAngles(a, a, a);
  for (int k = 1; k <= 3; ++k) EXPECT_NEAR(m(k), a(k), 1e-14);
}

TEST(EulerAngles, MeanOfThreeAcrossZeroStaysAcrossZero) {
  // -0.1, 0.1 and 0.3 are 0.1 in the mean; -0.3, -0.1, 0.1 are -0.1.
  const double turn = 2 * kPi;
  EXPECT_NEAR(MeanAngles({turn - 0.1, 0, 0}, {0.1, 0, 0}, {0.3, 0, 0})(1), 0.1, 1e-14);
  EXPECT_NEAR(MeanAngles({0, 0, turn - 0.3}, {0, 0, turn - 0.1}, {0, 0, 0.1})(3), turn - 0.1,
              1e-14);
  EXPECT_NEAR(MeanAngles({0, -0.3, 0}, {0, 0.1, 0}, {0, 0.5, 0})(2), 0.1, 1e-15);
}

TEST(EulerAngles, AMeanOfAWholeTurnIsZero) {
  const double turn = 2 * kPi;
  EXPECT_EQ(MeanAngles({turn - 0.5, 0, 0}, {0.5, 0, 0})(1), 0);
}

}  // namespace

}  // namespace kestol
