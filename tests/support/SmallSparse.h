#pragma once

#include "algebra/Matriu.h"
#include "algebra/ReaVecT.h"
#include "algebra/SparseSolver.h"
#include "tests/support/GridModel.h"

namespace kestol {

// Small models in the sparse solver: chains of springs and a grid.

inline Matriu Single(double value) {
  Matriu M(1, 1);
  M(1, 1) = value;
  return M;
}

inline Matriu Scaled(int n, double value) {
  Matriu M(n, n);
  M.Fill(0.0);
  for (int i = 1; i <= n; ++i) M(i, i) = value;
  return M;
}

inline ReaVecT Filled(int n, double value) {
  ReaVecT v(n);
  v.Fill(value);
  return v;
}

/// Springs of stiffness 1 from node to node, one degree each, the first node tied to the ground.
struct Chain : SparseSolver {
  explicit Chain(int nodes, double target = 1e-12, double accepted = 1e-6, int limit = 100)
      : SparseSolver(nodes, target, accepted, limit) {
    for (int i = 1; i < n; ++i) AddNodePair(i, i + 1, 1);
    Allocate(1);
    AddBlock(1, 1, Single(1.0));
    for (int i = 1; i < n; ++i) {
      AddBlock(i, i, Single(1.0));
      AddBlock(i + 1, i + 1, Single(1.0));
      AddBlock(i, i + 1, Single(-1.0));
    }
  }
};

/// A model whose incomplete factors are not exact.
inline GridModel SmallGrid(int dofs) {
  return {4, 3, 3, dofs};
}

/// The grid, held at its lower plane, and unit loads on all free degrees.
struct Held : SparseSolver {
  Held(const GridModel& grid, ReaVecT& rhs, double target, double accepted, int limit)
      : SparseSolver(grid.NumDegrees(), target, accepted, limit) {
    grid.Structure(*this);
    grid.Assemble(*this);
    rhs = Filled(n, 1.0);
    grid.Hold(*this, 0.0, rhs);
  }
};

}  // namespace kestol
