#include <cmath>
#include <numbers>

#include "algebra/FixedMatrix.h"
#include "algebra/Matriu.h"
#include "algebra/Vector3.h"
#include "model/Constraint.h"
#include "model/EulerAngles.h"
#include "tests/support/ExpectFatal.h"

namespace kestol {

namespace {

constexpr double kPi = std::numbers::pi;

Constraint Turned(int dofs, double Euler1, double Euler2, double Euler3) {
  Constraint constraint(dofs);
  constraint.hasLocalAxes = 1;
  constraint.Euler1 = Euler1;
  constraint.Euler2 = Euler2;
  constraint.Euler3 = Euler3;
  return constraint;
}

/// cos of the angle of the turn from A to B.
double CosineBetween(const FixedMatrix<3, 3>& A, const FixedMatrix<3, 3>& B) {
  const FixedMatrix<3, 3> Q = TransposeTimes(A, B);
  return (Q(1, 1) + Q(2, 2) + Q(3, 3) - 1.0) / 2.0;
}

TEST(Constraint, NewRecordIsFreeWithoutValuesOrAxes) {
  const Constraint constraint(6);
  EXPECT_EQ(constraint.dofs, 6);
  EXPECT_EQ(constraint.hasLocalAxes, 0);
  for (int d = 0; d < 6; ++d) {
    EXPECT_EQ(constraint.codes[d], Free);
    EXPECT_EQ(constraint.values[d], 0.0);
    EXPECT_FALSE(constraint.IsConstrained(d));
  }
}

TEST(Constraint, OnlyPrescribedDegreesAndSpringsAreConstrained) {
  Constraint constraint(6);
  constraint.codes = {0, 1, 2, 3, 8, 9};
  const bool expected[] = {false, true, true, false, false, false};
  for (int d = 0; d < 6; ++d) EXPECT_EQ(constraint.IsConstrained(d), expected[d]) << d;
}

// --- axes of a node ---------------------------------------------------------------------------

TEST(NodeAxesMatrix, RecordWithoutAxesLeavesTheMatrixAlone) {
  Matriu T(2, 2);
  T.Fill(5.0);
  EXPECT_EQ(NodeAxesMatrix(Constraint(3), 1, T, 3, 1), 1);
  EXPECT_EQ(T.nrows, 2);
  EXPECT_EQ(T(2, 2), 5.0);
}

TEST(NodeAxesMatrix, PlaneAxesTurnAboutZ) {
  Matriu T;
  EXPECT_EQ(NodeAxesMatrix(Turned(3, 0, 0, kPi / 6), 1, T, 3, 1), 0);
  ASSERT_EQ(T.nrows, 3);
  ASSERT_EQ(T.ncols, 3);
  EXPECT_NEAR(T(1, 1), std::sqrt(3.0) / 2, 1e-15);
  EXPECT_NEAR(T(2, 1), 0.5, 1e-15);
  EXPECT_NEAR(T(1, 2), -0.5, 1e-15);
  EXPECT_EQ(T(3, 3), 1.0);
  EXPECT_EQ(T(1, 3), 0.0);
}

TEST(NodeAxesMatrix, SpaceAxesStandTwiceOnTheDiagonal) {
  Matriu T(6, 6);
  T.Fill(9.0);
  const double* const buffer = T.data.get();
  EXPECT_EQ(NodeAxesMatrix(Turned(6, 0.3, -0.4, 2.0), 1, T, 6, 1), 0);
  EXPECT_EQ(T.data.get(), buffer);
  const FixedMatrix<3, 3> R = EulerRotation(0.3, -0.4, 2.0);
  for (int i = 1; i <= 3; ++i)
    for (int j = 1; j <= 3; ++j) {
      EXPECT_EQ(T(i, j), R(i, j));
      EXPECT_EQ(T(i + 3, j + 3), R(i, j));
      EXPECT_EQ(T(i, j + 3), 0.0);
      EXPECT_EQ(T(i + 3, j), 0.0);
    }
}

TEST(NodeAxesMatrix, PlaneAxesThatLeaveThePlaneEndTheRun) {
  const char* const text = "error: Local z axe must be (0,0,1) for 2D problems.Node: 12\n";
  Matriu T;
  for (const Constraint& constraint :
       {Turned(3, 0.1, 0, 0), Turned(3, 0, 0.1, 0), Turned(3, kPi, 0, 0), Turned(3, 2e-15, 0, 0),
        Turned(3, 0, -2e-15, 0.3), Turned(3, std::nan(""), 0, 0)})
    EXPECT_FATAL(NodeAxesMatrix(constraint, 12, T, 3, 1), text);
}

TEST(NodeAxesMatrix, WholeTurnsStayInThePlane) {
  Matriu T;
  EXPECT_EQ(NodeAxesMatrix(Turned(3, 2 * kPi, 2 * kPi, 0.3), 12, T, 3, 1), 0);
  EXPECT_NEAR(T(1, 1), std::cos(0.3), 1e-15);
}

TEST(NodeAxesMatrix, SolidsAndSpaceTakeAnyAxes) {
  Matriu T;
  EXPECT_EQ(NodeAxesMatrix(Turned(3, 0.5, 0, 0), 12, T, 3, 0), 0);
  ASSERT_EQ(T.nrows, 3);
  EXPECT_NEAR(T(3, 2), std::sin(0.5), 1e-15);
  EXPECT_EQ(NodeAxesMatrix(Turned(6, 0.5, 0, 0), 12, T, 6, 1), 0);
  EXPECT_EQ(T.nrows, 6);
}

// --- merging ----------------------------------------------------------------------------------

TEST(MergeTwoConstraints, NodeBetweenASupportedAndAFreeOneIsFree) {
  const Constraint constraint(6);
  EXPECT_EQ(MergeTwoConstraints(nullptr, nullptr), nullptr);
  EXPECT_EQ(MergeTwoConstraints(&constraint, nullptr), nullptr);
  EXPECT_EQ(MergeTwoConstraints(nullptr, &constraint), nullptr);
}

TEST(MergeTwoConstraints, DegreesPrescribedAtBothGetTheMeanValue) {
  Constraint a(6), b(6);
  a.codes = {1, 1, 0, 2, 1, 3};
  a.values = {0.01, 0.5, 0.0, 8.0, 0.0, 1.0};
  b.codes = {1, 0, 1, 2, 2, 3};
  b.values = {0.03, 0.0, 0.7, 8.0, 6.0, 1.0};
  const auto merged = MergeTwoConstraints(&a, &b);
  ASSERT_NE(merged, nullptr);
  EXPECT_EQ(merged->dofs, 6);
  EXPECT_EQ(merged->codes, (std::array{1, 0, 0, 0, 0, 0}));
  EXPECT_DOUBLE_EQ(merged->values[0], 0.02);
  for (int d = 1; d < 6; ++d) EXPECT_EQ(merged->values[d], 0.0);
  EXPECT_EQ(merged->hasLocalAxes, 0);
}

TEST(MergeTwoConstraints, NothingPrescribedAtBothIsNoSupport) {
  Constraint a(6), b(6);
  a.codes = {1, 0, 2, 2, 0, 3};
  b.codes = {0, 1, 2, 1, 0, 3};
  EXPECT_EQ(MergeTwoConstraints(&a, &b), nullptr);
}

std::unique_ptr<Constraint> MergeAxes(Constraint a, Constraint b) {
  a.codes[0] = b.codes[0] = 1;
  return MergeTwoConstraints(&a, &b);
}

TEST(MergeTwoConstraints, EqualAxesAreCopiedToTheLastBit) {
  const auto merged = MergeAxes(Turned(6, 9.1, 2.2, -3.3), Turned(6, 9.1, 2.2, -3.3));
  EXPECT_EQ(merged->hasLocalAxes, 1);
  EXPECT_EQ(merged->Euler1, 9.1);
  EXPECT_EQ(merged->Euler2, 2.2);
  EXPECT_EQ(merged->Euler3, -3.3);
}

TEST(MergeTwoConstraints, TurnsAboutTheSameAxisHaveTheMeanAngle) {
  const auto merged = MergeAxes(Turned(6, 0, 0, 0.2), Turned(6, 0, 0, 0.8));
  EXPECT_EQ(merged->hasLocalAxes, 1);
  EXPECT_EQ(merged->Euler1, 0.0);
  EXPECT_EQ(merged->Euler2, 0.0);
  EXPECT_NEAR(merged->Euler3, 0.5, 1e-15);
}

TEST(MergeTwoConstraints, RecordWithoutAxesCountsAsGlobalAxes) {
  const auto second = MergeAxes(Constraint(6), Turned(6, 0.6, 0, 0));
  EXPECT_NEAR(second->Euler1, 0.3, 1e-15);
  const auto first = MergeAxes(Turned(6, 0, 0.6, 0), Constraint(6));
  EXPECT_EQ(first->hasLocalAxes, 1);
  EXPECT_NEAR(first->Euler2, 0.3, 1e-15);
}

TEST(MergeTwoConstraints, AxesAreHalfWayBetweenTheTwoTheShortWay) {
  for (const double e1 : {0.0, 0.5, 2.9})
    for (const double e2 : {-1.3, 0.0, 0.8})
      for (const double e3 : {0.1, 3.0, 6.0}) {
        const Constraint a = Turned(6, 0.4, -0.3, 1.2), b = Turned(6, e1, e2, e3);
        const auto merged = MergeAxes(a, b);
        const FixedMatrix<3, 3> A = AxesOf(a), B = AxesOf(b), M = AxesOf(*merged);
        const double whole = std::acos(CosineBetween(A, B));
        EXPECT_NEAR(std::acos(CosineBetween(A, M)), whole / 2, 1e-7);
        EXPECT_NEAR(std::acos(CosineBetween(M, B)), whole / 2, 1e-7);
        const FixedMatrix<3, 3> H = TransposeTimes(A, M), there = A * (H * H);
        for (int k = 0; k < 9; ++k) EXPECT_NEAR(there.entries[k], B.entries[k], 1e-12);
      }
}

TEST(MergeTwoConstraints, HalfTurnsAreHalvedAboutTheirAxis) {
  for (const Constraint& b : {Turned(6, kPi, 0, 0), Turned(6, 0, kPi, 0), Turned(6, 0, 0, kPi),
                              Turned(6, kPi, 0, 1.0), Turned(6, kPi, 0.6, 0)}) {
    const auto merged = MergeAxes(Constraint(6), b);
    ASSERT_NE(merged, nullptr);
    const FixedMatrix<3, 3> B = AxesOf(b), H = AxesOf(*merged), HH = H * H;
    EXPECT_NEAR(CosineBetween(
                    {
                        {1, 0, 0, 0, 1, 0, 0, 0, 1}
    },
                    B),
                -1.0, 1e-15);
    EXPECT_NEAR(CosineBetween(
                    {
                        {1, 0, 0, 0, 1, 0, 0, 0, 1}
    },
                    H),
                0.0, 1e-12);
    for (int k = 0; k < 9; ++k) EXPECT_NEAR(HH.entries[k], B.entries[k], 1e-12);
  }
}

TEST(MergeTwoConstraints, TurnsBesideAHalfTurnKeepTheirDigits) {
  for (const double beside : {1e-3, 1e-6, 1e-9, 1e-11, -1e-11, -1e-9, -1e-6})
    for (const Constraint& b :
         {Turned(6, kPi - beside, 0, 0.3), Turned(6, kPi, 0.6 + beside, beside)}) {
      const auto merged = MergeAxes(Constraint(6), b);
      const FixedMatrix<3, 3> B = AxesOf(b), H = AxesOf(*merged), HH = H * H;
      for (int k = 0; k < 9; ++k) EXPECT_NEAR(HH.entries[k], B.entries[k], 4e-15);
    }
}

TEST(MergeTwoConstraints, HalfTurnsKeepTheirDigitsWhenTheAxisHasASmallComponent) {
  const double h = std::sqrt(0.5), e = 1e-9;
  for (const Vector3& k : {
           Vector3{e, h, h},
           Vector3{h, e, h},
           Vector3{h, h, e}
  }) {
    FixedMatrix<3, 3> B;  // 2 k k^T - I
    for (int i = 1; i <= 3; ++i)
      for (int j = 1; j <= 3; ++j) B(i, j) = 2.0 * k[i - 1] * k[j - 1] - (i == j ? 1.0 : 0.0);
    const ReaVec3 angles = FrameToAngles(B);
    const auto merged = MergeAxes(Constraint(6), Turned(6, angles(1), angles(2), angles(3)));
    const FixedMatrix<3, 3> H = AxesOf(*merged), HH = H * H;
    for (int n = 0; n < 9; ++n) EXPECT_NEAR(HH.entries[n], B.entries[n], 1e-14);
  }
}

TEST(MergeTwoConstraints, AxesThatDifferByRoundingOnlyAreKept) {
  for (int n = 1; n <= 30; ++n) {
    const double angle = 0.1 * n;
    const auto merged =
        MergeAxes(Turned(6, 0.3, angle / 3.0, angle), Turned(6, 0.3, angle / 3.0, angle + 2e-15));
    const FixedMatrix<3, 3> H = AxesOf(*merged), A = AxesOf(Turned(6, 0.3, angle / 3.0, angle));
    for (int k = 0; k < 9; ++k) EXPECT_NEAR(H.entries[k], A.entries[k], 1e-14) << angle;
  }
}

TEST(MergeTwoConstraints, DifferentAnglesOfTheSameAxesGiveTheseAxes) {
  const auto merged = MergeAxes(Turned(6, 0, 0, 0.5), Turned(6, 0, 0, 0.5 + 2 * kPi));
  EXPECT_EQ(merged->hasLocalAxes, 1);
  EXPECT_NEAR(merged->Euler3, 0.5, 1e-15);
  const auto none = MergeAxes(Turned(6, 0, 0, 2 * kPi), Constraint(6));
  EXPECT_EQ(none->hasLocalAxes, 1);
  EXPECT_EQ(none->Euler3, 0.0);
}

TEST(MergeTwoConstraints, RecordsOfDifferentSizeMergeInWhatBothHave) {
  Constraint a(3), b(6);
  a.codes = {1, 1, 1, 0, 0, 0};
  b.codes = {1, 1, 1, 1, 1, 1};
  const auto merged = MergeTwoConstraints(&a, &b);
  ASSERT_NE(merged, nullptr);
  EXPECT_EQ(merged->dofs, 3);
  EXPECT_EQ(merged->codes, (std::array{1, 1, 1, 0, 0, 0}));
}

}  // namespace

}  // namespace kestol
