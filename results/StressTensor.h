#pragma once

#include <array>

#include "algebra/Vector3.h"
#include "model/Frame.h"

namespace kestol {

/// A symmetric tensor in the order XX YY ZZ XY YZ XZ. (The solver's own arrays have XZ before YZ.)
using StressTensor = std::array<double, 6>;

/// From the solver's order xx yy zz xy xz yz.
inline StressTensor FromSolverOrder(const double* s) {
  return {s[0], s[1], s[2], s[3], s[5], s[4]};
}

/// Square root of the second invariant of the deviator, times the root of 3.
double VonMises(const StressTensor& stress);

/// The stress of a surface (xx, yy, xy in the axes of `frame`, nothing along its z) in global axes.
StressTensor SurfaceStressToGlobal(double xx, double yy, double xy, const Frame& frame);

/// Main values from the largest to the smallest with their unit directions, right-handed.
struct MainStress {
  std::array<double, 3> values;
  std::array<Vector3, 3> directions;
};
MainStress MainStressOf(const StressTensor& stress);

}  // namespace kestol
