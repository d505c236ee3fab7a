#pragma once

#include <ostream>

#include "algebra/ReaVecT.h"
#include "analysis/NodeBlocks.h"

namespace kestol {

class Project;

/// Builds K u = f of the model as it stands in project.solver and project.global, imposes the
/// supports, solves, and leaves the displacements, in global axes, in project.global.
///
/// The solver is fresh and the vector is all zero. Ends the run when the system cannot be solved or
/// a rigid motion is left free. `info` may be null.
void AssembleAndSolve(Project& project, std::ostream* info);

/// Adds the stiffness of all meshes to project.solver.
void AddStiffnessOfAllMeshes(Project& project, BlockAxes axes);

/// Turns the entries of nodes with inclined supports: into the axes of the support, and back.
void TurnToSupportAxes(const Project& project, ReaVecT& vector);
void TurnToGlobalAxes(const Project& project, ReaVecT& vector);

}  // namespace kestol
