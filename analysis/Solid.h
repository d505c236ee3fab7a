#pragma once

#include "algebra/ReaVecT.h"
#include "analysis/NodeBlocks.h"

namespace kestol {

class Mesh;
class Project;

/// Adds the stiffness of every 4- or 10-noded tetrahedron (by mesh.nnode).
void AddSolidStiffness(const Project& project, const Mesh& mesh, NodeBlocks& K);

/// Adds the equivalent nodal forces of own weight and loads of every element to f.
void AddSolidLoads(const Project& project, const Mesh& mesh, ReaVecT& f);

/// Stresses x, y, z, xy, xz, yz at the integration points: one per 4-noded element, four per
/// 10-noded one.
void SolidStresses(const Project& project, const Mesh& mesh, const ReaVecT& u, ReaVecT& values);

}  // namespace kestol
