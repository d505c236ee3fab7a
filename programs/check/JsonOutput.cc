#include "programs/check/JsonOutput.h"

#include <span>

#include "programs/common/FindingJson.h"
#include "programs/common/JsonWriter.h"
#include "results/Equilibrium.h"
#include "results/UnitNames.h"

namespace kestol {

namespace {

void WriteForces(JsonWriter& json, const NodeForces& forces) {
  json.Member("force", forces.force).Member("moment", forces.moment);
}

void WriteReactions(JsonWriter& json, const Project& project, const Results& results) {
  json.NewLine().Key("reactions").BeginArray();
  for (const SupportedNode& supported : SupportedNodes(project)) {
    const NodeForces forces = SupportForce(project, results, *supported.node);
    json.NewLine().BeginObject();
    json.Member("node", supported.number);
    if (supported.number == 0)
      WriteNumbers(json, "between", {supported.between[0], supported.between[1]});
    WriteForces(json, forces);
    if (IsInclined(*supported.node)) {
      json.Key("inSupportAxes").BeginObject();
      WriteForces(json, SupportForceInItsAxes(project, results, *supported.node));
      json.EndObject();
    }
    const Reaction* const printed = FindReaction(results, supported.node->number);
    json.Key("printed").BeginArray();
    for (int d = 0; d < project.dofsPerNode; ++d)
      json.Value(printed == nullptr ? 0.0 : printed->values[static_cast<std::size_t>(d)]);
    json.EndArray();
    json.EndObject();
  }
  json.EndArray();
}

void WriteEquilibrium(JsonWriter& json, const Project& project, const Results& results) {
  const Equilibrium balance = EquilibriumOf(project, results);
  json.NewLine().Key("equilibrium").BeginObject();
  json.Key("loads").BeginObject();
  WriteForces(json, balance.loads);
  json.EndObject();
  json.Key("reactions").BeginObject();
  WriteForces(json, balance.reactions);
  json.EndObject();
  json.Member("drilling", balance.drilling).Member("relativeError", balance.relativeError);
  json.EndObject();
}

}  // namespace

void WriteJson(OutputBuffer& output, const std::string& deck, const Project& project,
               const Findings& findings, bool quiet) {
  JsonWriter json(output);
  const UnitNames units = UnitNamesOf(project.units);
  json.BeginObject();
  json.Member("schema", "kestol-check/1").Member("deck", deck).Member("version", KESTOL_VERSION);
  json.Key("units").BeginObject();
  json.Member("force", units.force).Member("length", units.length);
  json.Member("pressure", units.pressure);
  json.EndObject();
  WriteFindings(json, deck, findings.list, quiet);
  WriteMechanisms(json, findings.mechanisms ? &*findings.mechanisms : nullptr);
  if (findings.results) {
    WriteReactions(json, project, *findings.results);
    WriteEquilibrium(json, project, *findings.results);
  }
  if (findings.condition) json.NewLine().Member("condition", *findings.condition);
  json.NewLine().EndObject();
  output << '\n';
}

}  // namespace kestol
