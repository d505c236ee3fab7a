#pragma once

#include "algebra/ReaVecT.h"

namespace kestol {

class Project;

/// Where the iterations of the Double solver start: the pre-solved displacements (global axes, of
/// the nodes as read) and, at the mid-side nodes of the converted triangles, the means of the two
/// corners; in the axes of inclined supports, as the system is solved. Ends the run for tetrahedra.
ReaVecT StartVector(const Project& project, const ReaVecT& preSolved);

}  // namespace kestol
