#pragma once

#include <array>
#include <vector>

#include "kestol/Model.h"
#include "programs/view/Runs.h"

namespace kestol {

/// Equal loads on many elements.
struct LoadGroup {
  const char* kind;             ///< "global", "projected", "local" or "face"
  int face;                     ///< face or edge from 0, -1 for the whole element
  std::array<double, 4> value;  ///< three components, and the couple about local x
  Runs runs;                    ///< places in the list of elements
};

/// The loads of these elements, equal ones together.
std::vector<LoadGroup> LoadGroupsOf(const Project& project, const std::vector<const Elem*>& elems);

/// Values of the degrees of a node as a force and a moment in space: zero where the problem has no
/// such degree.
std::array<double, 6> SixComponents(const ReaVecT& values, const Project& project);

}  // namespace kestol
