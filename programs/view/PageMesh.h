#pragma once

#include <cstdint>
#include <vector>

#include "kestol/Model.h"

namespace kestol {

/// Where nodes stand in the arrays of a page: those of the deck by rising number, then those that
/// the conversion to 6 nodes made. Places count from 0.
class NodePlaces {
public:
  explicit NodePlaces(const Project& project);

  std::uint32_t Of(const Node& node) const { return place_[node.number]; }
  const std::vector<const Node*>& Nodes() const { return nodes_; }
  const std::vector<int>& Numbers() const { return numbers_; }  ///< 0: made by the conversion
  int DeckNodes() const { return deckNodes_; }
  /// Whether the deck's nodes are 1..N, as every complete deck has them.
  bool Complete() const { return complete_; }

private:
  std::vector<const Node*> nodes_;
  std::vector<int> numbers_;
  std::vector<std::uint32_t> place_;  ///< by internal index
  int deckNodes_ = 0;
  bool complete_ = true;
};

/// One set of elements in the page: those of a mesh of the project that have all their nodes.
struct PageMesh {
  enum class Kind { Beam, Shell, Solid };

  bool IsBeams() const { return kind == Kind::Beam; }
  bool IsShells() const { return kind == Kind::Shell; }
  bool IsSolids() const { return kind == Kind::Solid; }

  Kind kind;
  int meshIndex;  ///< in the project
  int nnode, points;
  std::vector<const Elem*> elems;
  std::vector<double> stations;  ///< of beams: xi from 0 to 1
};

/// The meshes that can be drawn.
std::vector<PageMesh> PageMeshes(const Project& project);

}  // namespace kestol
