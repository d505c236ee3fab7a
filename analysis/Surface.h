#pragma once

#include "algebra/Vector3.h"
#include "input/Project.h"
#include "model/Node.h"

// Loads on surfaces, for shells and for faces of solids.

inline Vector3 PositionOf(const Node& node) {
  return {node.x, node.y, node.z};
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
