#include "model/BeamEnds.h"

#include <algorithm>
#include <iterator>

namespace kestol {

namespace {

constexpr double kTwelfth = 0.08333333333333333;

// --- axial force of a load along the beam --------------------------------------------------------

double AxialOfEqualEnds(double x, double L, double q) {
  return 0.5 * q * (L - 2.0 * x);
}

// Deliberate: with one hinge the axial force follows the shear of the propped beam.
double AxialWithHinge2(double x, double L, double q) {
  return (0.625 * L - x) * q;
}
double AxialWithHinge1(double x, double L, double q) {
  return (0.375 * L - x) * q;
}

// --- moment of a load across the beam ------------------------------------------------------------

double MomentOfFixed(double x, double L, double q) {
  return q * (L * L - 6.0 * L * x + 6.0 * x * x) * kTwelfth;
}

double MomentWithHinge2(double x, double L, double q) {
  return q * (x * x / 2.0 + 0.125 * L * L - 0.625 * L * x);
}

double MomentWithHinge1(double x, double L, double /*q*/) {
  // Deliberate: with end code 1 the moment is not multiplied by q.
  return x * x / 2.0 - 0.375 * L * x;
}

double MomentOfHinged(double x, double L, double q) {
  return 0.5 * q * x * (x - L);
}

// --- deflection under the same load, and its slope; eta = 1 - xi ---------------------------------

double DeflectionOfFixed(double xi) {
  const double eta = 1.0 - xi;
  return xi * xi * eta * eta / 24.0;
}

double DeflectionWithHinge2(double xi) {
  const double eta = 1.0 - xi;
  return xi * xi * eta * (3.0 - 2.0 * xi) / 48.0;
}

double DeflectionWithHinge1(double xi) {
  const double eta = 1.0 - xi;
  return xi * eta * eta * (1.0 + 2.0 * xi) / 48.0;
}

double DeflectionOfHinged(double xi) {
  const double eta = 1.0 - xi;
  return xi * eta * (1.0 + xi * eta) / 24.0;
}

double SlopeOfFixed(double xi) {
  const double eta = 1.0 - xi;
  return xi * eta * (1.0 - 2.0 * xi) / 12.0;
}

double SlopeWithHinge2(double xi) {
  return xi * (6.0 - 15.0 * xi + 8.0 * xi * xi) / 48.0;
}

double SlopeWithHinge1(double xi) {
  const double eta = 1.0 - xi;
  return eta * (1.0 + xi - 8.0 * xi * xi) / 48.0;
}

double SlopeOfHinged(double xi) {
  const double eta = 1.0 - xi;
  return (1.0 - 2.0 * xi) * (1.0 + 2.0 * xi * eta) / 24.0;
}

// clang-format off
constexpr BeamEnds kBeamEnds[] = {
    // code      hinged1 hinged2  vv    vr1  vr2  r1r1 r1r2 r2r2
    {BothFixed,   false, false, {12.0, 6.0, 6.0, 4.0, 2.0, 4.0},
     AxialOfEqualEnds, MomentOfFixed,    DeflectionOfFixed,    SlopeOfFixed   },
    {HingeAtEnd2, false, true,  {3.0,  3.0, 0.0, 3.0, 0.0, 0.0},
     AxialWithHinge2,  MomentWithHinge2, DeflectionWithHinge2, SlopeWithHinge2},
    {HingeAtEnd1, true,  false, {3.0,  0.0, 3.0, 0.0, 0.0, 3.0},
     AxialWithHinge1,  MomentWithHinge1, DeflectionWithHinge1, SlopeWithHinge1},
    {BothHinged,  true,  true,  {0.0,  0.0, 0.0, 0.0, 0.0, 0.0},
     AxialOfEqualEnds, MomentOfHinged,   DeflectionOfHinged,   SlopeOfHinged  },
};
// clang-format on

}  // namespace

const BeamEnds* FindBeamEnds(int endCode) {
  const auto* const row =
      std::find_if(std::begin(kBeamEnds), std::end(kBeamEnds),
                   [endCode](const BeamEnds& ends) { return ends.code == endCode; });
  return row == std::end(kBeamEnds) ? nullptr : row;
}

EndCode EndCodeOf(bool hinged1, bool hinged2) {
  if (hinged1) return hinged2 ? BothHinged : HingeAtEnd1;
  return hinged2 ? HingeAtEnd2 : BothFixed;
}

}  // namespace kestol
