#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "input/ProjectReader.h"
#include "kestol/findings/Inspection.h"
#include "kestol/findings/ModelRules.h"

namespace kestol {

namespace {

/// A units keyword and the sections whose values it scales.
struct UnitsKeyword {
  std::string_view name;
  std::vector<std::string_view> scales;
};

const std::vector<UnitsKeyword>& UnitsKeywords() {
  static const std::vector<std::string_view> kValues = {"materials",
                                                        "constraints",
                                                        "nodal_point_loads",
                                                        "global_pressure_loads",
                                                        "global_projected_pressure_loads",
                                                        "local_pressure_loads",
                                                        "face_loads"};
  static const std::vector<UnitsKeyword> kKeywords = [] {
    std::vector<std::string_view> all = kValues;
    all.emplace_back("mesh");
    return std::vector<UnitsKeyword>{
        {"units_mesh",         {"mesh"}},
        {"units_mat_and_load", kValues },
        {"units_res",          all     },
    };
  }();
  return kKeywords;
}

int RowOf(std::string_view name) {
  const std::vector<std::string_view> names = KeywordNames();
  return static_cast<int>(std::find(names.begin(), names.end(), name) - names.begin());
}

/// The place of a units keyword that may stand too late. Meshes and loads may have units of their
/// own each, and the first must stand before them; all results are in the units named last.
std::vector<SourceMap::Record>::const_iterator Decisive(
    const std::vector<SourceMap::Record>& keywords, std::string_view name) {
  const int row = RowOf(name);
  auto decisive = keywords.end();
  for (auto keyword = keywords.begin(); keyword != keywords.end(); ++keyword)
    if (keyword->number == row && (decisive == keywords.end() || name == "units_res"))
      decisive = keyword;
  return decisive;
}

/// The keywords of the deck in order.
std::vector<SourceMap::Record> Keywords(const SourceMap& map) {
  std::vector<SourceMap::Record> keywords;
  for (const SourceMap::Record& record : map.Headings())
    if (record.kind == RecordKind::Keyword) keywords.push_back(record);
  return keywords;
}

}  // namespace

void FindUnitsOrder(Inspection& deck) {
  const std::vector<SourceMap::Record> keywords = Keywords(deck.map);
  const std::vector<std::string_view> names = KeywordNames();
  for (const UnitsKeyword& units : UnitsKeywords()) {
    const auto scaled = [&](const SourceMap::Record& record) {
      return std::find(units.scales.begin(), units.scales.end(), names[record.number]) !=
             units.scales.end();
    };
    const auto decisive = Decisive(keywords, units.name);
    if (decisive == keywords.end() || deck.IsSpoiltAt(decisive->offset)) continue;
    const auto before = std::find_if(keywords.begin(), decisive, scaled);
    if (before == decisive) continue;
    Finding& finding =
        deck.Add({decisive->offset, units.name.size()},
                 std::string(units.name) + " stands behind " + std::string(names[before->number]) +
                     " on line " + LineOfMention() + ", whose values it does not scale");
    finding.mentions.push_back(before->offset);
    deck.AddUnnumbered(RecordKind::UnitSystem);  // values are not in the units that were meant
  }
}

void FindMissingUnits(Inspection& deck) {
  const Place named = deck.PlaceOfKeyword("units_names");
  if (named.offset == Finding::kNowhere || deck.hasLostSection) return;
  std::string missing;
  for (const UnitsKeyword& units : UnitsKeywords()) {
    if (deck.HasKeyword(units.name)) continue;
    if (!missing.empty()) missing += ", ";
    missing += units.name;
  }
  if (missing.empty()) return;
  deck.AddUnnumbered(RecordKind::UnitSystem);
  deck.Add(named, "unit systems are named, but " + missing +
                      (missing.find(',') == std::string::npos ? " is" : " are") +
                      " missing: factors 1 are taken");
}

}  // namespace kestol
