#include <algorithm>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "input/MaterialReader.h"
#include "input/NearestWord.h"
#include "input/Units.h"
#include "input/Words.h"
#include "kestol/findings/Inspection.h"
#include "kestol/findings/TextRules.h"
#include "main/ErrorChannel.h"

namespace kestol {

namespace {

constexpr std::string_view kPairKeys[] = {"Euler1", "Euler2", "Euler3", "units"};

/// Whether anything reads a key behind the values of a support or a load.
bool IsPairKey(RecordKind kind, std::string_view key) {
  return IsUnitsKey(key) || (IsEuler(key) && kind != RecordKind::NodalLoad);
}

/// Whether a material key is refused by its reader, which knows more of some than the beginning.
bool IsRefusedKey(std::string_view key) {
  try {
    Material().ReadDefinition(std::string(key) + "=1", nullptr);
    return false;
  } catch (const FatalError&) {
    error.Clear();
    return true;
  }
}

std::string UnknownText(std::string_view key, std::string_view nearest) {
  std::string text = Quoted(key) + " is not known";
  if (!nearest.empty()) text += ": did you mean " + Quoted(nearest) + "?";
  return text;
}

}  // namespace

void FindUnknownKeys(Inspection& deck, const RecordFields& record) {
  const RecordKind kind = record.record.kind;
  for (const Field& field : record.fields) {
    if (field.role != Role::Key || IsUnitsKey(field.text) || IsNumber(field.text)) continue;
    if (HasMaterialKeys(kind) ? !IsRefusedKey(field.text)
                              : !HasPairs(kind) || IsPairKey(kind, field.text))
      continue;
    if (kind == RecordKind::NodalLoad && IsEuler(field.text)) continue;  // surplus
    const auto names = HasMaterialKeys(kind) ? MaterialKeys() : std::span(kPairKeys);
    deck.Add(PlaceOf(field), UnknownText(field.text, NearestWord(field.text, names)));
    deck.Spoil(record);
    return;
  }
}

namespace {

/// Whether the key is one of the documented spellings, or one of them with a small first letter.
bool IsDocumented(std::string_view key) {
  const auto keys = MaterialKeys();
  return std::any_of(keys.begin(), keys.end(), [key](std::string_view name) {
    return key == name || (key.size() == name.size() && StartsWithAnyCase(key, name) &&
                           (name.size() <= 3 || key.substr(1) == name.substr(1)));
  });
}

/// Other names of what a beginning sets.
struct Synonym {
  std::string_view prefix, name;
};
constexpr Synonym kSynonyms[] = {
    {"A", "Area"   },
    {"a", "area"   },
    {"I", "Iyy"    },
    {"I", "Izz"    },
    {"t", "thk"    },
    {"J", "Jx"     },
    {"J", "Jxx"    },
    {"J", "Jt"     },
    {"i", "iyy"    },
    {"i", "izz"    },
    {"t", "th"     },
    {"j", "jx"     },
    {"I", "Inertia"},
};

bool IsSynonym(std::string_view key) {
  return std::any_of(std::begin(kSynonyms), std::end(kSynonyms),
                     [key](const Synonym& synonym) { return key == synonym.name; });
}

/// What a key that begins so sets, as the documents call it.
std::string SetBy(std::string_view key) {
  const std::string_view prefix = MaterialKeyPrefix(key);
  std::size_t length = prefix.size();
  if (prefix == "E" || prefix == "e" || prefix == "I" || prefix == "i") length = 2;
  if (prefix == "G" || prefix == "g") length = 3;
  if (prefix == "Euler") length = 6;
  std::string name(key.substr(0, length));
  if (prefix == "I" || prefix == "i") name = key.size() > 1 && (key[1] | 0x20) == 'y' ? "Iy" : "Iz";
  // Keys of one letter, and what begins with them, are taken in both cases but for the thickness.
  if (prefix.size() == 1 && prefix != "t") name[0] = static_cast<char>(name[0] & ~0x20);
  return name;
}

}  // namespace

void FindKeyPrefixes(Inspection& deck, const RecordFields& record) {
  if (!HasMaterialKeys(record.record.kind)) return;
  for (const Field& field : record.fields) {
    const std::string_view key = field.text;
    if (field.role != Role::Key || IsUnitsKey(key) || IsRefusedKey(key) || IsDocumented(key))
      continue;
    const std::string set = SetBy(key);
    const auto sameKey = [&](const Field& other) {
      return &other != &field && other.role == Role::Key && SetBy(other.text) == set &&
             !MaterialKeyPrefix(other.text).empty();
    };
    const auto other = std::find_if(record.fields.begin(), record.fields.end(), sameKey);
    std::string text = Quoted(key) + " sets " + set + " by its beginning";
    if (other != record.fields.end())
      text += other < record.fields.begin() + (&field - record.fields.data())
                  ? " and overrides " + Quoted(other->text)
                  : " and is overridden by " + Quoted(other->text);
    const bool isMeant = IsSynonym(key) && other == record.fields.end();
    deck.AddAs(isMeant ? Severity::Warning : Severity::Error, PlaceOf(field), text);
    if (!isMeant) deck.Spoil(record);
  }
}

void KeepWrittenValues(Inspection& deck, const RecordFields& record) {
  if (!HasMaterialKeys(record.record.kind)) return;
  std::vector<Inspection::WrittenValue> values;
  for (const Field& field : record.fields) {
    if (field.role != Role::Value) continue;
    values.push_back({std::string(MaterialKeyPrefix(field.key)), SetBy(field.key),
                      RealOf(field.text), PlaceOf(field)});
  }
  if (!values.empty() || record.record.kind == RecordKind::Material)
    deck.written[{record.record.kind, record.record.number}] = std::move(values);
}

}  // namespace kestol
