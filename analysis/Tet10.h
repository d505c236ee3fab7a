#pragma once

#include <array>

namespace kestol {

/// The ten-noded tetrahedron in its natural coordinates r, s, t with L1 = 1 - r - s - t, L2 = r,
/// L3 = s, L4 = t.
///
///     corners    1 (0,0,0)   2 (1,0,0)   3 (0,1,0)   4 (0,0,1)
///     mid-sides  5 on 1-2    6 on 2-3    7 on 3-1    8 on 1-4    9 on 2-4    10 on 3-4
namespace tet10 {

/// Corners (from 0) at the ends of the edge of each mid-side node 5..10.
constexpr int kEdges[6][2] = {
    {0, 1},
    {1, 2},
    {2, 0},
    {0, 3},
    {1, 3},
    {2, 3}
};

/// Natural coordinates.
struct Point {
  double r, s, t;
};

// Four-point rule, exact for degree 2. Seven digits on purpose, not the full (5 + 3 sqrt 5) / 20:
// results stay comparable. (P. C. Hammer, O. P. Marlowe, A. H. Stroud, Numerical integration over
// simplexes and cones, 1956.)
constexpr double kNear = 0.5854102, kFar = 0.1381966;
constexpr double kWeight = 0.041666666666666664;  ///< 1/24, times the jacobian determinant
constexpr std::array<Point, 4> kPoints = {
    {{kFar, kFar, kFar}, {kNear, kFar, kFar}, {kFar, kNear, kFar}, {kFar, kFar, kNear}}
};

/// Shape functions: corners L(2L - 1), mid-sides 4 L L'.
constexpr std::array<double, 10> Shape(Point p) {
  const double L1 = 1.0 - p.r - p.s - p.t, L2 = p.r, L3 = p.s, L4 = p.t;
  return {L1 * (2 * L1 - 1), L2 * (2 * L2 - 1), L3 * (2 * L3 - 1), L4 * (2 * L4 - 1), 4 * L1 * L2,
          4 * L2 * L3,       4 * L3 * L1,       4 * L1 * L4,       4 * L2 * L4,       4 * L3 * L4};
}

/// Derivatives of the shape functions with respect to r, s and t.
struct Derivatives {
  std::array<double, 10> r, s, t;
};
constexpr Derivatives ShapeDerivatives(Point p) {
  const double r = p.r, s = p.s, t = p.t, L1 = 1.0 - r - s - t;
  const double c = 1 - 4 * L1;
  return {
      {c, 4 * r - 1, 0,         0,         4 * (L1 - r), 4 * s, -4 * s,       -4 * t,       4 * t, 0    },
      {c, 0,         4 * s - 1, 0,         -4 * r,       4 * r, 4 * (L1 - s), -4 * t,       0,     4 * t},
      {c, 0,         0,         4 * t - 1, -4 * r,       0,     -4 * s,       4 * (L1 - t), 4 * r, 4 * s}
  };
}

}  // namespace tet10

}  // namespace kestol
