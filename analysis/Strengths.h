#pragma once

#include <ostream>

namespace kestol {

class Project;

/// Displacements to strengths, stresses and reactions: values at the integration points of every
/// mesh, reactions, and smoothing when asked for. `info` may be null.
void ComputeStrengths(Project& project, std::ostream* info);

}  // namespace kestol
