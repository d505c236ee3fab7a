#include <cmath>
#include <limits>

#include "algebra/Matriu.h"
#include "model/Material.h"
#include "tests/support/ExpectFatal.h"

namespace kestol {

namespace {

/// E2 / E1 is a power of two, so that the products E nu agree to the last bit.
Material Shell() {
  Material m;
  m.t = 0.02;
  m.E1 = 4e10;
  m.E2 = 1e10;
  m.nuXY = 0.075;
  m.nuYX = 0.3;
  m.Gxy = 5e9;
  m.Gxz = 4e9;
  m.Gyz = 3e9;
  return m;
}

Material Solid(double E, double nu) {
  Material m;
  m.E1 = E;
  m.nuXY = nu;
  return m;
}

void ReadShell(const Material& material) {
  Matriu Dm, Db, Ds;
  material.ShellMatrices(12, Dm, Db, Ds);
}

void ReadSolid(const Material& material) {
  Matriu D;
  material.SolidMatrix(12, D);
}

TEST(ShellMatrices, MembraneIsTheOrthotropicPlaneStress) {
  Matriu Dm(3, 3), Db(3, 3), Ds(2, 2);
  Dm.Fill(9.0);
  const Material m = Shell();
  m.ShellMatrices(1, Dm, Db, Ds);
  const double k = 0.02 / (1 - 0.075 * 0.3);
  EXPECT_DOUBLE_EQ(Dm(1, 1), k * 4e10);
  EXPECT_DOUBLE_EQ(Dm(2, 2), k * 1e10);
  EXPECT_DOUBLE_EQ(Dm(1, 2), k * 3e9);
  EXPECT_DOUBLE_EQ(Dm(2, 1), k * 3e9);
  EXPECT_DOUBLE_EQ(Dm(3, 3), 0.02 * 5e9);
  for (const auto& [i, j] : {
           std::pair{1, 3},
           {2, 3},
           {3, 1},
           {3, 2}
  })
    EXPECT_EQ(Dm(i, j), 0.0);
}

TEST(ShellMatrices, MembraneInvertsTheCompliance) {
  Matriu Dm, Db, Ds;
  const Material m = Shell();
  m.ShellMatrices(1, Dm, Db, Ds);
  // Stress s along x alone: exx = s/E1, and nuYX is how it narrows along y.
  const double exx = 1 / m.E1, eyy = -m.nuYX / m.E1;
  EXPECT_NEAR((Dm(1, 1) * exx + Dm(1, 2) * eyy) / m.t, 1.0, 1e-15);
  EXPECT_NEAR((Dm(2, 1) * exx + Dm(2, 2) * eyy) / m.t, 0.0, 1e-15);
}

TEST(ShellMatrices, BendingIsMembraneTimesASquaredThicknessOverTwelve) {
  Matriu Dm, Db, Ds;
  Shell().ShellMatrices(1, Dm, Db, Ds);
  for (int i = 1; i <= 3; ++i)
    for (int j = 1; j <= 3; ++j) EXPECT_DOUBLE_EQ(Db(i, j), Dm(i, j) * 0.02 * 0.02 / 12);
}

TEST(ShellMatrices, TransverseShearHasFiveSixthsOfTheSection) {
  Matriu Dm, Db, Ds(2, 2);
  Ds.Fill(9.0);
  Shell().ShellMatrices(1, Dm, Db, Ds);
  EXPECT_DOUBLE_EQ(Ds(1, 1), 4e9 * 0.02 * 5 / 6);
  EXPECT_DOUBLE_EQ(Ds(2, 2), 3e9 * 0.02 * 5 / 6);
  EXPECT_EQ(Ds(1, 2), 0.0);
  EXPECT_EQ(Ds(2, 1), 0.0);
}

TEST(ShellMatrices, MatricesOfTheRightSizeKeepTheirBuffers) {
  Matriu Dm(3, 3), Db(3, 3), Ds(2, 2);
  const double *const m = Dm.data.get(), *const b = Db.data.get(), *const s = Ds.data.get();
  Shell().ShellMatrices(1, Dm, Db, Ds);
  EXPECT_EQ(Dm.data.get(), m);
  EXPECT_EQ(Db.data.get(), b);
  EXPECT_EQ(Ds.data.get(), s);
}

TEST(ShellMatrices, EveryValueMustBePositive) {
  const struct {
    double Material::*field;
    const char* text;
  } tests[] = {
      {&Material::t,   "error in element 12 Shell thickness is 0\n"},
      {&Material::E1,  "error in element 12 Ex is 0\n"             },
      {&Material::E2,  "error in element 12 Ey is 0\n"             },
      {&Material::Gxy, "error in element 12 Gxy is 0\n"            },
      {&Material::Gxz, "error in element 12 Gxz is 0\n"            },
      {&Material::Gyz, "error in element 12 Gyz is 0\n"            },
  };
  for (const auto& [field, text] : tests)
    for (const double value : {0.0, -1.0, 9e-16, std::nan("")}) {
      Material m = Shell();
      m.*field = value;
      EXPECT_FATAL(ReadShell(m), text);
    }
}

TEST(ShellMatrices, FirstWrongValueInTheOrderOfTheChecksIsNamed) {
  const struct {
    double Material::*field;
    double wrong;
    const char* text;
  } checks[] = {
      {&Material::t,    0.0, "error in element 12 Shell thickness is 0\n"},
      {&Material::E1,   0.0, "error in element 12 Ex is 0\n"             },
      {&Material::E2,   0.0, "error in element 12 Ey is 0\n"             },
      {&Material::Gxy,  0.0, "error in element 12 Gxy is 0\n"            },
      {&Material::Gxz,  0.0, "error in element 12 Gxz is 0\n"            },
      {&Material::Gyz,  0.0, "error in element 12 Gyz is 0\n"            },
      {&Material::nuXY, 1.0, "error in element 12 nuXY is 1\n"           },
      {&Material::nuYX, 1.0, "error in element 12 nuYX is 1\n"           },
  };
  Material m = Shell();
  for (const auto& [field, wrong, text] : checks) m.*field = wrong;
  for (const auto& [field, wrong, text] : checks) {
    EXPECT_FATAL(ReadShell(m), text);
    m.*field = Shell().*field;
  }
  m.nuXY = 9.0;  // both the products and their size are wrong now
  EXPECT_FATAL(ReadShell(m), "error in element 12 Ex*nuXY must be equal to Ey*nuYX\n");
}

TEST(ShellMatrices, PoissonRatioOfOneIsRefused) {
  Material m = Shell();
  m.nuXY = 1.0;
  EXPECT_FATAL(ReadShell(m), "error in element 12 nuXY is 1\n");
  m = Shell();
  m.nuYX = 1.0;
  EXPECT_FATAL(ReadShell(m), "error in element 12 nuYX is 1\n");
  m.nuYX = std::nan("");
  EXPECT_FATAL(ReadShell(m), "error in element 12 nuYX is 1\n");
}

// Deliberate: an absolute tolerance.
TEST(ShellMatrices, ProductsOfModuliAndRatiosMustAgreeAlmostExactly) {
  const char* const text = "error in element 12 Ex*nuXY must be equal to Ey*nuYX\n";
  Material m = Shell();
  m.nuXY = m.nuYX = 0.3;
  EXPECT_FATAL(ReadShell(m), text);
  m = Shell();
  m.nuXY = std::nextafter(m.nuXY, 1.0);
  EXPECT_FATAL(ReadShell(m), text);
  m.E1 = m.E2 = 1.0;  // small products may differ in the last bit
  m.nuXY = std::nextafter(m.nuYX, 1.0);
  EXPECT_NO_THROW(ReadShell(m));
  m.nuYX = 0.0;
  m.nuXY = 9e-16;
  EXPECT_NO_THROW(ReadShell(m));
  m.nuXY = 2e-15;
  EXPECT_FATAL(ReadShell(m), text);
}

TEST(ShellMatrices, ProductOfTheRatiosMustStayBelowOne) {
  const char* const text = "error in element 12 nuXY*nuYX must be less than 1\n";
  Material m = Shell();
  m.E1 = m.E2;
  m.nuXY = m.nuYX = -1.0;  // not given
  EXPECT_FATAL(ReadShell(m), text);
  m = Shell();
  m.nuXY = 0.5;
  m.nuYX = 2.0;
  EXPECT_FATAL(ReadShell(m), text);
  m.nuXY = m.nuYX = 1.5;
  m.E1 = m.E2;
  EXPECT_FATAL(ReadShell(m), text);
}

TEST(SolidMatrix, IsTheIsotropicElasticityMatrix) {
  Matriu D(6, 6);
  D.Fill(9.0);
  const double E = 2.1e11, nu = 0.3, lambda = E * nu / ((1 + nu) * (1 - 2 * nu)),
               G = E / (2 * (1 + nu));
  Solid(E, nu).SolidMatrix(1, D);
  for (int i = 1; i <= 6; ++i)
    for (int j = 1; j <= 6; ++j) {
      double expected = 0.0;
      if (i <= 3 && j <= 3) expected = i == j ? lambda + 2 * G : lambda;
      if (i > 3 && i == j) expected = G;
      EXPECT_NEAR(D(i, j), expected, 1e-14 * E) << i << ' ' << j;
    }
}

TEST(SolidMatrix, WithoutPoissonRatioIsDiagonal) {
  Matriu D;
  Solid(2.0, 0.0).SolidMatrix(1, D);
  for (int i = 1; i <= 6; ++i)
    for (int j = 1; j <= 6; ++j) EXPECT_EQ(D(i, j), i != j ? 0.0 : i <= 3 ? 2.0 : 1.0);
}

TEST(SolidMatrix, YoungModulusMustBePositive) {
  for (const double E : {0.0, -1.0, 9e-16, std::nan("")})
    EXPECT_FATAL(ReadSolid(Solid(E, 0.3)), "error in element 12 E is 0\n");
}

TEST(SolidMatrix, YoungModulusIsTestedBeforeThePoissonRatio) {
  for (const double nu : {1.0, 2.0})
    EXPECT_FATAL(ReadSolid(Solid(0.0, nu)), "error in element 12 E is 0\n");
}

TEST(SolidMatrix, PoissonRatioOfOneIsRefused) {
  EXPECT_FATAL(ReadSolid(Solid(1.0, 1.0)), "error in element 12 nu is 1\n");
  EXPECT_FATAL(ReadSolid(Solid(1.0, std::nan(""))), "error in element 12 nu is 1\n");
}

TEST(SolidMatrix, PoissonRatioLiesBetweenMinusOneAndOneHalf) {
  for (const double nu : {-1.0, -3.0, 0.5, 0.7, 2.0})
    EXPECT_FATAL(ReadSolid(Solid(1.0, nu)), "error in element 12 nu must be > -1 and < 0.5\n");
  EXPECT_NO_THROW(ReadSolid(Solid(1.0, 0.4999)));
  EXPECT_NO_THROW(ReadSolid(Solid(1.0, -0.9999)));
}

}  // namespace

}  // namespace kestol
