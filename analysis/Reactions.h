#pragma once

namespace kestol {

class Project;

/// Fills the reactions of all supports: the rows of the stiffness without supports, assembled once
/// more in global axes, times the displacements. No load is subtracted. Reactions of mid-side nodes
/// that the conversion to 6 nodes made go to their corners, half to each. Deletes project.solver,
/// which was only needed for this.
void ComputeReactions(Project& project);

}  // namespace kestol
