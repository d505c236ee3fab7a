#pragma once

#include <functional>
#include <vector>

#include "algebra/ReaVecT.h"
#include "kestol/mechanisms/ScaledSystem.h"

namespace kestol {

/// Eigenvectors of A to its smallest values in magnitude, orthonormal, rising.
struct RitzVectors {
  std::vector<double> values;
  std::vector<ReaVecT> vectors;
  bool areAll = true;  ///< of NullSpaceOf: false where it stopped before it had all
};

/// A Ritz value below this is a motion without resistance.
constexpr double kNoResistance = 1e-12;

/// `steps` steps of subspace iteration on `count` vectors from a fixed start; `solve` replaces
/// every vector of a block by (A + shift I)^-1 times it.
RitzVectors SubspaceIteration(const ScaledSystem& A, int count, int steps,
                              const std::function<void(std::vector<ReaVecT>&)>& solve);

/// The vectors that A takes to 0: those whose Ritz value is below kNoResistance, `atLeast` + 2 of
/// them looked at, more while all of them are. A large model can have thousands, which would take
/// hours: the search ends before equations times the square of the vectors is above `longest`.
RitzVectors NullSpaceOf(ScaledSystem& A, int atLeast, double longest = 2e9);

}  // namespace kestol
