#pragma once

#include <array>

#include "algebra/Matriu.h"
#include "model/BeamEnds.h"
#include "model/PreassureLT.h"

namespace kestol {

class Elem;

/// A uniform load along a beam in its local axes: forces per length and the couple m per length
/// about local x. In the plane qz and m are 0.
struct BeamLoad {
  double qx = 0.0, qy = 0.0, qz = 0.0, m = 0.0;
};

/// Forces on the two ends of a beam in local axes, in the order of the degrees of freedom.
struct BeamEndForces {
  std::array<double, 6> f1{}, f2{};
};

/// Internal force of a beam of length L under a uniform load q at x = xi L, for an end code
/// (EndCode). Components: 1 axial, 2 shear, 3 moment, 4 torque. An unknown end code gives 0.0; a
/// component outside 1..4 of a known one ends the run with "error in GiveLocalStrength\n".
double GiveLocalStrength(int component, double xi, double L, double q, int endCode);

/// The local intensities of one load on a beam with the axes T (3x3 or 6x6); components that are
/// noise of the turning are 0.0.
BeamLoad LocalIntensities(const PreassureLT& load, const Elem& beam, const Matriu& T,
                          ProblemType problemType);

/// Equivalent forces of the load on the ends, local axes.
BeamEndForces EquivalentEndForces(const BeamLoad& load, double L, ProblemType problemType,
                                  int endCode);

/// The internal force that a load adds at a station, value c (1..dofsPerNode) as the result files
/// count them: axial, shears, torque, moments. Components of 0 add nothing.
double StationStrength(const BeamLoad& load, int c, double xi, double L, ProblemType problemType,
                       int endCode);

}  // namespace kestol
