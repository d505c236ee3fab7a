#pragma once

#include <array>
#include <vector>

#include "algebra/ReaVecT.h"
#include "kestol/mechanisms/Parts.h"

namespace kestol {

/// A rigid motion: the velocity of the point `center` and the rotation, in global axes.
struct RigidMotion {
  int part = 0;
  Vector3 center{};
  Vector3 velocity{}, rotation{};
};

/// The motion of the point x.
inline Vector3 MotionAt(const RigidMotion& motion, const Vector3& x) {
  return Plus(motion.velocity, Cross(motion.rotation, Minus(x, motion.center)));
}

/// Whether nodes have x, y and a rotation.
bool IsPlaneFrame(const Project& project);

/// What the vector of all equations says of one node; global axes.
Vector3 TranslationOf(const Project& project, const ReaVecT& z, int nodeIndex);
Vector3 RotationOf(const Project& project, const ReaVecT& z, int nodeIndex);

/// The rigid motions that supports and springs leave to the parts, as few coordinates in each as
/// there can be.
std::vector<RigidMotion> FreeRigidMotions(const Project& project, const Parts& parts);

/// The displacements of all equations in a rigid motion, global axes.
ReaVecT DisplacementsOf(const Project& project, const Parts& parts, const RigidMotion& motion);

/// The motion of the given nodes as a rigid body, by least squares; `misfit` becomes the largest
/// difference over the largest displacement.
RigidMotion FitRigidMotion(const Project& project, const Parts& parts,
                           const std::vector<int>& nodes, const ReaVecT& z, double& misfit);

}  // namespace kestol
