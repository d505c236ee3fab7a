#include <gtest/gtest.h>

#include <sstream>

#include "model/Material.h"

namespace kestol {

namespace {

std::string Printed(const Material& material) {
  std::ostringstream stream;
  material.Print(stream);
  return stream.str();
}

/// Torsion coefficient that a section of the given side ratio gets.
double CoefficientOf(double ratio) {
  Material material;
  material.SetRectangleSection(1.0, ratio);
  return material.J / ratio;
}

TEST(Material, NewMaterialIsZero) {
  const Material material;
  EXPECT_EQ(Printed(material),
            "0 E1=0 E2=0 nuXY=0 nuYX=0 Iy=0 Iz=0 Gxy=0 Gxz=0 Gyz=0 J=0 A=0 Weight=0 t=0\n");
  EXPECT_EQ(material.hasEuler, 0);
  EXPECT_EQ(material.Euler1, 0.0);
  EXPECT_EQ(material.Euler2, 0.0);
  EXPECT_EQ(material.Euler3, 0.0);
}

TEST(Material, PrintsEveryValueInTheOrderOfTheRecord) {
  Material m;
  m.number = 12;
  m.E1 = 2.1e11;
  m.E2 = 1.0 / 3.0;
  m.nuXY = 0.3;
  m.nuYX = 0.25;
  m.Iy = 1;
  m.Iz = 2;
  m.Gxy = 3;
  m.Gxz = 4;
  m.Gyz = 5;
  m.J = 6;
  m.A = 7;
  m.Weight = 78500;
  m.t = -1.0;
  m.hasEuler = 1;
  m.Euler1 = 0.5;
  EXPECT_EQ(Printed(m),
            "12 E1=2.1e+11 E2=0.333333 nuXY=0.3 nuYX=0.25 Iy=1 Iz=2 Gxy=3 Gxz=4 Gyz=5 J=6 A=7 "
            "Weight=78500 t=-1\n");
}

TEST(Material, PrintsTheLongestNumbersWhole) {
  Material m;
  m.number = -2147483647 - 1;
  for (double* value : {&m.E1, &m.E2, &m.nuXY, &m.nuYX, &m.Iy, &m.Iz, &m.Gxy, &m.Gxz, &m.Gyz, &m.J,
                        &m.A, &m.Weight, &m.t})
    *value = -1.23456789e-300;
  const std::string text = Printed(m);
  const std::string end = " Weight=-1.23457e-300 t=-1.23457e-300\n";
  EXPECT_EQ(text.substr(0, 15), "-2147483648 E1=");
  EXPECT_EQ(text.substr(text.size() - end.size()), end);
}

TEST(Material, CopyHasAllValuesAndTheNumberZero) {
  Material m;
  m.number = 9;
  m.E1 = 1;
  m.t = 2;
  m.hasEuler = 1;
  m.Euler3 = 3;
  const Material copy = m.Copy();
  EXPECT_EQ(copy.number, 0);
  EXPECT_EQ(copy.E1, 1.0);
  EXPECT_EQ(copy.t, 2.0);
  EXPECT_EQ(copy.hasEuler, 1);
  EXPECT_EQ(copy.Euler3, 3.0);
  EXPECT_EQ(m.number, 9);
}

TEST(Material, RectangleHasTheKnownSectionValues) {
  Material m;
  m.SetRectangleSection(0.2, 0.4);
  EXPECT_DOUBLE_EQ(m.A, 0.08);
  EXPECT_NEAR(m.Iy, 0.4 * 0.4 * 0.4 * 0.2 / 12, 1e-18);
  EXPECT_NEAR(m.Iz, 0.2 * 0.2 * 0.2 * 0.4 / 12, 1e-18);
  EXPECT_NEAR(m.Iy, 1.0667e-3, 1e-7);
  EXPECT_NEAR(m.Iz, 2.6667e-4, 1e-8);
  EXPECT_DOUBLE_EQ(m.J, 0.229 * 0.2 * 0.2 * 0.2 * 0.4);
}

TEST(Material, TorsionOfARectangleDoesNotDependOnWhichSideIsLarger) {
  Material flat, upright;
  flat.SetRectangleSection(0.4, 0.2);
  upright.SetRectangleSection(0.2, 0.4);
  EXPECT_EQ(flat.J, upright.J);
  EXPECT_EQ(flat.Iy, upright.Iz);
}

TEST(Material, TorsionCoefficientIsThatOfTheNearestRatio) {
  const struct {
    double ratio, c;
  } rows[] = {
      {1.0, 0.141},
      {1.5, 0.196},
      {2.0, 0.229},
      {2.5, 0.249},
      {3.0, 0.263},
      {4.0, 0.281},
      {5.0, 0.291},
      {6.0, 0.299},
      {7.0, 0.303},
      {8.0, 0.307},
      {9.0, 0.31 }
  };
  for (const auto& [ratio, c] : rows) EXPECT_DOUBLE_EQ(CoefficientOf(ratio), c) << ratio;
}

TEST(Material, TorsionCoefficientChangesHalfWayAndTiesGoToTheLargerRatio) {
  const struct {
    double below, at;  // ratios
    double cBelow, cAt;
  } steps[] = {
      {1.24, 1.25, 0.141, 0.196},
      {1.74, 1.75, 0.196, 0.229},
      {2.24, 2.25, 0.229, 0.249},
      {2.74, 2.75, 0.249, 0.263},
      {3.49, 3.5,  0.263, 0.281},
      {4.49, 4.5,  0.281, 0.291},
      {5.49, 5.5,  0.291, 0.299},
      {6.49, 6.5,  0.299, 0.303},
      {7.49, 7.5,  0.303, 0.307},
      {8.49, 8.5,  0.307, 0.31 },
      {9.49, 9.5,  0.31,  0.313}
  };
  for (const auto& [below, at, cBelow, cAt] : steps) {
    EXPECT_DOUBLE_EQ(CoefficientOf(below), cBelow) << below;
    EXPECT_DOUBLE_EQ(CoefficientOf(at), cAt) << at;
  }
}

TEST(Material, StripsFromRatioTenOnHaveTheirOwnTorsionCoefficient) {
  EXPECT_DOUBLE_EQ(CoefficientOf(9.7), 0.313);
  EXPECT_DOUBLE_EQ(CoefficientOf(9.999), 0.313);
  EXPECT_DOUBLE_EQ(CoefficientOf(10.0), 0.333);
  EXPECT_DOUBLE_EQ(CoefficientOf(12.0), 0.333);
}

TEST(Material, RectangleWithoutASecondSideHasNoTorsionAndDoesNotFail) {
  Material m;
  m.SetRectangleSection(0.2, 0.0);
  EXPECT_EQ(m.A, 0.0);
  EXPECT_EQ(m.J, 0.0);
}

}  // namespace

}  // namespace kestol
