#pragma once

#include <algorithm>
#include <ostream>
#include <span>
#include <vector>

#include "algebra/ReaVecT.h"
#include "analysis/MeshPart.h"
#include "analysis/NodeBlocks.h"
#include "analysis/Results.h"
#include "input/Project.h"

namespace kestol {

class StiffnessMatrix;

/// Builds K u = f of the model as it stands in the fresh matrix K, imposes the supports and solves;
/// gives the loads f and the displacements u. Refuses a system that cannot be solved, and a model
/// that a rigid motion is left to. `info` may be null.
Results AssembleAndSolve(const Project& project, StiffnessMatrix& K, std::ostream* info);

// The steps of it, for those who solve for many loads.

/// Records the couplings of all elements in the fresh matrix and gives it its storage.
void BuildStructure(const Project& project, StiffnessMatrix& K, std::ostream* info);

/// Adds the stiffness of all meshes.
void AddStiffnessOfAllMeshes(const Project& project, StiffnessMatrix& K, BlockAxes axes);

/// The equivalent nodal forces of the deck's loads: at nodes, on elements, own weight. By equation,
/// global axes.
ReaVecT LoadsOfDeck(const Project& project);

// The same for chosen elements, for those who share the work: one part per mesh.

/// Every mesh as a whole.
std::vector<MeshPart> WholeMeshes(const Project& project);

void AddStiffness(const Project& project, std::span<const MeshPart> parts, BlockSink& K,
                  BlockAxes axes);

/// Loads at nodes are all there; of element loads and own weight those of the parts.
ReaVecT LoadsOf(const Project& project, std::span<const MeshPart> parts);

/// Calls action(equation, code, value) for every degree of every support record: its equation (from
/// 1), ConstraintCode and value.
template <class Action>
void ForEachHeldDegree(const Project& project, Action action) {
  const int dofs = project.dofsPerNode;
  for (const auto [key, node] : *project.meshes[0]->nodes) {
    if (!node->constraint) continue;
    const Constraint& support = *node->constraint;
    const int first = FirstEquation(node->number, dofs);
    for (int d = 0; d < std::min(dofs, support.dofs); ++d)
      action(first + d, support.codes[d], support.values[d]);
  }
}

/// Imposes prescribed values and springs; `vector` and K are in the axes of the supports.
void ImposeSupports(const Project& project, StiffnessMatrix& K, ReaVecT& vector);

/// Refuses a system that was not solved: `result` is what StiffnessMatrix::Solve gave, or
/// kBreakdown.
constexpr int kBreakdown = -1;
[[noreturn]] void RefuseUnsolved(const Project& project, int result);

/// 0, or kBreakdown when the vector holds what is not finite or the supports leave a rigid motion:
/// rounding hides from the pivots what is not held.
int CheckSolution(const Project& project, const ReaVecT& u);

/// Turns the entries of nodes with inclined supports: into the axes of the support, and back.
void TurnToSupportAxes(const Project& project, ReaVecT& vector);
void TurnToGlobalAxes(const Project& project, ReaVecT& vector);

}  // namespace kestol
