#pragma once

#include <array>

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

/// Natural coordinates.
struct Point {
  double s, t;
};

/// Integration points: the mid-points of edges 1-2, 2-3 and 3-1, exact for degree 2.
constexpr std::array<Point, 3> kPoints = {
    {{0.5, 0.0}, {0.5, 0.5}, {0.0, 0.5}}
};
constexpr double kWeight = 1.0 / 6.0;  ///< of each point, times the jacobian determinant

/// Shape functions.
constexpr std::array<double, 6> Shape(Point p) {
  const double s = p.s, t = p.t, L = 1.0 - s - t;
  return {L * (2 * L - 1), s * (2 * s - 1), t * (2 * t - 1), 4 * L * s, 4 * s * t, 4 * L * t};
}

/// Derivatives of the shape functions with respect to s and t.
struct Derivatives {
  std::array<double, 6> s, t;
};
constexpr Derivatives ShapeDerivatives(Point p) {
  const double s = p.s, t = p.t, L = 1.0 - s - t;
  return {
      {1 - 4 * L, 4 * s - 1, 0,         4 * (L - s), 4 * t, -4 * t     },
      {1 - 4 * L, 0,         4 * t - 1, -4 * s,      4 * s, 4 * (L - t)}
  };
}

}  // namespace tri6

}  // namespace kestol
