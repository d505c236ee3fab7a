#include "analysis/StartVector.h"

#include <algorithm>

#include "analysis/Assembly.h"
#include "analysis/Counts.h"
#include "input/Project.h"
#include "main/ErrorChannel.h"

namespace kestol {

namespace {

/// Mid-side node k + 3 lies between the corners k and k + 1 (cyclic).
void FillMidSides(const Mesh& mesh, int dofs, ReaVecT& start) {
  for (const auto [number, elem] : mesh.elems) {
    for (int k = 0; k < 3; ++k) {
      const int corner1 = FirstEquation(elem->nodes[k]->number, dofs);
      const int corner2 = FirstEquation(elem->nodes[(k + 1) % 3]->number, dofs);
      const int middle = FirstEquation(elem->nodes[k + 3]->number, dofs);
      for (int d = 0; d < dofs; ++d)
        start(middle + d) = 0.5 * (start(corner1 + d) + start(corner2 + d));
    }
  }
}

}  // namespace

void RefuseDoubleForSolids(const Project& project) {
  for (const auto& mesh : project.meshes)
    if (mesh->elemType == Tetrahedra)
      Fatal("error: Double solver not implemented for tetrahedras\n");
}

ReaVecT StartVector(const Project& project, const ReaVecT& preSolved) {
  RefuseDoubleForSolids(project);
  ReaVecT start(EquationCount(project));
  std::copy(preSolved.begin(), preSolved.end(), start.begin());

  const int meshCount = static_cast<int>(project.meshes.size());
  for (int m = 0; m < meshCount;) {
    const Mesh& mesh = *project.meshes[m];
    if (mesh.elemType == Triangle && ElementCount(mesh) > 0) {
      FillMidSides(mesh, project.dofsPerNode, start);
      // Deliberate: the corner counter, 3 after the loop, is the mesh counter too. Meshes passed
      // over start from 0.0 at their mid-sides.
      m = std::max(4, m + 1);
    } else {
      ++m;
    }
  }
  TurnToSupportAxes(project, start);
  return start;
}

}  // namespace kestol
