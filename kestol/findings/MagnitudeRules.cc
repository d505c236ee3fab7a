#include <cmath>
#include <optional>
#include <span>
#include <string>

#include "kestol/findings/Inspection.h"
#include "kestol/findings/MaterialUse.h"
#include "kestol/findings/ModelRules.h"

namespace kestol {

namespace {

/// A unit by its usual name, in newtons or metres.
struct UnitName {
  std::string_view name;
  double size;
};
constexpr UnitName kForces[] = {
    {"N",   1.0         },
    {"daN", 10.0        },
    {"kN",  1e3         },
    {"MN",  1e6         },
    {"kp",  9.80665     },
    {"kgf", 9.80665     },
    {"kip", 4448.2216153},
    {"lb",  4.4482216153},
    {"lbf", 4.4482216153},
    {"t",   9806.65     },
    {"tf",  9806.65     },
};
constexpr UnitName kLengths[] = {
    {"m",  1.0   },
    {"cm", 0.01  },
    {"mm", 0.001 },
    {"in", 0.0254},
    {"ft", 0.3048},
};

std::optional<double> SizeOf(std::span<const UnitName> names, const std::string& name) {
  const auto found = std::find_if(names.begin(), names.end(),
                                  [&](const UnitName& unit) { return unit.name == name; });
  return found == names.end() ? std::nullopt : std::optional(found->size);
}

/// The result units of the deck in newtons and metres; none when they are not named or not known.
struct SiUnits {
  double force, length;
};
std::optional<SiUnits> UnitsOf(const Inspection& deck) {
  if (!deck.HasKeyword("units_res") || deck.AnySpoilt(RecordKind::UnitSystem)) return std::nullopt;
  const std::optional<double> force = SizeOf(kForces, deck.project.units.resultForceName);
  const std::optional<double> length = SizeOf(kLengths, deck.project.units.resultLengthName);
  if (!force || !length) return std::nullopt;
  return SiUnits{*force, *length};
}

/// What is built: rubber to diamond, aerogel to osmium, in N and m.
constexpr double kSoftest = 1e6, kStiffest = 2e12, kLightest = 20.0, kHeaviest = 3e5;
// Without units: no unit of pressure in use makes a modulus that large.
constexpr double kLargestModulus = 1e14;

void AddMagnitude(Inspection& deck, const UsedMaterial& used, const Place& place,
                  const std::string& text) {
  deck.Add(place, text).elements = used.elements;
}

void CheckModulus(Inspection& deck, const UsedMaterial& used, const Written& written,
                  const std::optional<SiUnits>& units) {
  constexpr std::string_view kKeys[] = {"E", "Ex"};
  const Inspection::WrittenValue* const E = FindWritten(written, kKeys);
  if (E == nullptr) return;
  const double modulus = used.material->E1;
  if (!units) {
    if (modulus > kLargestModulus)
      AddMagnitude(deck, used, E->place,
                   E->key + " of " + NameOf(used) + " is " + NumberText(E->value) +
                       ": beyond anything built in any units");
    return;
  }
  const double pascal = modulus * units->force / (units->length * units->length);
  if (pascal >= kSoftest && pascal <= kStiffest) return;
  AddMagnitude(deck, used, E->place,
               E->key + " of " + NameOf(used) + " is " + NumberText(pascal) +
                   " N/m2 in the units of the deck; steel has 2.1e11");
}

void CheckWeight(Inspection& deck, const UsedMaterial& used, const Written& written,
                 const std::optional<SiUnits>& units) {
  constexpr std::string_view kKeys[] = {"Weight"};
  const Inspection::WrittenValue* const weight = FindWritten(written, kKeys);
  if (weight == nullptr) return;
  if (weight->value < 0.0)
    return AddMagnitude(deck, used, weight->place,
                        "Weight of " + NameOf(used) + " is " + NumberText(weight->value) +
                            ": only one above 0 acts, along GravityDirection");
  if (!units || weight->value == 0.0) return;
  const double perVolume =
      used.material->Weight * units->force / (units->length * units->length * units->length);
  if (perVolume >= kLightest && perVolume <= kHeaviest) return;
  AddMagnitude(deck, used, weight->place,
               "Weight of " + NameOf(used) + " is " + NumberText(perVolume) +
                   " N/m3 in the units of the deck; steel has 78500");
}

/// Radii of gyration against the beams' lengths: where area and inertia are not in one unit.
void CheckGyration(Inspection& deck, const UsedMaterial& used, const Written& written) {
  constexpr double kSlender = 1e-4;
  const Material& m = *used.material;
  if (!(used.longest > 0.0) || !(m.A > 0.0)) return;
  for (const auto& [key, inertia] : {
           std::pair{"Iz", m.Iz},
           std::pair{"Iy", m.Iy}
  }) {
    const std::string_view keys[] = {key, "widthY"};
    const Inspection::WrittenValue* const value = FindWritten(written, keys);
    if (value == nullptr || !(inertia > 0.0)) continue;
    const double radius = std::sqrt(inertia / m.A);
    if (radius <= used.longest && radius >= kSlender * used.shortest) continue;
    AddMagnitude(deck, used, value->place,
                 std::string(key) + " and A of " + NameOf(used) + " give a radius of gyration of " +
                     NumberText(radius) + " on a beam of length " +
                     NumberText(radius > used.longest ? used.longest : used.shortest));
    return;
  }
}

}  // namespace

void FindMagnitudes(Inspection& deck) {
  const std::optional<SiUnits> units = UnitsOf(deck);
  for (const UsedMaterial& used : UsedMaterials(deck)) {
    const Written& written = WrittenOf(deck, used);
    CheckModulus(deck, used, written, units);
    CheckWeight(deck, used, written, units);
    CheckGyration(deck, used, written);
  }
}

}  // namespace kestol
