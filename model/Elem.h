#pragma once

#include <memory>

#include "algebra/Plex.h"
#include "algebra/ReaVec3.h"
#include "algebra/Vector3.h"
#include "model/Material.h"

namespace kestol {

class Matriu;
class Mesh;
struct Node;

/// One element: its nodes, its material, and the geometry that the formulations ask for.
///
/// Transformation matrices have the local axes, in global components, as columns: a global vector
/// is T times the local one. The operations below need all nodes; nothing in them touches the heap
/// when T has its size already.
class Elem {
public:
  /// An element of `nodeCount` nodes, all null.
  Elem(Mesh* owner, int nodeCount);

  /// The face `face` (from 0) of a triangle or tetrahedron of corners only: its node i is node
  /// (i + face) mod nnode of `el`, with one node less.
  ///
  ///     triangle     (1,2) (2,3) (3,1)
  ///     tetrahedron  (1,2,3) (2,3,4) (3,4,1) (4,1,2)
  ///
  /// It is registered in no mesh. Ends the run for other elements and for a face out of range. No
  /// stage of the run calls it.
  Elem(Elem* el, int face);

  virtual ~Elem() = default;

  /// The element's own material if any; else the one of `materials` under its material number; else
  /// null.
  const Material* GetMaterial(const Plex<Material>& materials) const;

  /// Fills the 3x3 T from the Euler angles of the material and gives true; false, T untouched,
  /// when `material` is null or has none.
  bool GivenAxes(const Material* material, Matriu& T) const;

  /// Local axes of a beam as columns of T: 3x3 on (u, v, theta) in the plane, 6x6 block diagonal
  /// in space. x runs from node 1 to node 2. Without axes of the material y lies on the left of x
  /// in the plane, and in space y is horizontal and z points upwards; y of a vertical beam is
  /// global x, turned by `alpha`. With axes of the material T is these, x and z turned over when x
  /// runs against the beam, and brought onto the beam when x is not along it within a cosine of
  /// 1 - 1e-5.
  ///
  /// Ends the run for a beam of no length (of no length in the plane, in a plane problem), out of
  /// the plane of a plane problem, with given axes at a right angle to it or out of that plane, and
  /// for `alpha` on a beam that is not vertical.
  void CalcTransfMatrixBeam(Matriu& T, const Material* material, ProblemType problemType) const;

  /// Normal of a triangle, by the right hand along the order of its corners. Ends the run for a
  /// triangle without area.
  Vector3 UnitNormal() const;

  /// Local axes of a shell triangle as columns of the 3x3 T, z along the element's normal, from the
  /// order of its corners. x is that of the material's axes, projected into the shell; without, x
  /// is horizontal, or in the plane of global x and z when the normal is vertical within 1/64.
  ///
  /// T6 (6x6) turns the shell's local degrees (u, v, w, beta1, beta2, drilling), where the
  /// rotations are about -y, x and the normal, into the global ones.
  ///
  /// Ends the run for a triangle without area and for a given x along the normal.
  void ShellAxes(Matriu& T, Matriu& T6, const Material* material) const;

  /// Whether the segment from p to s crosses this 2-noded element (plane) or triangle (space).
  /// Segments in the plane may touch; a triangle is crossed inside its border only. What is
  /// parallel does not cross. Ends the run for any other element. No stage of the run calls it.
  bool IsCutted(const ReaVec3& p, const ReaVec3& s) const;

  /// Length of the chord from node 1 to node 2.
  double Length() const;

  std::unique_ptr<Node*[]> nodes;      ///< `nnode` nodes, not owned; null for an unknown number
  std::unique_ptr<Material> material;  ///< null unless the element line holds a definition
  Mesh* mesh;                          ///< owner; null for a face
  double alpha = 0.0;                  ///< roll angle of a vertical beam in space; has no input
  int nnode;                           ///< nodes of this element
  int number = 0;                      ///< as read, or as given by a merge
  int materialNumber = 0;              ///< 0 when none was given
  int attributes[2] = {0, 0};          ///< zero after reading
};

}  // namespace kestol
