#pragma once

#include <array>
#include <functional>
#include <span>
#include <string_view>
#include <vector>

#include "analysis/Results.h"
#include "input/Project.h"

namespace kestol {

/// Values that belong together: of one place, and asked for at the same time.
enum class ValueKind : unsigned char {
  NodeDisplacement,
  StationForces,
  StationDisplacement,
  ShellForces,
  ShellTop,
  ShellBottom,
  SolidStress,
  NodalStress,
  Reaction,
  ReactionInSupportAxes  ///< of inclined supports
};

/// Most values of one place.
constexpr int kMostValues = 8;

/// The values of a kind by name. Linear ones add up like the loads; von Mises stresses behind them
/// follow from the sums.
struct ValueNames {
  int linear;
  std::vector<std::string_view> names;  ///< linear ones first
  int Count() const { return static_cast<int>(names.size()); }
};
const ValueNames& NamesOf(ValueKind kind);

/// Fills what follows from the linear values of a place, behind them.
void AddDerived(ValueKind kind, double* values);

/// Where values belong, in the numbers of the deck.
struct ValuePlace {
  ValueKind kind;
  int number;                    ///< of the node or element; 0 for a created mid-side
  int point = 0;                 ///< station or integration point, from 0
  std::array<int, 2> between{};  ///< the corners of a created mid-side
};

/// Calls action(place, linear values) for everything that results hold, in the order of the files:
/// nodes, stations of beams, shells, solids, nodal stresses, true reactions, each of an inclined
/// support in its axes too. The project must carry the loads of the results.
void ForEachValue(const Project& project, const Results& results,
                  const std::function<void(const ValuePlace&, const double*)>& action);

}  // namespace kestol
