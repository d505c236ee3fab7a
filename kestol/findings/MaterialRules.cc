#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <string>

#include "algebra/Tolerances.h"
#include "kestol/findings/Geometry.h"
#include "kestol/findings/Inspection.h"
#include "kestol/findings/MaterialUse.h"
#include "kestol/findings/ModelRules.h"

namespace kestol {

namespace {

/// A value, the keys that set it, and the families that need it above 0.
struct Property {
  std::string_view name;
  double Material::*value;
  std::array<std::string_view, 3> keys;
  unsigned families;
};
constexpr Property kProperties[] = {
    {"E",   &Material::E1,  {"E", "Ex", ""},      kBeams | Bit(Solid)},
    {"Ex",  &Material::E1,  {"E", "Ex", ""},      Bit(Shell)         },
    {"Ey",  &Material::E2,  {"E", "Ey", ""},      Bit(Shell)         },
    {"A",   &Material::A,   {"A", "widthY", ""},  kBeams             },
    {"Iz",  &Material::Iz,  {"Iz", "widthY", ""}, kBeams             },
    {"Iy",  &Material::Iy,  {"Iy", "widthY", ""}, Bit(SpaceBeam)     },
    {"G",   &Material::Gxy, {"G", "Gxy", ""},     Bit(SpaceBeam)     },
    {"J",   &Material::J,   {"J", "widthY", ""},  Bit(SpaceBeam)     },
    {"t",   &Material::t,   {"t", "", ""},        Bit(Shell)         },
    {"Gxy", &Material::Gxy, {"G", "Gxy", ""},     Bit(Shell)         },
    {"Gxz", &Material::Gxz, {"G", "Gxz", ""},     Bit(Shell)         },
    {"Gyz", &Material::Gyz, {"G", "Gyz", ""},     Bit(Shell)         },
};

void AddName(std::string& list, std::string_view name, std::string_view separator = ", ") {
  if (!list.empty()) list += separator;
  list += name;
}

std::string FamilyText(unsigned families) {
  constexpr std::pair<Family, std::string_view> kNames[] = {
      {Shell,     "a shell"        },
      {Solid,     "a solid"        },
      {SpaceBeam, "a beam in space"},
      {PlaneBeam, "a beam"         },
  };
  std::string text;
  for (const auto& [family, name] : kNames)
    if ((families & Bit(family)) != 0) AddName(text, name, " and ");
  return text;
}

/// The needed values that nobody wrote. Values that one key would set are named by it.
std::string MissingOf(const UsedMaterial& used, const Written& written) {
  const auto has = [&](std::initializer_list<std::string_view> keys) {
    return FindWritten(written, {keys.begin(), keys.size()}) != nullptr;
  };
  std::string missing;
  const bool isShell = (used.families & Bit(Shell)) != 0;
  for (const Property& property : kProperties) {
    if ((used.families & property.families) == 0) continue;
    if (FindWritten(written, property.keys) != nullptr) continue;
    const bool noneOfE = !has({"E", "Ex", "Ey"}), noneOfG = !has({"G", "Gxy", "Gxz", "Gyz"});
    std::string_view name = property.name;
    if (isShell && noneOfE && name.starts_with('E')) name = "E";
    if (isShell && noneOfG && name.starts_with('G')) name = "G";
    if (missing.find(name) == std::string::npos) AddName(missing, name);
  }
  if ((used.families & (Bit(Shell) | Bit(Solid))) != 0 && !has({"nu", "nuXY"}))
    AddName(missing, isShell && has({"nuYX"}) ? "nuXY" : "nu");
  else if (isShell && !has({"nu", "nuYX"}))
    AddName(missing, "nuYX");
  if ((used.families & kBeams) != 0 && has({"widthY"}) && !has({"widthZ"}))
    AddName(missing, "widthZ");
  return missing;
}

/// The elements to which the material says too little: one of another family may have it by
/// mistake.
UsedMaterial LackingUse(const UsedMaterial& all, const Written& written) {
  UsedMaterial lacking = all;
  lacking.families = 0;
  lacking.elements.clear();
  for (const Family family : {PlaneBeam, SpaceBeam, Shell, Solid}) {
    UsedMaterial one;
    one.families = all.families & Bit(family);
    if (!MissingOf(one, written).empty()) lacking.families |= Bit(family);
  }
  for (std::size_t i = 0; i < all.elements.size(); ++i)
    if ((lacking.families & Bit(all.familyOf[i])) != 0) lacking.elements.push_back(all.elements[i]);
  return lacking;
}

}  // namespace

void FindMissingProperties(Inspection& deck) {
  for (const UsedMaterial& all : UsedMaterials(deck)) {
    const UsedMaterial used = LackingUse(all, WrittenOf(deck, all));
    const std::string missing = MissingOf(used, WrittenOf(deck, used));
    if (missing.empty()) continue;
    Finding& finding =
        deck.Add(PlaceOf(deck, used), NameOf(used) + " lacks " + missing + " for " +
                                          FamilyText(used.families) + UsersText(used));
    finding.elements = used.elements;
    deck.Spoil(used.kind, used.number, finding.offset);
  }
}

// --- values that cannot be --------------------------------------------------------------------

namespace {

constexpr std::string_view kPoissonKeys[] = {"nu", "nuXY", "nuYX"};
constexpr std::string_view kShearKeys[] = {"G", "Gxy"};

void CheckPositive(Inspection& deck, const UsedMaterial& used, const Written& written) {
  for (const Property& property : kProperties) {
    if ((used.families & property.families) == 0) continue;
    const double given = used.material->*property.value;
    if (given >= kZero && std::isfinite(given)) continue;
    const Inspection::WrittenValue* const value = FindWritten(written, property.keys);
    if (value == nullptr) continue;
    Finding& finding =
        deck.AddAs(Severity::Error, value->place,
                   value->key + " of " + NameOf(used) +
                       (given > 0.0 && !std::isfinite(given) ? " must be a finite number: "
                                                             : " must be above 0: ") +
                       NumberText(value->value) + UsersText(used));
    finding.elements = used.elements;
    deck.Spoil(used.kind, used.number, finding.offset);
    return;
  }
}

/// Keys of values that nobody uses here, but that would be wrong anywhere.
void CheckUnusedValues(Inspection& deck, const UsedMaterial& used, const Written& written) {
  constexpr std::string_view kPositive[] = {"E", "Ex", "Ey", "G", "Gxy", "Gxz", "Gyz", "A", "t"};
  for (const Inspection::WrittenValue& value : written)
    if (value.value <= 0.0 &&
        std::find(std::begin(kPositive), std::end(kPositive), value.key) != std::end(kPositive))
      deck.AddAs(
          Severity::Warning, value.place,
          value.key + " of " + NameOf(used) + " should be above 0: " + NumberText(value.value));
}

/// False where it is outside its range.
bool CheckPoisson(Inspection& deck, const UsedMaterial& used, const Written& written) {
  const Material& m = *used.material;
  const bool isIsotropic = m.E1 == m.E2 || (used.families & Bit(Solid)) != 0;
  const bool isUsed = (used.families & (Bit(Shell) | Bit(Solid))) != 0;
  if (isUsed && !isIsotropic) return true;
  const Inspection::WrittenValue* const value = FindWritten(written, kPoissonKeys);
  if (value == nullptr || (value->value > -1.0 && value->value < 0.5)) return true;
  Finding& finding = deck.AddAs(isUsed ? Severity::Error : Severity::Warning, value->place,
                                value->key + " = " + NumberText(value->value) + " of " +
                                    NameOf(used) + " is outside -1 to 0.5" + UsersText(used));
  finding.elements = used.elements;
  if (isUsed) deck.Spoil(used.kind, used.number, finding.offset);
  return false;
}

void CheckShearModulus(Inspection& deck, const UsedMaterial& used, const Written& written) {
  const Material& m = *used.material;
  const Inspection::WrittenValue* const nu = FindWritten(written, kPoissonKeys);
  const Inspection::WrittenValue* const G = FindWritten(written, kShearKeys);
  if (nu == nullptr || G == nullptr || m.E1 != m.E2 || !(m.E1 > 0.0 && m.Gxy > 0.0) ||
      !(nu->value > -1.0))
    return;
  const double isotropic = m.E1 / (2.0 * (1.0 + nu->value));
  if (std::abs(m.Gxy - isotropic) <= 0.05 * isotropic) return;
  const double factor = G->value / m.Gxy;
  deck.AddAs(Severity::Warning, G->place,
             G->key + " of " + NameOf(used) + " is " + NumberText(G->value) +
                 ", but E/2/(1+nu) is " + NumberText(isotropic * factor))
      .elements = used.elements;
}

}  // namespace

void FindBadMaterials(Inspection& deck) {
  for (const UsedMaterial& used : UsedMaterials(deck)) {
    const Written& written = WrittenOf(deck, used);
    CheckPositive(deck, used, written);
    if (deck.IsSpoilt(used.kind, used.number)) continue;
    CheckUnusedValues(deck, used, written);
    if (CheckPoisson(deck, used, written)) CheckShearModulus(deck, used, written);
  }
}

// --- not used ---------------------------------------------------------------------------------

void FindUnusedMaterials(Inspection& deck) {
  if (deck.AnySpoilt(RecordKind::Element) || deck.Unnumbered(RecordKind::Material) > 0) return;
  // An element with another's material lacks something there, and leaves its own without a user.
  const auto isOfOther = [](const Finding& finding) { return finding.code == "missing-property"; };
  if (std::any_of(deck.findings.begin(), deck.findings.end(), isOfOther)) return;
  std::map<int, bool> used;
  for (const auto& mesh : deck.project.meshes) {
    if (CornerCount(mesh->elemType) == 0) return;  // read, but not analysed
    for (const auto [number, elem] : mesh->elems)
      if (!elem->material) used[elem->materialNumber] = true;
  }
  for (const auto [number, material] : deck.project.materials)
    if (!used.contains(number))
      deck.Add(deck.PlaceOfRecord(RecordKind::Material, number),
               "no element has material " + std::to_string(number));
}

}  // namespace kestol
