#pragma once

#include "algebra/ReaVecT.h"
#include "analysis/NodeBlocks.h"

namespace kestol {

class Mesh;
class MeshPart;
class Project;

/// What the analysis asks of one kind of element (ElementTable.h).
struct ElementRoutines {
  int elemType;  ///< ElemType
  int nnode;

  /// Adds the stiffness of every element of the part.
  void (*addStiffness)(const Project&, const MeshPart&, NodeBlocks& K);
  /// Adds own weight and loads of the same to the nodal forces f, by equation.
  void (*addLoads)(const Project&, const MeshPart&, ReaVecT& f);
  /// Strengths or stresses at the displacements u (by equation, global axes), laid out as
  /// PointLayout says; `values` has its size.
  void (*values)(const Project&, const MeshPart&, const ReaVecT& u, ReaVecT& values);
};

/// The routines for the mesh's elements; ends the run with "error: elemtype unknown\n" for a type
/// that is read but not analysed.
const ElementRoutines& RoutinesFor(const Mesh& mesh);

}  // namespace kestol
