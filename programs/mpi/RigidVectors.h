#pragma once

#include "programs/mpi/Partition.h"
#include "programs/mpi/PetscObjects.h"

namespace kestol {

class Project;

/// Tells the matrix the motions of the model as a rigid body, from which algebraic multigrid builds
/// its coarse levels: in the axes of inclined supports, and zero at prescribed degrees.
void AttachRigidMotions(const Project& project, const Partition& partition, Mat matrix);

}  // namespace kestol
