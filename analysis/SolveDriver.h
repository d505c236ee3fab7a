#pragma once

#include <ostream>

namespace kestol {

class Project;

/// From the model to displacements in project.global: chooses the solver, prepares the meshes,
/// assembles and solves. `renumber` 0 keeps the nodes in input order; `info` may be null.
void SolveProject(Project& project, int renumber, std::ostream* info);

}  // namespace kestol
