#include "model/Material.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace kestol {

namespace {

constexpr double kTwelfth = 0.08333333333333333;

/// Torsion of a solid rectangle: J = c min^3 max for the ratio of the larger side to the smaller.
struct TorsionRow {
  double ratio, c;
};
constexpr TorsionRow kTorsion[] = {
    {1.0,  0.141},
    {1.5,  0.196},
    {2.0,  0.229},
    {2.5,  0.249},
    {3.0,  0.263},
    {4.0,  0.281},
    {5.0,  0.291},
    {6.0,  0.299},
    {7.0,  0.303},
    {8.0,  0.307},
    {9.0,  0.31 },
    {10.0, 0.313}
};
constexpr double kTorsionOfStrip = 0.333;  ///< beyond the table

/// The row of the nearest ratio, the larger one on a tie.
double TorsionCoefficient(double ratio) {
  for (std::size_t k = 1; k < std::size(kTorsion); ++k)
    if (ratio < (kTorsion[k - 1].ratio + kTorsion[k].ratio) / 2.0) return kTorsion[k - 1].c;
  const TorsionRow& last = kTorsion[std::size(kTorsion) - 1];
  return ratio >= last.ratio ? kTorsionOfStrip : last.c;
}

}  // namespace

Material Material::Copy() const {
  Material copy = *this;
  copy.number = 0;
  return copy;
}

void Material::SetRectangleSection(double widthY, double widthZ) {
  const double b = widthY, h = widthZ;
  A = b * h;
  Iy = h * h * h * b * kTwelfth;
  Iz = b * b * b * h * kTwelfth;
  const auto [smaller, larger] = std::minmax(b, h);
  J = TorsionCoefficient(larger / smaller) * smaller * smaller * smaller * larger;
}

void Material::Print(std::ostream& stream) const {
  std::array<char, 512> line;  // 13 numbers of at most 13 characters, their names, an integer
  std::snprintf(line.data(), line.size(),
                "%i E1=%g E2=%g nuXY=%g nuYX=%g Iy=%g Iz=%g Gxy=%g Gxz=%g Gyz=%g J=%g A=%g "
                "Weight=%g t=%g\n",
                number, E1, E2, nuXY, nuYX, Iy, Iz, Gxy, Gxz, Gyz, J, A, Weight, t);
  stream << line.data();
}

}  // namespace kestol
