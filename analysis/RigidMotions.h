#pragma once

namespace kestol {

class Project;

/// Whether the supports stop every motion of every part of the model as a rigid body. A part is a
/// group of nodes that elements connect, whatever mesh they belong to; nodes without elements are
/// left out.
///
/// The pivots of the factorisation cannot tell: rounding leaves them at 1e-10 where an exact one
/// would be 0, and the solution is then noise. Only supports are looked at, so a mechanism that
/// hinges make is not found.
bool SupportsStopRigidMotions(const Project& project);

}  // namespace kestol
