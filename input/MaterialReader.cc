#include "input/MaterialReader.h"

#include <memory>
#include <utility>

#include "input/RecordList.h"
#include "input/Units.h"
#include "input/Words.h"
#include "main/ErrorChannel.h"
#include "model/EulerAngles.h"
#include "model/Material.h"

namespace kestol {

namespace {

/// One definition being read: the record, the factors of its kinds of values, and the sides of a
/// rectangle, which are no part of the record.
struct Definition {
  Material& material;
  double L, area, inertia;  ///< L, L^2, L^4
  double modulus, weight;   ///< F/L^2, F/L^3
  double widthY = Material::kNotGiven, widthZ = Material::kNotGiven;
};

void SetWidthY(Definition& d, std::string_view, double value) {
  d.widthY = value * d.L;
}

void SetWidthZ(Definition& d, std::string_view, double value) {
  d.widthZ = value * d.L;
}

void SetEuler(Definition& d, std::string_view key, double value) {
  Material& m = d.material;
  double* const angles[] = {&m.Euler1, &m.Euler2, &m.Euler3};
  *angles[WhichEulerAngle(key)] = value;
  m.hasEuler = true;
}

void SetWeight(Definition& d, std::string_view, double value) {
  d.material.Weight = value * d.weight;
}

void SetNuXY(Definition& d, std::string_view, double value) {
  d.material.nuXY = value;
}

void SetNuYX(Definition& d, std::string_view, double value) {
  d.material.nuYX = value;
}

void SetNu(Definition& d, std::string_view, double value) {
  d.material.nuXY = d.material.nuYX = value;
}

void SetThickness(Definition& d, std::string_view, double value) {
  d.material.t = value * d.L;
}

void SetE(Definition& d, std::string_view key, double value) {
  const std::string_view rest = key.substr(1);
  const bool both = rest.empty();
  if (!both && rest[0] != 'x' && rest[0] != 'y')
    Fatal("error in materials. Young Modulus can only be E, Ex or Ey\n");
  if (both || rest[0] == 'x') d.material.E1 = value * d.modulus;
  if (both || rest[0] == 'y') d.material.E2 = value * d.modulus;
}

void SetI(Definition& d, std::string_view key, double value) {
  const char axis = key.size() > 1 ? key[1] : 'Z';
  if (axis == 'X' || axis == 'x')
    Fatal("error in materials. Inertia modules cannot be for X axe\n");
  (axis == 'Y' || axis == 'y' ? d.material.Iy : d.material.Iz) = value * d.inertia;
}

void SetG(Definition& d, std::string_view key, double value) {
  const std::string_view plane = key.substr(1, 2);
  Material& m = d.material;
  const bool all = plane.empty();
  if (!all && plane != "xy" && plane != "xz" && plane != "yz")
    Fatal("error in materials. G can be: G Gxy Gxz or Gyz\n");
  if (all || plane == "xy") m.Gxy = value * d.modulus;
  if (all || plane == "xz") m.Gxz = value * d.modulus;
  if (all || plane == "yz") m.Gyz = value * d.modulus;
}

void SetJ(Definition& d, std::string_view, double value) {
  d.material.J = value * d.inertia;
}

void SetA(Definition& d, std::string_view, double value) {
  d.material.A = value * d.area;
}

struct KeyRule {
  std::string_view prefix;
  void (*set)(Definition& definition, std::string_view key, double value);
};

// Matched from the top by the first characters of the key, to the letter; units keys come before
// all of them. The order is part of the format. Deliberate: so "thickness" is t, "Euler2" is no
// modulus, "EX" is wrong and "T" unknown.
constexpr KeyRule kKeyRules[] = {
    {"widthY", SetWidthY   },
    {"widthZ", SetWidthZ   },
    {"Euler",  SetEuler    },
    {"Weight", SetWeight   },
    {"nuXY",   SetNuXY     },
    {"nuYX",   SetNuYX     },
    {"nu",     SetNu       },
    {"t",      SetThickness},
    {"E",      SetE        },
    {"e",      SetE        },
    {"I",      SetI        },
    {"i",      SetI        },
    {"G",      SetG        },
    {"g",      SetG        },
    {"J",      SetJ        },
    {"j",      SetJ        },
    {"A",      SetA        },
    {"a",      SetA        },
};

constexpr std::string_view kKeys[] = {
    "E",      "Ex",     "Ey",     "nu",     "nuXY",   "nuYX",   "G",     "Gxy",
    "Gxz",    "Gyz",    "A",      "Iy",     "Iz",     "I",      "J",     "t",
    "Weight", "Euler1", "Euler2", "Euler3", "widthY", "widthZ", "thick", "thickness"};

const KeyRule* FindRule(std::string_view key) {
  for (const KeyRule& rule : kKeyRules)
    if (StartsWith(key, rule.prefix)) return &rule;
  return nullptr;
}

const KeyRule& RuleOf(std::string_view key) {
  if (const KeyRule* const rule = FindRule(key)) return *rule;
  Fatal("Input of materials not correct. Unknown char: '", key, "'\n");
}

/// The name behind a units key: '=' and ':' may stand apart from both. The system itself is found
/// on the whole line, before any key.
std::string_view TakeUnitsName(std::string_view& text) {
  text = BehindSigns(text);
  return TakeValue(text);
}

UnitFactors FactorsFor(std::string_view text, const Units* units) {
  if (units == nullptr) return {};
  const UnitSystem* named = FindUnitsInLine(*units, text);
  return named == nullptr ? DefaultFactors(*units) : FactorsOf(*units, *named);
}

Definition Begin(Material& material, const UnitFactors& factors) {
  const double F = factors.force, L = factors.length;
  return {.material = material,
          .L = L,
          .area = L * L,
          .inertia = L * L * L * L,
          .modulus = F / (L * L),
          .weight = F / (L * L * L)};
}

void SetNotGiven(Material& m) {
  for (double* value : {&m.E1, &m.E2, &m.nuXY, &m.nuYX, &m.Iy, &m.Iz, &m.Gxy, &m.Gxz, &m.Gyz, &m.J,
                        &m.A, &m.Weight, &m.t})
    *value = Material::kNotGiven;
  m.hasEuler = false;
  m.Euler1 = m.Euler2 = m.Euler3 = 0.0;
}

}  // namespace

bool Material::ReadDefinition(std::string_view text, const Units* units) {
  std::string_view key;
  const int status = ReadMaterialText(text, units, &key);
  if (status == 0) Fatal("error in materials. Key without value: '", key, "'\n");
  return status == 1;
}

int Material::ReadMaterialText(std::string_view text, const Units* units,
                               std::string_view* keyWithoutValue) {
  SetNotGiven(*this);
  Definition definition = Begin(*this, FactorsFor(text, units));
  std::string_view key = TakeKey(text);
  if (key.empty()) return -1;
  for (; !key.empty(); key = TakeKey(text)) {
    const bool isUnits = IsUnitsKey(key);
    const std::string_view value = isUnits ? TakeUnitsName(text) : TakeValue(text);
    if (value.empty()) {
      if (keyWithoutValue != nullptr) *keyWithoutValue = key;
      return 0;
    }
    if (!isUnits) RuleOf(key).set(definition, key, RealOf(value));
  }
  if (definition.widthY > 0.0) SetRectangleSection(definition.widthY, definition.widthZ);
  return 1;
}

std::string_view MaterialKeyPrefix(std::string_view key) {
  const KeyRule* const rule = FindRule(key);
  return rule == nullptr ? std::string_view() : rule->prefix;
}

std::span<const std::string_view> MaterialKeys() {
  return kKeys;
}

void ReadMaterials(Plex<Material>& materials, TextInput& input, const Units* units,
                   SourceMap* map) {
  const RecordList list{input, map, RecordKind::Material, input.RecordOffset()};
  ReadRecords(list, [&](int number) {
    auto read = std::make_unique<Material>();
    Material& material = *read;
    material.number = number;
    // A material that is given up exists: what refers to it is read on.
    if (map != nullptr) materials.Insert(number, std::move(read));
    material.ReadDefinition(ReadRestOfLine(input).value_or(""), units);
    if (map == nullptr) materials.Insert(number, std::move(read));
  });
  TakeEnd(list);
}

}  // namespace kestol
