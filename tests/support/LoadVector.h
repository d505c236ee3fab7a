#pragma once

#include <string>
#include <vector>

#include "algebra/Vector3.h"
#include "analysis/ElementRoutines.h"
#include "analysis/MeshPart.h"
#include "tests/support/RunDeck.h"

namespace kestol {

/// What own weight and distributed loads of a deck put on its nodes: by equations in the order of
/// the deck, in global axes. Nodal loads are left out.
inline std::vector<double> LoadsOf(const std::string& deck) {
  const auto project = ReadDeck(deck);
  ReaVecT f(project->dofsPerNode * project->numNodes);
  for (const auto& mesh : project->meshes) RoutinesFor(*mesh).addLoads(*project, *mesh, f);
  return {f.begin(), f.end()};
}

/// The force (first = 0) or moment (first = 3) on a node (from 1) in such a vector.
inline Vector3 At(const std::vector<double>& loads, int node, int dofs, int first = 0) {
  const double* const f = loads.data() + dofs * (node - 1) + first;
  return {f[0], f[1], f[2]};
}

}  // namespace kestol
