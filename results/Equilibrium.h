#pragma once

#include "results/NodeResults.h"

namespace kestol {

/// Loads and true reactions summed up, moments about the origin.
struct Equilibrium {
  NodeForces loads;      ///< the nodal forces F
  NodeForces reactions;  ///< what the supports give to the structure
  /// The moment that the ground gives to the drilling rotations of shells: it is no support's, and
  /// the balance of moments needs it.
  Vector3 drilling{};
  /// What is left of loads, reactions and drilling, over the sum of the sizes of all forces
  /// (moments: of all moments); 0 where nothing acts.
  NodeForces relativeErrors;
  double relativeError = 0.0;  ///< the largest of them
};

Equilibrium EquilibriumOf(const Project& project, const Results& results);

}  // namespace kestol
