#pragma once

#include "algebra/ReaVecT.h"

namespace kestol {

class Project;

/// Refuses solids, for which the Double solver has no mid-sides to start from.
void RefuseDoubleForSolids(const Project& project);

/// Where the iterations of the Double solver start: the pre-solved displacements (global axes, of
/// the nodes as read) and, at the mid-side nodes of the converted triangles, the means of the two
/// corners; in the axes of inclined supports, as the system is solved. Refuses tetrahedra.
ReaVecT StartVector(const Project& project, const ReaVecT& preSolved);

}  // namespace kestol
