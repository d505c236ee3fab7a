#pragma once

#include <string>

namespace kestol {

class Units;

/// What the deck calls the units of its results; empty texts where it names none.
struct UnitNames {
  std::string force, length, pressure;
  bool Known() const { return !force.empty(); }
};

UnitNames UnitNamesOf(const Units& units);

}  // namespace kestol
