#pragma once

#include "algebra/ReaVecT.h"
#include "algebra/Vector3.h"
#include "analysis/NodeBlocks.h"

namespace kestol {

class MeshPart;
class Project;

// The triangles of N nodes with P integration points are <3, 1> and <6, 3>.

/// Adds the stiffness of every element.
template <int N, int P>
void AddShellStiffness(const Project& project, const MeshPart& mesh, NodeBlocks& K);

/// Adds the equivalent nodal forces of own weight and loads of every element to f.
template <int N, int P>
void AddShellLoads(const Project& project, const MeshPart& mesh, ReaVecT& f);

/// Resultants at the integration points, 8 each (Nx' Ny' Nxy' Mx' My' Mxy' Qx' Qy'), in local axes.
template <int N, int P>
void ShellResultants(const Project& project, const MeshPart& mesh, const ReaVecT& u,
                     ReaVecT& values);

/// The sum over all shells of their drilling stiffness times the rotations u has there: a moment
/// that the ground holds, since the stiffness stands between the node and nothing else.
Vector3 DrillingMoment(const Project& project, const ReaVecT& u);

}  // namespace kestol
