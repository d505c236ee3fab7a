#pragma once

#include <optional>
#include <string>
#include <vector>

namespace kestol {

class BeamElement;
class Project;
struct Elem;

/// A beam that is loaded across its axis and hinged at its first node. The solver's fixed-end
/// moments of such a beam are not those of its load and do not grow with it, so that its solutions
/// are unsafe and cannot be added up.
struct LoadedHinge {
  int element;
  int node, otherNode;  ///< the hinged one and the other, numbers of the deck
};

/// Whether the beam is one, under the loads that the model carries. Asks for the releases of the
/// ends (PrepareHinges).
std::optional<LoadedHinge> LoadedHingeOf(const Project& project, BeamElement& beam,
                                         const Elem& elem);

/// All such beams, in the order of the deck.
std::vector<LoadedHinge> LoadedHinges(const Project& project);

/// What is wrong with it and what to write instead.
std::string TextOf(const LoadedHinge& hinge);

}  // namespace kestol
