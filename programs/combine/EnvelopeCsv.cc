#include "programs/combine/EnvelopeCsv.h"

#include <algorithm>

#include "programs/combine/ValueUnits.h"
#include "programs/common/CsvWriter.h"
#include "results/BeamResults.h"
#include "results/NodeResults.h"

namespace kestol {

namespace {

struct Table {
  ValueKind kind;
  const char* name;
  const char* number;  ///< heading of the number
  const char* point;   ///< heading of the point; null: none
};
constexpr Table kTables[] = {
    {ValueKind::NodeDisplacement,      "nodes",                     "node",    nullptr  },
    {ValueKind::StationForces,         "stations",                  "element", "station"},
    {ValueKind::StationDisplacement,   "deflections",               "element", "station"},
    {ValueKind::ShellForces,           "shells",                    "element", "point"  },
    {ValueKind::ShellTop,              "shells_top",                "element", "point"  },
    {ValueKind::ShellBottom,           "shells_bottom",             "element", "point"  },
    {ValueKind::SolidStress,           "solids",                    "element", "point"  },
    {ValueKind::NodalStress,           "nodal_stresses",            "node",    nullptr  },
    {ValueKind::Reaction,              "reactions",                 "node",    nullptr  },
    {ValueKind::ReactionInSupportAxes, "reactions_in_support_axes", "node",    nullptr  },
};

const Table& TableOf(ValueKind kind) {
  return kTables[static_cast<std::size_t>(kind)];
}

bool IsStation(ValueKind kind) {
  return kind == ValueKind::StationForces || kind == ValueKind::StationDisplacement;
}

bool IsReaction(ValueKind kind) {
  return kind == ValueKind::Reaction || kind == ValueKind::ReactionInSupportAxes;
}

/// Whether the model has reactions of the kind.
bool HasReactions(const Project& project, ValueKind kind) {
  const std::vector<SupportedNode> supported = SupportedNodes(project);
  return std::any_of(supported.begin(), supported.end(), [kind](const SupportedNode& support) {
    return kind == ValueKind::Reaction || IsInclined(*support.node);
  });
}

/// Whether the model has values of the kind.
bool Has(const Project& project, ValueKind kind) {
  if (kind == ValueKind::NodeDisplacement) return true;
  if (IsReaction(kind)) return HasReactions(project, kind);
  const bool ofShells = kind == ValueKind::ShellForces || kind == ValueKind::ShellTop ||
                        kind == ValueKind::ShellBottom;
  const int elemType = IsStation(kind) ? Linear : ofShells ? Triangle : Tetrahedra;
  for (const auto& mesh : project.meshes)
    if (mesh->elemType == elemType) return true;
  return false;
}

}  // namespace

EnvelopeCsv::EnvelopeCsv(const std::string& prefix, const Project& project, OutputFiles& files)
    : project_(project), units_(UnitNamesOf(project.units)) {
  for (const Table& table : kTables)
    if (Has(project, table.kind))
      files_[table.kind] = &files.Open(prefix + "_envelope_" + table.name + ".csv");
}

void EnvelopeCsv::WriteHeader(ValueKind kind, OutputBuffer& output) const {
  const Table& table = TableOf(kind);
  CsvWriter csv(output);
  csv.Field(table.number);
  if (table.point != nullptr) csv.Field(table.point);
  if (IsStation(kind)) csv.Field(units_.Known() ? "x [" + units_.length + ']' : "x");
  if (IsReaction(kind)) csv.Field("between").Field("and");
  csv.Field("value").Field("extreme").Field("combination");
  for (std::size_t i = 0; i < NamesOf(kind).names.size(); ++i) csv.Field(Heading(kind, i, units_));
  csv.EndRow();
}

void EnvelopeCsv::WritePlace(const PlaceEnvelope& envelope,
                             const std::vector<Combination>& combinations) {
  const auto& [kind, number, point, between] = envelope.place;
  const ValueNames& names = NamesOf(kind);
  CsvWriter csv(*files_.at(kind));
  for (std::size_t i = 0; i < names.names.size(); ++i)
    for (const bool least : {true, false}) {
      const Extreme& extreme = least ? envelope.least[i] : envelope.largest[i];
      csv.Field(number);
      if (TableOf(kind).point != nullptr) csv.Field(IsStation(kind) ? point : point + 1);
      if (IsStation(kind))
        csv.Field(StationXi(point, DeckStations(project_)) * lengths_.at(number));
      if (IsReaction(kind)) csv.Field(between[0]).Field(between[1]);
      csv.Field(names.names[i]).Field(least ? "min" : "max");
      csv.Field(combinations[static_cast<std::size_t>(extreme.combination)].name);
      csv.Fields({extreme.values.data(), names.names.size()});
      csv.EndRow();
    }
}

void EnvelopeCsv::Write(Envelopes& envelopes, const std::vector<Combination>& combinations) {
  const BeamTable beams = GeometryOfBeams(project_);
  for (std::size_t b = 0; b < beams.beams.size(); ++b)
    lengths_[beams.beams[b]->number] = beams.lengths[b];
  for (const auto& [kind, file] : files_) WriteHeader(kind, *file);
  while (envelopes.Next()) WritePlace(envelopes.Current(), combinations);
}

}  // namespace kestol
