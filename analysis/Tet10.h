#pragma once

#include <array>

#include "algebra/Vector3.h"

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

// Places are (r, s, t).
constexpr std::array<Vector3, 10> kNodes = {
    {{0, 0, 0},
     {1, 0, 0},
     {0, 1, 0},
     {0, 0, 1},
     {0.5, 0, 0},
     {0.5, 0.5, 0},
     {0, 0.5, 0},
     {0, 0, 0.5},
     {0.5, 0, 0.5},
     {0, 0.5, 0.5}}
};

// Four-point rule, exact for degree 2. Seven digits on purpose, not the full (5 + 3 sqrt 5) / 20:
// results stay comparable. (P. C. Hammer, O. P. Marlowe, A. H. Stroud, Numerical integration over
// simplexes and cones, 1956.)
constexpr double kNear = 0.5854102, kFar = 0.1381966;
constexpr double kWeight = 0.041666666666666664;  ///< 1/24, times the jacobian determinant
constexpr std::array<Vector3, 4> kPoints = {
    {{kFar, kFar, kFar}, {kNear, kFar, kFar}, {kFar, kNear, kFar}, {kFar, kFar, kNear}}
};

/// Shape functions: corners L(2L - 1), mid-sides 4 L L'.
constexpr std::array<double, 10> Shape(const Vector3& p) {
  const double L1 = 1.0 - p[0] - p[1] - p[2], L2 = p[0], L3 = p[1], L4 = p[2];
  return {L1 * (2 * L1 - 1), L2 * (2 * L2 - 1), L3 * (2 * L3 - 1), L4 * (2 * L4 - 1), 4 * L1 * L2,
          4 * L2 * L3,       4 * L3 * L1,       4 * L1 * L4,       4 * L2 * L4,       4 * L3 * L4};
}

/// Derivatives of the shape functions with respect to r, s and t.
struct Derivatives {
  std::array<double, 10> r, s, t;
};
constexpr Derivatives ShapeDerivatives(const Vector3& p) {
  const double r = p[0], s = p[1], t = p[2], L1 = 1.0 - r - s - t;
  const double c = 1 - 4 * L1;
  return {
      {c, 4 * r - 1, 0,         0,         4 * (L1 - r), 4 * s, -4 * s,       -4 * t,       4 * t, 0    },
      {c, 0,         4 * s - 1, 0,         -4 * r,       4 * r, 4 * (L1 - s), -4 * t,       0,     4 * t},
      {c, 0,         0,         4 * t - 1, -4 * r,       0,     -4 * s,       4 * (L1 - t), 4 * r, 4 * s}
  };
}

/// Those at the integration points.
constexpr std::array<Derivatives, 4> kDerivatives = {
    ShapeDerivatives(kPoints[0]), ShapeDerivatives(kPoints[1]), ShapeDerivatives(kPoints[2]),
    ShapeDerivatives(kPoints[3])};

}  // namespace tet10

}  // namespace kestol
