#pragma once

#include <array>

#include "algebra/Vector3.h"

namespace kestol {

/// The six-noded triangle in its natural coordinates s, t with L = 1 - s - t.
///
///     t
///     3
///     |\            corners   1 (0,0)   2 (1,0)   3 (0,1)
///     6 5           mid-sides 4 on 1-2, 5 on 2-3, 6 on 3-1
///     |  \          .
///     1-4-2  s
namespace tri6 {

// Places are (s, t, 0).
constexpr std::array<Vector3, 6> kNodes = {
    {{0, 0}, {1, 0}, {0, 1}, {0.5, 0}, {0.5, 0.5}, {0, 0.5}}
};

/// Integration points: the mid-points of edges 1-2, 2-3 and 3-1, exact for degree 2.
constexpr std::array<Vector3, 3> kPoints = {kNodes[3], kNodes[4], kNodes[5]};
constexpr double kWeight = 1.0 / 6.0;  ///< of each point, times the jacobian determinant

/// Shape functions.
constexpr std::array<double, 6> Shape(const Vector3& p) {
  const double s = p[0], t = p[1], L = 1.0 - s - t;
  return {L * (2 * L - 1), s * (2 * s - 1), t * (2 * t - 1), 4 * L * s, 4 * s * t, 4 * L * t};
}

/// Derivatives of the shape functions with respect to s and t.
struct Derivatives {
  std::array<double, 6> s, t;
};
constexpr Derivatives ShapeDerivatives(const Vector3& p) {
  const double s = p[0], t = p[1], L = 1.0 - s - t;
  return {
      {1 - 4 * L, 4 * s - 1, 0,         4 * (L - s), 4 * t, -4 * t     },
      {1 - 4 * L, 0,         4 * t - 1, -4 * s,      4 * s, 4 * (L - t)}
  };
}

/// Those at the integration points.
constexpr std::array<Derivatives, 3> kDerivatives = {
    ShapeDerivatives(kPoints[0]), ShapeDerivatives(kPoints[1]), ShapeDerivatives(kPoints[2])};

}  // namespace tri6

}  // namespace kestol
