#pragma once

#include <memory>
#include <ostream>

namespace kestol {

class MeshPart;
class Project;
class ReaVecT;
class StiffnessMatrix;
struct Results;

/// Fills results.meshes from the displacements: values at the integration points of every mesh, and
/// main values where asked for.
void ComputePointValues(const Project& project, Results& results);

/// Values at the integration points of the elements of one part, element after element.
ReaVecT ValuesAtPoints(const Project& project, const MeshPart& part, const ReaVecT& displacements);

/// Displacements to strengths, stresses and reactions: values at the integration points, reactions,
/// and smoothing when asked for. The matrix that solved the system is assembled once more without
/// supports for the reactions, and then released. With Forces::OfAllNodes results.internalForces is
/// filled as well. `info` may be null.
enum class Forces { OfSupports, OfAllNodes };
void ComputeStrengths(const Project& project, std::unique_ptr<StiffnessMatrix> K, Results& results,
                      std::ostream* info, Forces forces = Forces::OfSupports);

}  // namespace kestol
