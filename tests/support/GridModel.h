#pragma once

#include <vector>

#include "algebra/StiffnessMatrix.h"

namespace kestol {

/// A block of nx x ny x nz nodes in which every node is tied to its 26 neighbours by springs with
/// `dofs` degrees of freedom: elastic material on a regular grid. All nodes of the plane z = 0 are
/// held, when asked.
struct GridModel {
  int nx, ny, nz;
  int dofs;

  int NumNodes() const { return nx * ny * nz; }
  int NumDegrees() const { return NumNodes() * dofs; }

  /// The couplings, then Allocate.
  void Structure(StiffnessMatrix& K) const;
  /// All node blocks of all springs. Returns how many were added.
  long Assemble(StiffnessMatrix& K) const;
  /// Every degree of the plane z = 0 gets `value`.
  void Hold(StiffnessMatrix& K, double value, ReaVecT& rhs) const;

private:
  template <class Function>
  void ForEachSpring(Function f) const;
};

}  // namespace kestol
