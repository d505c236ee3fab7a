#include "results/BeamStations.h"

#include "input/Project.h"

namespace kestol {

namespace {

/// Forces on the ends become internal forces by these signs at end 1, and their negatives at end 2.
constexpr double kPlaneSigns[] = {-1.0, 1.0, -1.0};
constexpr double kSpaceSigns[] = {-1.0, 1.0, 1.0, -1.0, 1.0, -1.0};

BeamLoad SumOf(const std::vector<BeamLoad>& loads) {
  BeamLoad sum;
  for (const BeamLoad& load : loads) {
    sum.qx += load.qx;
    sum.qy += load.qy;
    sum.qz += load.qz;
    sum.m += load.m;
  }
  return sum;
}

}  // namespace

BeamDisplacements::BeamDisplacements(const BeamElement& beam, const ReaVecT& displacements)
    : ends_(*FindBeamEnds(beam.endCode)), plane_(beam.project.problemType == Plane) {
  const BeamLoad q = SumOf(beam.loads);
  const Material& material = *beam.material;
  const double E = material.E1, L = beam.L, L2 = L * L;
  double a[6], b[6];  // displacements of ends 1 and 2
  beam.LocalDisplacements(displacements, a, b);

  L_ = L;
  u1_ = a[0];
  u2_ = b[0];
  axialLoad_ = q.qx * L2 / (2.0 * E * material.A);
  const int turn = plane_ ? 2 : 5;  // rotation about local z
  v_ =
      DeflectionOf(a[1], a[turn] * L, b[1], b[turn] * L, q.qy * L2 * L2 / (E * material.Iz), ends_);
  if (!plane_) {
    twist1_ = a[3];
    twist2_ = b[3];
    twistLoad_ = q.m * L2 / (2.0 * material.Gxy * material.J);
    w_ = DeflectionOf(a[2], -a[4] * L, b[2], -b[4] * L, q.qz * L2 * L2 / (E * material.Iy), ends_);
  }
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) R_[i][j] = beam.T(i + 1, j + 1);
}

BeamDisplacements::Deflection BeamDisplacements::DeflectionOf(double d1, double s1, double d2,
                                                              double s2, double load,
                                                              const BeamEnds& ends) {
  const double chord = d2 - d1;
  if (ends.hinged1 && ends.hinged2)
    s1 = s2 = chord;
  else if (ends.hinged2)
    s2 = 1.5 * chord - 0.5 * s1;
  else if (ends.hinged1)
    s1 = 1.5 * chord - 0.5 * s2;
  return {d1, d2, s1, s2, load};
}

std::array<double, 3> BeamDisplacements::At(double xi) const {
  const double eta = 1.0 - xi, xi2 = xi * xi;
  const double h1 = 1.0 - xi2 * (3.0 - 2.0 * xi), h2 = xi2 * (3.0 - 2.0 * xi);
  const double g1 = xi * eta * eta, g2 = -xi2 * eta;
  const double loaded = ends_.deflection(xi);
  const auto at = [&](const Deflection& d) {
    return d.d1 * h1 + d.s1 * g1 + d.d2 * h2 + d.s2 * g2 + d.load * loaded;
  };

  const double u = eta * u1_ + xi * u2_ + axialLoad_ * xi * eta;
  const double v = at(v_);
  if (plane_) return {R_[0][0] * u + R_[0][1] * v, R_[1][0] * u + R_[1][1] * v, 0.0};
  const double w = at(w_);
  return {R_[0][0] * u + R_[0][1] * v + R_[0][2] * w, R_[1][0] * u + R_[1][1] * v + R_[1][2] * w,
          R_[2][0] * u + R_[2][1] * v + R_[2][2] * w};
}

std::array<double, 3> BeamDisplacements::RotationAt(double xi) const {
  const double eta = 1.0 - xi;
  const double h2 = 6.0 * xi * eta, g1 = eta * (1.0 - 3.0 * xi), g2 = -xi * (2.0 - 3.0 * xi);
  const double loaded = ends_.slope(xi);
  const auto slope = [&](const Deflection& d) {
    return ((d.d2 - d.d1) * h2 + d.s1 * g1 + d.s2 * g2 + d.load * loaded) / L_;
  };
  const double aboutZ = slope(v_);
  if (plane_) return {0.0, 0.0, aboutZ};
  const double aboutX = eta * twist1_ + xi * twist2_ + twistLoad_ * xi * eta;
  const double aboutY = -slope(w_);
  std::array<double, 3> rotation;
  for (int i = 0; i < 3; ++i)
    rotation[i] = R_[i][0] * aboutX + R_[i][1] * aboutY + R_[i][2] * aboutZ;
  return rotation;
}

BeamStrength::BeamStrength(const BeamElement& beam, const double* ends, int c)
    : beam_(beam), c_(c) {
  const double sign = beam.project.problemType == Plane ? kPlaneSigns[c - 1] : kSpaceSigns[c - 1];
  // A force of 0 gets no sign: -0.0 + 0.0 is 0.0.
  end1_ = sign * ends[c - 1] + 0.0;
  end2_ = -sign * ends[beam.project.dofsPerNode + c - 1] + 0.0;
}

double BeamStrength::At(double xi) const {
  // Exactly constant without load, so that the writer can tell.
  double value = end1_ == end2_ ? end1_ : (1.0 - xi) * end1_ + xi * end2_;
  for (const BeamLoad& load : beam_.loads)
    value += StationStrength(load, c_, xi, beam_.L, beam_.project.problemType, beam_.endCode);
  return value;
}

Vector3 DiagramDirection(const Frame& axes, ProblemType problemType, int c) {
  const Vector3& axis = problemType == Space && (c == 3 || c == 5) ? axes.z : axes.y;
  const bool negated = c > 3 || (problemType == Plane && c == 3);
  return Times(axis, negated ? -1.0 : 1.0);
}

}  // namespace kestol
