#pragma once

#include <array>

#include "algebra/Vector3.h"
#include "analysis/BeamElement.h"
#include "model/BeamEnds.h"
#include "model/Frame.h"

namespace kestol {

// What happens along one beam, at the station x = xi L. The beam must have its axes and loads.

/// Displacements along a beam: those of its ends by cubic interpolation (linear along the axis),
/// plus what the loads add between held ends.
///
/// A hinged end turns freely: its slope is the one that leaves no moment there. What a load q adds
/// between the held ends, over q L^4 / EI, is BeamEnds::deflection:
///
///     both fixed     xi^2 (1-xi)^2 / 24            hinge at end 2   xi^2 (1-xi)(3-2xi) / 48
///     both hinged    xi (1-xi)(1+xi-xi^2) / 24     hinge at end 1   xi (1-xi)^2 (1+2xi) / 48
class BeamDisplacements {
public:
  /// From the displacements of all equations, in global axes, and the sum of the beam's loads.
  BeamDisplacements(const BeamElement& beam, const ReaVecT& displacements);

  /// Global x, y, z; z is 0 in the plane.
  std::array<double, 3> At(double xi) const;

  /// The rotation of the section, global; about z only in the plane. At a hinged end it is the
  /// beam's own, not the node's.
  std::array<double, 3> RotationAt(double xi) const;

private:
  /// Deflection in one plane of bending.
  struct Deflection {
    double d1 = 0.0, d2 = 0.0;  ///< at the ends
    double s1 = 0.0, s2 = 0.0;  ///< slopes of the ends times L
    double load = 0.0;          ///< q L^4 / EI
  };
  static Deflection DeflectionOf(double d1, double s1, double d2, double s2, double load,
                                 const BeamEnds& ends);

  double u1_, u2_;                      ///< axial displacements of the ends
  double axialLoad_;                    ///< qx L^2 / 2EA
  Deflection v_, w_;                    ///< along local y and z
  double twist1_ = 0.0, twist2_ = 0.0;  ///< rotations of the ends about local x
  double twistLoad_ = 0.0;              ///< m L^2 / 2GJ
  double L_ = 0.0;
  const BeamEnds& ends_;
  bool plane_;
  double R_[3][3];  ///< local axes as columns
};

/// The strength c (1..dofsPerNode: axial, shears, torque, moments; in the plane axial, shear,
/// moment) along a beam: tension +, shear = dM/dx, moments E I times the curvature.
class BeamStrength {
public:
  /// `ends`: the stored strengths of the beam's ends, 2 x dofsPerNode.
  BeamStrength(const BeamElement& beam, const double* ends, int c);

  double At(double xi) const;

private:
  const BeamElement& beam_;
  int c_;
  double end1_, end2_;  ///< without loads
};

/// The global direction along which the diagram of strength c is drawn, times the strength: local z
/// for what acts in or turns the local x-z plane (c = 3 and 5 in space), else local y. Moments lie
/// on the tension side.
Vector3 DiagramDirection(const Frame& axes, ProblemType problemType, int c);

}  // namespace kestol
