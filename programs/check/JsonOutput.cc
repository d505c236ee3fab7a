#include "programs/check/JsonOutput.h"

#include "programs/common/FindingJson.h"
#include "programs/common/ResultJson.h"
#include "results/Equilibrium.h"
#include "results/UnitNames.h"

namespace kestol {

void WriteJson(OutputBuffer& output, const std::string& deck, const Project& project,
               const Findings& findings, bool quiet) {
  JsonWriter json(output);
  json.BeginObject();
  json.Member("schema", "kestol-check/1").Member("deck", deck).Member("version", KESTOL_VERSION);
  WriteUnitsMember(json, UnitNamesOf(project.units));
  WriteFindings(json, deck, findings.list, quiet);
  WriteMechanisms(json, findings.mechanisms ? &*findings.mechanisms : nullptr);
  if (findings.results) {
    WriteReactionsMember(json, project, *findings.results);
    WriteEquilibriumMember(json, EquilibriumOf(project, *findings.results));
  }
  if (findings.condition) json.NewLine().Member("condition", *findings.condition);
  json.NewLine().EndObject();
  output << '\n';
}

}  // namespace kestol
