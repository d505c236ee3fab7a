#include "programs/combine/ValueUnits.h"

namespace kestol {

std::string UnitOf(ValueKind kind, std::size_t i, const UnitNames& units) {
  if (!units.Known()) return "";
  const std::string moment = units.force + ' ' + units.length;
  switch (kind) {
    case ValueKind::NodeDisplacement:
      return i < 3 ? units.length : "rad";
    case ValueKind::StationDisplacement:
      return units.length;
    case ValueKind::StationForces:
    case ValueKind::Reaction:
    case ValueKind::ReactionInSupportAxes:
      return i < 3 ? units.force : moment;
    case ValueKind::ShellForces:
      return (i >= 3 && i < 6 ? moment : units.force) + '/' + units.length;
    default:
      return units.pressure;
  }
}

std::string Heading(ValueKind kind, std::size_t i, const UnitNames& units) {
  const std::string unit = UnitOf(kind, i, units);
  const std::string name(NamesOf(kind).names[i]);
  return unit.empty() ? name : name + " [" + unit + ']';
}

}  // namespace kestol
