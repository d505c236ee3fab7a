#include <cmath>

#include "algebra/Matriu.h"
#include "algebra/Tolerances.h"
#include "main/ErrorChannel.h"
#include "model/Material.h"

namespace kestol {

namespace {

constexpr double kFiveSixths = 0.8333333333333333;  ///< shear correction of a solid section

void CheckShell(const Material& m, int elementNumber) {
  struct Test {
    double positive;
    const char* text;
  };
  const Test tests[] = {
      {m.t,                    " Shell thickness is 0\n"},
      {m.E1,                   " Ex is 0\n"             },
      {m.E2,                   " Ey is 0\n"             },
      {m.Gxy,                  " Gxy is 0\n"            },
      {m.Gxz,                  " Gxz is 0\n"            },
      {m.Gyz,                  " Gyz is 0\n"            },
      {std::abs(m.nuXY - 1.0), " nuXY is 1\n"           },
      {std::abs(m.nuYX - 1.0), " nuYX is 1\n"           },
  };
  for (const auto& [positive, text] : tests)
    if (!(positive >= kZero)) Fatal("error in element ", elementNumber, text);
  // Deliberate: an absolute tolerance; the two products must agree almost to the last digit.
  if (!(std::abs(m.nuXY * m.E1 - m.nuYX * m.E2) <= kZero))
    Fatal("error in element ", elementNumber, " Ex*nuXY must be equal to Ey*nuYX\n");
  if (!(1.0 - m.nuXY * m.nuYX >= kZero))
    Fatal("error in element ", elementNumber, " nuXY*nuYX must be less than 1\n");
}

void CheckSolid(const Material& m, int elementNumber) {
  if (!(m.E1 >= kZero)) Fatal("error in element ", elementNumber, " E is 0\n");
  if (!(std::abs(m.nuXY - 1.0) >= kZero)) Fatal("error in element ", elementNumber, " nu is 1\n");
  if (!(m.nuXY > -1.0 + kZero && m.nuXY < 0.5 - kZero))
    Fatal("error in element ", elementNumber, " nu must be > -1 and < 0.5\n");
}

}  // namespace

void Material::ShellMatrices(int elementNumber, Matriu& Dm, Matriu& Db, Matriu& Ds) const {
  CheckShell(*this, elementNumber);
  const double k = t / (1.0 - nuYX * nuXY);
  Dm.Redimension(3, 3);
  Dm.Fill(0.0);
  Dm(1, 1) = k * E1;
  Dm(1, 2) = k * nuXY * E1;
  Dm(2, 1) = k * nuYX * E2;
  Dm(2, 2) = k * E2;
  Dm(3, 3) = (1.0 - nuYX * nuXY) * k * Gxy;
  Db.Redimension(3, 3);
  for (unsigned place = 0; place < Db.size; ++place) Db.data[place] = Dm.data[place] * t * t / 12.0;
  Ds.Redimension(2, 2);
  Ds.Fill(0.0);
  Ds(1, 1) = Gxz * t * kFiveSixths;
  Ds(2, 2) = Gyz * t * kFiveSixths;
}

void Material::SolidMatrix(int elementNumber, Matriu& D) const {
  CheckSolid(*this, elementNumber);
  const double nu = nuXY;
  const double c = E1 * (1.0 - nu) / ((1.0 + nu) * (1.0 - 2.0 * nu));
  D.Redimension(6, 6);
  D.Fill(0.0);
  for (int i = 1; i <= 3; ++i) {
    for (int j = 1; j <= 3; ++j) D(i, j) = i == j ? c : c * nu / (1.0 - nu);
    D(i + 3, i + 3) = (1.0 - 2.0 * nu) * c / (2.0 - 2.0 * nu);
  }
}

}  // namespace kestol
