#pragma once

#include <array>
#include <map>
#include <memory>
#include <vector>

#include "algebra/ReaVec3.h"
#include "algebra/ReaVecT.h"
#include "model/PreassureLT.h"

namespace kestol {

class Project;
struct Node;

/// What one load case puts on a model, in result units and in the numbers of the deck.
struct CaseLoads {
  /// Direction of the weight times its factor; 0 for a case without the weight of the model.
  ReaVec3 gravity{0.0, 0.0, 0.0};
  std::map<int, ReaVecT> nodal;  ///< components by node
  /// The first load of each element's chain.
  std::map<int, std::unique_ptr<PreassureLT>> distributed;
  /// By node: prescribed displacements along the axes of the support; 0 where nothing is said.
  std::map<int, std::array<double, 6>> settlements;
};

/// Takes loads, weight and settlements off the model, which then carries nothing.
CaseLoads TakeLoads(Project& project);

/// The supports of mid-side nodes that a conversion made: their settlements follow from those of
/// the corners.
class MidSideSupports {
public:
  MidSideSupports() = default;
  explicit MidSideSupports(const Project& project);

  /// Gives every mid-side the settlements that its corners imply.
  void Settle() const;

private:
  struct MidSide {
    Node* node;
    const Node *a, *b;
  };
  std::vector<MidSide> midSides_;
};

/// Puts the sum of factors times cases on the model, in place of what it carries: afterwards every
/// question to the project and its results has the answer of a deck with these loads.
void PutLoads(Project& project, const std::vector<CaseLoads>& cases,
              const std::vector<double>& factors, const MidSideSupports& midSides);

}  // namespace kestol
