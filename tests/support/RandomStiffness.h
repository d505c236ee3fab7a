#pragma once

#include <algorithm>
#include <random>
#include <utility>
#include <vector>

#include "algebra/Matriu.h"
#include "algebra/SparseMatrix.h"

namespace kestol {

inline std::vector<double> RandomVector(std::mt19937& random, int n) {
  std::uniform_real_distribution<double> number(-1.0, 1.0);
  std::vector<double> x(n);
  for (double& value : x) value = number(random);
  return x;
}

/// A symmetric positive definite matrix of `nodes` nodes with `dofs` degrees each. A third of the
/// node pairs is coupled by random blocks, handed over in random order; `shift` times the largest
/// sum of a row keeps the diagonal blocks above the rest.
inline SparseMatrix RandomStiffness(std::mt19937& random, int nodes, int dofs, double shift = 0.5) {
  std::vector<std::pair<int, int>> pairs;
  std::vector<int> room(nodes * dofs, dofs);
  for (int a = 0; a < nodes; ++a) {
    for (int b = a + 1; b < nodes; ++b) {
      if (random() % 3 != 0) continue;
      pairs.emplace_back(a, b);
      for (int d = 0; d < dofs; ++d) {
        room[a * dofs + d] += dofs;
        room[b * dofs + d] += dofs;
      }
    }
  }
  std::shuffle(pairs.begin(), pairs.end(), random);
  const bool hasBlocks = dofs == 3 || dofs == 6;
  SparseMatrix A(nodes * dofs, room, hasBlocks ? dofs : 1);
  Matriu block(dofs, dofs);
  for (const auto& [a, b] : pairs) {
    const std::vector<double> entries = RandomVector(random, dofs * dofs);
    std::copy(entries.begin(), entries.end(), block.data.get());
    A.AddBlock(a * dofs, b * dofs, block);
  }
  for (int node = 0; node < nodes; ++node) {
    const std::vector<double> entries = RandomVector(random, dofs * dofs);
    const double diagonal = 2.0 + shift * room[node * dofs];
    for (int i = 1; i <= dofs; ++i)
      for (int j = 1; j <= i; ++j)
        block(i, j) = block(j, i) = i == j ? diagonal : entries[i * dofs - j];
    A.AddBlock(node * dofs, node * dofs, block);
  }
  return A;
}

}  // namespace kestol
