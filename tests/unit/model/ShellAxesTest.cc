#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "algebra/Matriu.h"
#include "algebra/Vector3.h"
#include "model/EulerAngles.h"
#include "tests/support/Axes.h"
#include "tests/support/Elements.h"
#include "tests/support/ExpectFatal.h"

namespace kestol {

namespace {

constexpr double kPi = std::numbers::pi;

// --- given axes alone -------------------------------------------------------------------------

TEST(GivenAxes, NoMaterialOrNoAnglesLeaveTheMatrixAlone) {
  const LoneElement beam{
      {0, 0, 0},
      {1, 0, 0}
  };
  Matriu T(2, 2);
  T.Fill(5.0);
  const Material material;
  EXPECT_FALSE(beam.elem.GivenAxes(nullptr, T));
  EXPECT_FALSE(beam.elem.GivenAxes(&material, T));
  EXPECT_EQ(T.nrows, 2);
  EXPECT_EQ(T(1, 1), 5.0);
}

TEST(GivenAxes, AnglesOfTheMaterialAreTheirRotation) {
  const LoneElement beam{
      {0, 0, 0},
      {1, 0, 0}
  };
  const Material material = WithAngles(0.1, 0.2, 0.3);
  Matriu T, R;
  EXPECT_TRUE(beam.elem.GivenAxes(&material, T));
  EulerRotation(0.1, 0.2, 0.3, R);
  ASSERT_EQ(T.nrows, 3);
  ASSERT_EQ(T.ncols, 3);
  for (int k = 0; k < 9; ++k) EXPECT_EQ(T.data[k], R.data[k]);
}

// --- shells -----------------------------------------------------------------------------------

class ShellFrame : public ::testing::Test {
protected:
  ShellFrame() {
    T.Fill(99.0);
    T6.Fill(99.0);
  }

  /// Axes of a triangle with the unit normal n, its first side in an arbitrary direction.
  void CalcNormal(const Vector3& n, const Material* material = nullptr) {
    const Vector3 other = std::abs(n[0]) < 0.9 ? Vector3{1, 0, 0} : Vector3{0, 1, 0};
    const Vector3 a = Unit(Cross(n, other)), b = Cross(n, a);
    const LoneElement shell{
        {0, 0, 0},
        Plus(Times(a, 2), b), Plus(b, Times(a, -1))
    };
    shell.elem.ShellAxes(T, T6, material);
  }

  void ExpectAxes(const Vector3& x, const Vector3& y, const Vector3& z, double tolerance = 1e-15) {
    ExpectVector(Column(T, 1), x, tolerance);
    ExpectVector(Column(T, 2), y, tolerance);
    ExpectVector(Column(T, 3), z, tolerance);
  }

  Matriu T{3, 3}, T6{6, 6};
};

TEST_F(ShellFrame, HorizontalShellHasGlobalAxes) {
  const LoneElement shell{
      {0, 0, 0},
      {1, 0, 0},
      {0, 1, 0}
  };
  shell.elem.ShellAxes(T, T6, nullptr);
  ExpectAxes({1, 0, 0}, {0, 1, 0}, {0, 0, 1}, 0.0);
}

TEST_F(ShellFrame, ShellFacingDownTurnsXOver) {
  const LoneElement shell{
      {0, 0, 0},
      {0, 1, 0},
      {1, 0, 0}
  };
  shell.elem.ShellAxes(T, T6, nullptr);
  ExpectAxes({-1, 0, 0}, {0, 1, 0}, {0, 0, -1}, 0.0);
}

TEST_F(ShellFrame, ShellFacingXHasItsXHorizontal) {
  CalcNormal({1, 0, 0});
  ExpectAxes({0, 1, 0}, {0, 0, 1}, {1, 0, 0});
  const ReaVec3 angles = FrameToAngles(T);
  EXPECT_DOUBLE_EQ(angles(1), kPi / 2);
  EXPECT_EQ(angles(2), 0.0);
  EXPECT_DOUBLE_EQ(angles(3), kPi / 2);
}

TEST_F(ShellFrame, ReferenceAxisChangesAtASixtyfourth) {
  for (const double sign : {-1.0, 1.0}) {
    const double least = sign * 0.015626, less = sign * 0.015624;
    CalcNormal({least, 0, std::sqrt(1 - least * least)});
    ExpectVector(Column(T, 1), {0, sign, 0});
    CalcNormal({0, least, std::sqrt(1 - least * least)});
    ExpectVector(Column(T, 1), {-sign, 0, 0});
    CalcNormal({less, 0, std::sqrt(1 - less * less)});
    ExpectVector(Column(T, 1), {std::sqrt(1 - less * less), 0, -less});
    CalcNormal({0, less, std::sqrt(1 - less * less)});
    ExpectVector(Column(T, 1), {1, 0, 0});
  }
}

TEST_F(ShellFrame, EveryNormalHasAnOrthonormalFrame) {
  for (const Vector3& n : Directions()) {
    CalcNormal(n);
    ExpectRightHanded(T, 1e-15);
    ExpectVector(Column(T, 3), n, 1e-15);
  }
}

// Deliberate: the local rotations of a shell are about -y, x and the normal, in this order.
TEST_F(ShellFrame, RotationsAreAboutMinusYXAndTheNormal) {
  CalcNormal(Unit({1, 2, 3}));
  for (int r = 1; r <= 3; ++r) {
    for (int c = 1; c <= 3; ++c) {
      EXPECT_EQ(T6(r, c), T(r, c));
      EXPECT_EQ(T6(r, c + 3), 0.0);
      EXPECT_EQ(T6(r + 3, c), 0.0);
    }
    EXPECT_EQ(T6(r + 3, 4), -T(r, 2));
    EXPECT_EQ(T6(r + 3, 5), T(r, 1));
    EXPECT_EQ(T6(r + 3, 6), T(r, 3));
  }
}

TEST_F(ShellFrame, GivenAxesOnTheNormalAreKept) {
  const Material given = WithAngles(0, 0, 0.7);
  CalcNormal({0, 0, 1}, &given);
  ExpectAxes({std::cos(0.7), std::sin(0.7), 0}, {-std::sin(0.7), std::cos(0.7), 0}, {0, 0, 1});
}

TEST_F(ShellFrame, GivenAxesThatLeanEverSoLittleAreBroughtOntoTheNormal) {
  const Material given = WithAngles(1e-4, 1e-4, 0);  // the cosine of z is 1 - 1e-8
  CalcNormal({0, 0, 1}, &given);
  ExpectAxes({1, 0, 0}, {0, 1, 0}, {0, 0, 1});
}

TEST_F(ShellFrame, GivenXBesideTheNormalIsEnough) {
  const Material given = WithAngles(0, -1.5707963267948966 + 1e-8, 0);
  CalcNormal({0, 0, 1}, &given);
  ExpectAxes({1, 0, 0}, {0, 1, 0}, {0, 0, 1});
}

TEST_F(ShellFrame, GivenXIsProjectedIntoTheShell) {
  const Material given = WithAngles(0.3, -0.5, 0.7);
  const FixedMatrix<3, 3> R = EulerRotation(0.3, -0.5, 0.7);
  const Vector3 x0{R(1, 1), R(2, 1), R(3, 1)};
  for (const Vector3& n : Directions()) {
    if (std::abs(Dot(n, x0)) > 0.999) continue;
    CalcNormal(n, &given);
    ExpectRightHanded(T, 1e-15);
    ExpectVector(Column(T, 3), n, 1e-15);
    ExpectVector(Column(T, 1), Unit(Minus(x0, Times(n, Dot(n, x0)))), 1e-13);
  }
}

TEST_F(ShellFrame, GivenZAgainstTheNormalKeepsXOnly) {
  const Material given = WithAngles(kPi, 0, 0);  // x, -y, -z
  CalcNormal({0, 0, 1}, &given);
  ExpectAxes({1, 0, 0}, {0, 1, 0}, {0, 0, 1});
}

TEST_F(ShellFrame, GivenXAlongTheNormalEndsTheRun) {
  for (const double Euler2 : {-kPi / 2, kPi / 2}) {
    const Material given = WithAngles(0, Euler2, 0);
    const LoneElement shell{
        {0, 0, 0},
        {1, 0, 0},
        {0, 1, 0}
    };
    EXPECT_FATAL(shell.elem.ShellAxes(T, T6, &given),
                 "error in element 7. Normal to element and X local are parallel\n");
  }
}

TEST_F(ShellFrame, TriangleWithoutAreaEndsTheRun) {
  const char* const text = "error: element 7 is not correct\n";
  const LoneElement line{
      {0, 0, 0},
      {1, 1, 1},
      {2, 2, 2}
  };
  EXPECT_FATAL(line.elem.ShellAxes(T, T6, nullptr), text);
  const LoneElement tiny{
      {0,    0,    0},
      {2e-8, 0,    0},
      {0,    4e-8, 0}
  };  // |n| = 8e-16
  EXPECT_FATAL(tiny.elem.ShellAxes(T, T6, nullptr), text);
  const LoneElement small{
      {0,    0,    0},
      {4e-8, 0,    0},
      {0,    4e-8, 0}
  };  // |n| = 1.6e-15
  EXPECT_NO_THROW(small.elem.ShellAxes(T, T6, nullptr));
}

TEST_F(ShellFrame, MatricesOfTheRightSizeKeepTheirBuffers) {
  const double *const buffer = T.data.get(), *const buffer6 = T6.data.get();
  CalcNormal(Unit({1, 2, 3}));
  EXPECT_EQ(T.data.get(), buffer);
  EXPECT_EQ(T6.data.get(), buffer6);
}

}  // namespace

}  // namespace kestol
