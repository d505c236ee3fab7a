#pragma once

#include <array>

#include "algebra/ReaVecT.h"
#include "algebra/Vector3.h"
#include "analysis/NodeBlocks.h"

namespace kestol {

class Elem;
class MeshPart;
class PreassureLT;
class Project;
struct Node;

// The tetrahedra of N nodes with P integration points are <4, 1> and <10, 4>.

/// Adds the stiffness of every element.
template <int N, int P>
void AddSolidStiffness(const Project& project, const MeshPart& mesh, NodeBlocks& K);

/// Adds the equivalent nodal forces of own weight and loads of every element to f.
template <int N, int P>
void AddSolidLoads(const Project& project, const MeshPart& mesh, ReaVecT& f);

/// What one node carries of a load on a face: the force per area there, in global axes, and the
/// area.
struct FaceShare {
  const Node* node;
  Vector3 pressure;
  double area;
};

/// The shares of a load on one face: on the corners of a four-noded element a third of the face
/// each; with ten nodes on the mid-sides, each with the area and the normal of the surface at its
/// own place.
std::array<FaceShare, 3> SharesOfFace(const Elem& elem, const PreassureLT& load);

/// Stresses x, y, z, xy, xz, yz at the integration points.
template <int N, int P>
void SolidStresses(const Project& project, const MeshPart& mesh, const ReaVecT& u, ReaVecT& values);

}  // namespace kestol
