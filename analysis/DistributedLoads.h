#pragma once

#include "algebra/ReaVecT.h"
#include "algebra/Vector3.h"
#include "input/Project.h"
#include "model/Frame.h"
#include "model/Node.h"

namespace kestol {

// Distributed loads as forces at nodes, for shells, solids and beams.

/// The nodal forces that the loads of elements add up to.
struct NodalForces {
  ReaVecT& f;  ///< by equation
  int dofsPerNode;

  /// Adds `load` times `factor` to three equations of a node, from its degree `first` (from 0) on:
  /// 0 for a force, 3 for a moment.
  void Add(const Node& node, int first, const Vector3& load, double factor);
};

/// The values of a load as a vector.
inline Vector3 ValuesOf(const PreassureLT& load) {
  return {load.values(1), load.values(2), load.values(3)};
}

/// Force per unit area in global axes of a load q of this kind on a surface with the
/// local axes `axes`: q in these; q global; or q global and per unit of the area projected on the
/// plane normal to it, which makes it zero without a direction.
Vector3 SurfaceLoad(LoadKind kind, const Vector3& q, const Frame& axes);

/// Whether weight acts at all: a load case without that of the model has no direction for it.
inline bool HasGravity(const Project& project) {
  const ReaVec3& g = project.gravity;
  return g(1) != 0.0 || g(2) != 0.0 || g(3) != 0.0;
}

/// The own weight of a beam per length or of a shell per area: that of its material per volume
/// times `size`, the section's area or the thickness; with 1 that of a solid. 0.0 unless gravity
/// acts and both factors are positive: two marks of "not given" would multiply to 1.
double OwnWeight(const Project& project, const Material& material, double size);

/// The own weight w along the gravity direction of the project: a global load. In a plane problem
/// the run ends with "error: for 2D problems GravityDirection_Z must be 0.0\n" when gz is positive.
Vector3 WeightAlongGravity(const Project& project, double w);

}  // namespace kestol
