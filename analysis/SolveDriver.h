#pragma once

#include <functional>
#include <memory>
#include <ostream>

#include "algebra/StiffnessMatrix.h"
#include "analysis/Results.h"

namespace kestol {

class Project;

/// How a model is solved, beside what its deck says.
struct SolveSettings {
  bool renumber = true;  ///< false: nodes keep the order of the input
  /// Makes the matrix for so many degrees in place of the solver that the deck names; it orders its
  /// equations itself. Empty: the deck's solver.
  std::function<std::unique_ptr<StiffnessMatrix>(int)> otherMatrix{};
  std::ostream* info = nullptr;  ///< progress; null: none
};

/// Loads and displacements, and the matrix that they were found with.
struct Solution {
  Results results;
  std::unique_ptr<StiffnessMatrix> matrix;
};

/// From the model to displacements: prepares it, assembles and solves.
Solution SolveProject(Project& project, const SolveSettings& settings);

/// Everything that comes before equations are counted: refusals, hinges, the choice of the solver,
/// conversion to 6 nodes, numbering, normals. With the Double solver the model as read is solved on
/// the way, and the result says where the iterations on the converted one start; it is empty
/// otherwise.
ReaVecT PrepareModel(Project& project, const SolveSettings& settings);

/// Turns the choice of the Double solver into what is left of it without a starting vector: meshes
/// converted to 6 nodes and the Sparse solver. Refuses what the Double solver refuses.
void ConvertForDouble(Project& project);

/// The matrix of the deck's solver for a prepared model; `preSolved` is what PrepareModel gave.
std::unique_ptr<StiffnessMatrix> NewMatrix(const Project& project, const SolveSettings& settings,
                                           const ReaVecT& preSolved);

}  // namespace kestol
