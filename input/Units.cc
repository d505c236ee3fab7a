#include "input/Units.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "algebra/Tolerances.h"
#include "input/ProjectReader.h"
#include "input/SourceMap.h"
#include "input/Words.h"
#include "main/ErrorChannel.h"

namespace kestol {

namespace {

constexpr std::size_t kMaxNameLength = 20;

// Longest word that is taken from a line as the name of a system.
constexpr std::size_t kMaxWordInLine = 99;

// The spellings of the key, in the order in which a line is searched for them.
constexpr std::string_view kUnitsKeys[] = {"units", "Units", "UNITS"};

// The next word, or the next 20 characters of it: what is longer spills over into the next field.
std::string TakeName(std::string_view& text) {
  std::string_view rest = text;
  const std::string_view name = TakeValue(rest).substr(0, kMaxNameLength);
  text.remove_prefix(static_cast<std::size_t>(name.data() + name.size() - text.data()));
  return std::string(name);
}

UnitSystem ParseRow(std::string_view line) {
  UnitSystem row;
  row.name = TakeName(line);
  row.nameN = TakeName(line);
  row.nameM = TakeName(line);
  row.namePa = TakeName(line);
  const std::optional<double> facN = TakeReal(line);
  const std::optional<double> facM = TakeReal(line);
  if (!facN || !facM)
    Fatal("error: 'units_names' items should be: name nameN nameM namePa facN facM\n");
  row.facN = *facN;
  row.facM = *facM;
  return row;
}

// Takes the word behind a units key and its signs; empty at the end of the text.
std::string_view TakeSystemName(std::string_view& text) {
  text = BehindSigns(text);
  return TakeValue(text).substr(0, kMaxWordInLine);
}

}  // namespace

bool IsUnitFactor(double factor) {
  return factor >= kZero && std::isfinite(factor);
}

bool IsUnitsKey(std::string_view key) {
  return std::any_of(std::begin(kUnitsKeys), std::end(kUnitsKeys),
                     [key](std::string_view spelling) { return StartsWith(key, spelling); });
}

namespace {

// A row, or with a map its refusal; false where the list ends.
bool ReadRow(Units& units, TextInput& input) {
  input.BeginRecord();
  const std::optional<std::string_view> line = ReadRestOfLine(input);
  if (!line) Fatal("error: 'units_names' should finish with the 'end' word\n");
  if (StartsWithAnyCase(*line, "end")) return false;
  units.table.push_back(ParseRow(*line));
  return true;
}

// Whether the whole of a line can be read as a row.
bool IsRow(std::string_view line) {
  for (int i = 0; i < 4; ++i)
    if (TakeName(line).empty()) return false;
  return TakeReal(line) && TakeReal(line);
}

bool ReadMappedRow(Units& units, TextInput& input, SourceMap& map, std::uint64_t begin) {
  const SourceMap::Record record{RecordKind::UnitSystem, 0, input.Offset()};
  const std::string word(input.PeekWord());
  if (word.empty() || IsKeyword(word)) {
    map.Refuse({RecordKind::UnitSystem, 0, begin}, SourceMap::Cause::MissingEnd, word);
    return false;
  }
  if (StartsWithAnyCase(word, "end") && IsRow(input.PeekLine())) {
    map.Refuse(record, SourceMap::Cause::TextAsKeyword, "end", word);
    units.table.push_back(ParseRow(*ReadRestOfLine(input)));
    return true;
  }
  bool goesOn = true;
  map.Add(RecordKind::UnitSystem, 0, record.offset);
  RefuseInto(map, record, [&] { goesOn = ReadRow(units, input); });
  return goesOn;
}

}  // namespace

void ReadUnitsNames(Units& units, TextInput& input, SourceMap* map) {
  const std::uint64_t begin = input.RecordOffset();
  bool goesOn = true;
  while (goesOn) {
    SkipToRecord(input);
    goesOn = map == nullptr ? ReadRow(units, input) : ReadMappedRow(units, input, *map, begin);
  }
  std::stable_sort(units.table.begin(), units.table.end(),
                   [](const UnitSystem& a, const UnitSystem& b) { return a.name < b.name; });
}

const UnitSystem& FindUnits(const Units& units, std::string_view name) {
  if (name.size() > kMaxNameLength) Fatal("error: Unit name '", name, "' is too long\n");
  const auto found =
      std::lower_bound(units.table.begin(), units.table.end(), name,
                       [](const UnitSystem& row, std::string_view key) { return row.name < key; });
  if (found == units.table.end() || found->name != name)
    Fatal("error: Unit name '", name, "' has not been previously defined\n");
  return *found;
}

const UnitSystem* FindUnitsInLine(const Units& units, std::string_view line) {
  for (const std::string_view key : kUnitsKeys) {
    const std::size_t place = line.find(key);
    if (place == std::string_view::npos) continue;
    line.remove_prefix(place + key.size());
    const std::string_view name = TakeSystemName(line);
    return name.empty() ? nullptr : &FindUnits(units, name);
  }
  return nullptr;
}

double MeshLengthFactor(const Units& units) {
  return units.meshLength / units.resultLength;
}

UnitFactors DefaultFactors(const Units& units) {
  return {units.materialForce / units.resultForce, units.materialLength / units.resultLength};
}

UnitFactors FactorsOf(const Units& units, const UnitSystem& system) {
  if (!IsUnitFactor(system.facN) || !IsUnitFactor(system.facM))
    Fatal("error: factors of unit system '", system.name, "' must be two positive numbers\n");
  return {system.facN / units.resultForce, system.facM / units.resultLength};
}

UnitFactors TakeUnits(const Units& units, std::string_view& text) {
  return FactorsOf(units, FindUnits(units, TakeSystemName(text)));
}

}  // namespace kestol
