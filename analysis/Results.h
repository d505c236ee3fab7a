#pragma once

#include <algorithm>
#include <array>
#include <vector>

#include "algebra/ReaVecT.h"

namespace kestol {

/// The rows of K u at one node, global components. 0 for degrees that no support holds.
struct Reaction {
  int nodeIndex;                   ///< internal index, from 1
  std::array<double, 6> values{};  ///< in the order of the degrees of freedom
};

/// Values of one mesh at the integration points (PointLayout), element after element.
struct PointValues {
  ReaVecT local;     ///< in the element's axes, as computed
  ReaVecT smoothed;  ///< of shells: the same, smoothed; empty unless the deck asks for both
  ReaVecT main;    ///< of shells: main values, smoothed where asked; empty without a stress option
  ReaVecT angles;  ///< of shells: 6 angles of the main axes a point; empty like `main`
};

/// What a solution gives. Vectors over equations are in global axes.
struct Results {
  ReaVecT loads;          ///< the equivalent nodal forces F, before supports; by equation
  ReaVecT displacements;  ///< u; by equation
  /// K u without supports and springs, by equation; empty in the program's own run, which needs
  /// only the rows at supports.
  ReaVecT internalForces;
  std::vector<Reaction> reactions;  ///< of every node with a support record; rising index
  std::vector<PointValues> meshes;  ///< by position of the mesh in the project
  ReaVecT nodalStresses;            ///< 6 per node by index; empty without solids
};

/// The printed reaction of the node with this internal index; null for a node without a support.
inline const Reaction* FindReaction(const Results& results, int nodeIndex) {
  const auto found =
      std::ranges::lower_bound(results.reactions, nodeIndex, {}, &Reaction::nodeIndex);
  return found != results.reactions.end() && found->nodeIndex == nodeIndex ? &*found : nullptr;
}

}  // namespace kestol
