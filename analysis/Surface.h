#pragma once

#include <array>
#include <cmath>

#include "input/Project.h"
#include "model/Node.h"

// Loads on surfaces, for shells and for faces of solids, and the small vectors they need.

using Vector3 = std::array<double, 3>;

inline Vector3 PositionOf(const Node& node) {
  return {node.x, node.y, node.z};
}
inline Vector3 Minus(const Vector3& a, const Vector3& b) {
  return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}
inline Vector3 Times(const Vector3& a, double s) {
  return {a[0] * s, a[1] * s, a[2] * s};
}
inline double Dot(const Vector3& a, const Vector3& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}
inline double Norm(const Vector3& a) {
  return std::sqrt(Dot(a, a));
}
inline Vector3 Cross(const Vector3& a, const Vector3& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

/// Local axes of a surface with the unit normal n, as x, y, n in global components: the arbitrary
/// axis rule with the threshold 1/64.
struct SurfaceAxes {
  Vector3 x, y, n;
};
SurfaceAxes AxesFromNormal(const Vector3& n);

/// Force per unit area in global axes of a load q of this kind (LoadKind) on a surface with the
/// unit normal n: local components in AxesFromNormal(n); global; or global and projected.
Vector3 SurfaceLoad(int kind, const Vector3& q, const Vector3& n);

/// A global load reduced to the area projected on the plane normal to it; zero without a direction.
Vector3 ProjectedLoad(const Vector3& q, const Vector3& n);

/// The own weight w along the gravity direction of the project: a global load. In a plane problem
/// the run ends with "error: for 2D problems GravityDirection_Z must be 0.0\n" when gz is positive.
Vector3 WeightAlongGravity(const Project& project, double w);
