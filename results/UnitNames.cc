#include "results/UnitNames.h"

#include <algorithm>

#include "input/Units.h"

namespace kestol {

/// The result system keeps the names N, m and Pa until the deck chooses one of its own: only names
/// that stand in a row of the deck are the deck's.
UnitNames UnitNamesOf(const Units& units) {
  const bool chosen =
      std::any_of(units.table.begin(), units.table.end(), [&](const UnitSystem& system) {
        return system.nameN == units.resultForceName && system.nameM == units.resultLengthName &&
               system.namePa == units.resultPressureName && system.facN == units.resultForce &&
               system.facM == units.resultLength;
      });
  if (!chosen) return {};
  return {units.resultForceName, units.resultLengthName, units.resultPressureName};
}

}  // namespace kestol
