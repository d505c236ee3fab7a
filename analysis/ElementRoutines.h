#pragma once

#include "algebra/ReaVecT.h"
#include "analysis/NodeBlocks.h"

namespace kestol {

class Mesh;
class Project;

/// What the analysis asks of a family of elements.
struct ElementRoutines {
  int elemType;  ///< ElemType

  /// Adds every element's stiffness to the project's solver.
  void (*addStiffness)(Project&, const Mesh&, BlockAxes);
  /// Adds own weight and loads of every element to project.global.
  void (*addLoads)(Project&, const Mesh&);
  /// Strengths or stresses of one element: how many numbers at all its integration points.
  int (*valuesPerElement)(const Project&, const Mesh&);
  /// Computes them, element after element, into a vector of that many for each.
  void (*values)(const Project&, const Mesh&, ReaVecT&);
};

/// The routines for the mesh's type; ends the run with "error: elemtype unknown\n" for a type that
/// is read but not analysed.
const ElementRoutines& RoutinesFor(const Mesh& mesh);

}  // namespace kestol
