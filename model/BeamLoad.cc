#include "model/BeamLoad.h"

#include <algorithm>
#include <cmath>

#include "algebra/Tolerances.h"
#include "main/ErrorChannel.h"
#include "model/Elem.h"
#include "model/Mesh.h"

namespace kestol {

namespace {

enum Component { Axial = 1, Shear = 2, Moment = 3, Torque = 4 };

/// GiveLocalStrength that leaves loads of 0 out: with a hinge at end 1 even they have a moment.
double StrengthOf(int component, double xi, double L, double q, int endCode) {
  return q == 0.0 ? 0.0 : GiveLocalStrength(component, xi, L, q, endCode);
}

/// Sine of the angle between the beam and the load direction, for loads per projected length; 0.0
/// for a load without direction.
double ProjectionFactor(const double q[3], const Elem& beam) {
  const double size = std::sqrt(q[0] * q[0] + q[1] * q[1] + q[2] * q[2]);
  if (size <= kZero) return 0.0;
  const Node& end1 = *beam.nodes[0];
  const Node& end2 = *beam.nodes[1];
  const double c[3] = {end1.x - end2.x, end1.y - end2.y, end1.z - end2.z};
  const double L2 = c[0] * c[0] + c[1] * c[1] + c[2] * c[2];
  const double along = (c[0] * q[0] + c[1] * q[1] + c[2] * q[2]) / size;
  // A load along the beam would give the root of a small negative number.
  return std::sqrt(std::max(0.0, L2 - along * along)) / std::sqrt(L2);
}

/// Turning leaves noise, which must not count as a load: see StrengthOf.
void DropNoise(double q[4]) {
  constexpr double kNoise = 1e-12;
  double largest = 0.0;
  for (int i = 0; i < 4; ++i) largest = std::max(largest, std::abs(q[i]));
  for (int i = 0; i < 4; ++i)
    if (std::abs(q[i]) <= kZero || std::abs(q[i]) <= kNoise * largest) q[i] = 0.0;
}

}  // namespace

double GiveLocalStrength(int component, double xi, double L, double q, int endCode) {
  const BeamEnds* const ends = FindBeamEnds(endCode);
  if (ends == nullptr) return 0.0;
  const double x = xi * L;
  switch (component) {
    case Axial:
      return ends->axial(x, L, q);
    case Shear:
      return -ends->axial(x, L, q);
    case Moment:
      return ends->moment(x, L, q);
    case Torque:
      return 0.5 * q * (L - 2.0 * x);
    default:
      Fatal("error in GiveLocalStrength\n");
  }
}

BeamLoad LocalIntensities(const PreassureLT& load, const Elem& beam, const Matriu& T,
                          ProblemType problemType) {
  if (load.kind == FaceLoad)
    Fatal("error: applying a shell load to a beam element. ElemNum=", beam.number, "\n");

  double q[4] = {load.values(1), load.values(2), load.values(3), 0.0};
  if (problemType != Plane) q[3] = load.values(4);

  if (load.kind == GlobalProjected) {
    const double factor = ProjectionFactor(q, beam);
    for (double& component : q) component *= factor;
  }
  if (load.kind != LocalPressure) {
    const double global[3] = {q[0], q[1], q[2]};
    for (int i = 1; i <= 3; ++i)
      q[i - 1] = T(1, i) * global[0] + T(2, i) * global[1] + T(3, i) * global[2];
  }
  DropNoise(q);
  return {q[0], q[1], problemType == Plane ? 0.0 : q[2], q[3]};
}

BeamEndForces EquivalentEndForces(const BeamLoad& load, double L, ProblemType problemType,
                                  int endCode) {
  const auto S = [L, endCode](int component, double xi, double q) {
    return StrengthOf(component, xi, L, q, endCode);
  };
  const BeamEnds* const ends = FindBeamEnds(endCode);
  const bool hinged1 = ends != nullptr && ends->hinged1;
  const bool hinged2 = ends != nullptr && ends->hinged2;
  const auto M1 = [&](double q) { return hinged1 ? 0.0 : S(Moment, 0.0, q); };
  const auto M2 = [&](double q) { return hinged2 ? 0.0 : S(Moment, 1.0, q); };
  const auto& [qx, qy, qz, m] = load;

  if (problemType == Plane)
    return {
        {S(Axial,  0.0, qx), -S(Shear, 0.0, qy), M1(qy) },
        {-S(Axial, 1.0, qx), S(Shear,  1.0, qy), -M2(qy)}
    };
  return {
      {S(Axial,  0.0, qx), -S(Shear, 0.0, qy), -S(Shear, 0.0, qz), S(Torque,  0.0, m), -M1(qz),
       M1(qy) },
      {-S(Axial, 1.0, qx), S(Shear,  1.0, qy), S(Shear,  1.0, qz), -S(Torque, 1.0, m), M2(qz),
       -M2(qy)}
  };
}

double StationStrength(const BeamLoad& load, int c, double xi, double L, ProblemType problemType,
                       int endCode) {
  /// Which internal force of which intensity is value c.
  struct Value {
    Component component;
    double BeamLoad::*intensity;
  };
  static constexpr Value kPlane[] = {
      {Axial,  &BeamLoad::qx},
      {Shear,  &BeamLoad::qy},
      {Moment, &BeamLoad::qy},
  };
  static constexpr Value kSpace[] = {
      {Axial,  &BeamLoad::qx},
      {Shear,  &BeamLoad::qy},
      {Shear,  &BeamLoad::qz},
      {Torque, &BeamLoad::m },
      {Moment, &BeamLoad::qz},
      {Moment, &BeamLoad::qy},
  };
  const Value& value = problemType == Plane ? kPlane[c - 1] : kSpace[c - 1];
  return StrengthOf(value.component, xi, L, load.*value.intensity, endCode);
}

}  // namespace kestol
