#pragma once

#include <vector>

namespace kestol {

class Project;

/// A beam that is loaded across its axis and hinged at its first node. The solver's fixed-end
/// moments of such a beam do not grow with the load, so its solutions cannot be added up.
struct LoadedHinge {
  int element;
  int node, otherNode;  ///< the hinged one and the other, numbers of the deck
};

/// All such beams under the loads that the model carries, in the order of the deck. The model must
/// be prepared (LinearSystem): the release of each end is known only then.
std::vector<LoadedHinge> LoadedHinges(const Project& project);

}  // namespace kestol
