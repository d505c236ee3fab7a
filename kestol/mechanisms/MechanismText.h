#pragma once

#include "kestol/Mechanisms.h"
#include "kestol/mechanisms/Parts.h"
#include "kestol/mechanisms/RigidModes.h"

namespace kestol {

/// Fills the motion, the words and the causes of a mode from the displacements z of all equations,
/// global axes; `rigid` is null where no part moves as a whole.
void DescribeMode(const Project& project, const Parts& parts, const ReaVecT& z,
                  const RigidMotion* rigid, MechanismMode& mode);

/// "node 4", "nodes 2, 4 and 7-9".
std::string NodesText(std::vector<int> numbers);

}  // namespace kestol
