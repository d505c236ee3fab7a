#pragma once

#include <span>

#include "algebra/Vector3.h"
#include "model/Mesh.h"

namespace kestol {

/// What is known of one kind of element in its natural coordinates: lines and triangles leave the
/// last ones 0.
struct ElementKind {
  ElemType type;
  int nnode;                       ///< nodes of an element
  int dimension;                   ///< natural coordinates in use
  std::span<const Vector3> nodes;  ///< in the order of the deck

  /// Shape functions at a place, one per node.
  void (*shape)(const Vector3& place, double* N);

  std::span<const Vector3> points;  ///< where values are taken: integration points
  double weight;                    ///< of each, times the jacobian determinant
  int exactDegree;                  ///< of the polynomials that the points integrate exactly
  int valuesPerPoint;               ///< 0: one for every degree of a node
};

/// All elements that are analysed.
std::span<const ElementKind> AnalysedElements();

/// The row of that type (ElemType) and node count; null for one that is not analysed.
const ElementKind* FindElementKind(int elemType, int nnode);

}  // namespace kestol
