#pragma once

#include <vector>

#include "algebra/ReaVecT.h"
#include "kestol/mechanisms/Parts.h"

namespace kestol {

/// Nodes that move as one rigid body, by index.
struct Body {
  std::vector<int> moving;
  std::vector<int> still;  ///< of its elements: on its axis
};

/// The bodies of a mode with the displacements z; `moving` are the nodes that move, and smaller
/// differences than `noise` are none.
std::vector<Body> BodiesOf(const Project& project, const Parts& parts, const ReaVecT& z,
                           const std::vector<int>& moving, double noise);

/// Whether two nodes with rotations move as the ends of a rigid bar.
bool MoveTogether(const Project& project, const Parts& parts, const ReaVecT& z, int a, int b,
                  double noise);

}  // namespace kestol
