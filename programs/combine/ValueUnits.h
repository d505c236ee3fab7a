#pragma once

#include <string>

#include "kestol/combine/Values.h"
#include "results/UnitNames.h"

namespace kestol {

/// The unit of value `i` of a kind; empty where the deck names none.
std::string UnitOf(ValueKind kind, std::size_t i, const UnitNames& units);

/// "Mz [kN m]"; "Mz" where the deck names no unit.
std::string Heading(ValueKind kind, std::size_t i, const UnitNames& units);

}  // namespace kestol
