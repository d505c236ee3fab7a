#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "algebra/FixedMatrix.h"
#include "algebra/Matriu.h"
#include "algebra/SkyLine.h"
#include "analysis/Assembly.h"
#include "tests/support/RunDeck.h"

namespace kestol {

/// The stiffness of a small project as a dense matrix, by equation, without supports and in global
/// axes (or in those of inclined supports); with the drilling term where the project has
/// coplanarity flags.
inline Matriu GlobalStiffness(const Project& project, BlockAxes axes = BlockAxes::Global) {
  const int dofs = project.dofsPerNode;
  SkyLine K(project.numNodes * dofs);
  for (int i = 1; i <= project.numNodes; ++i)
    for (int j = i + 1; j <= project.numNodes; ++j) K.AddNodePair(i, j, dofs);
  K.Allocate(dofs);
  AddStiffnessOfAllMeshes(project, K, axes);
  Matriu dense;
  K.CopyFromYouToMat(dense);
  return dense;
}

/// The same of a deck that was not solved: equations in the order of the deck, no drilling term.
inline Matriu StiffnessOfDeck(const std::string& deck) {
  return GlobalStiffness(*ReadDeck(deck));
}

/// Number of zero eigenvalues of a symmetric positive semidefinite matrix, by elimination with full
/// pivoting.
inline int ZeroModes(Matriu K) {
  const int n = K.nrows;
  double largest = 0.0;
  for (int i = 1; i <= n; ++i) largest = std::max(largest, K(i, i));
  std::vector<bool> used(n + 1, false);
  for (int step = 0; step < n; ++step) {
    int pivot = 0;
    for (int i = 1; i <= n; ++i)
      if (!used[i] && (pivot == 0 || K(i, i) > K(pivot, pivot))) pivot = i;
    if (K(pivot, pivot) < 1e-10 * largest) return n - step;
    used[pivot] = true;
    for (int i = 1; i <= n; ++i) {
      if (used[i]) continue;
      const double factor = K(i, pivot) / K(pivot, pivot);
      for (int j = 1; j <= n; ++j)
        if (!used[j]) K(i, j) -= factor * K(pivot, j);
    }
  }
  return 0;
}

/// K := A^T K A for the 3x3 rotation A on every triple of degrees of one node (from 1) with `dofs`
/// degrees: what an inclined support makes of a stiffness.
inline void TurnNode(Matriu& K, int node, int dofs, const FixedMatrix<3, 3>& A) {
  for (int first = dofs * (node - 1); first < dofs * node; first += 3) {
    for (int line = 1; line <= K.nrows; ++line) {  // rows of K A
      const double v[3] = {K(line, first + 1), K(line, first + 2), K(line, first + 3)};
      for (int j = 1; j <= 3; ++j)
        K(line, first + j) = v[0] * A(1, j) + v[1] * A(2, j) + v[2] * A(3, j);
    }
    for (int line = 1; line <= K.ncols; ++line) {  // columns of A^T K
      const double v[3] = {K(first + 1, line), K(first + 2, line), K(first + 3, line)};
      for (int j = 1; j <= 3; ++j)
        K(first + j, line) = v[0] * A(1, j) + v[1] * A(2, j) + v[2] * A(3, j);
    }
  }
}

}  // namespace kestol
