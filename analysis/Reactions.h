#pragma once

#include <vector>

#include "analysis/Results.h"

namespace kestol {

class Project;
class StiffnessMatrix;

/// The reactions of all supports as they are printed: the rows of the stiffness K without supports
/// (global axes) times the displacements u. No load is subtracted. Reactions of mid-side nodes that
/// the conversion to 6 nodes made go to their corners, half to each. By rising node index.
std::vector<Reaction> ReactionsOf(const Project& project, StiffnessMatrix& K, const ReaVecT& u);

/// The same from K u, of which only the rows at supports are asked.
std::vector<Reaction> ReactionsOf(const Project& project, const ReaVecT& internalForces);

}  // namespace kestol
