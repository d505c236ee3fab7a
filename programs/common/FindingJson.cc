#include "programs/common/FindingJson.h"

#include <span>

#include "programs/common/FindingMessages.h"
#include "programs/common/JsonWriter.h"

namespace kestol {

std::string WholeText(const Finding& finding) {
  std::string text = finding.text;
  for (const std::string& line : finding.more) text += "\n" + line;
  return text;
}

void WriteFindings(JsonWriter& json, const std::string& file, const std::vector<Finding>& findings,
                   bool errorsOnly) {
  json.NewLine().Key("findings").BeginArray();
  for (const Finding& finding : findings) {
    if (errorsOnly && finding.severity != Severity::Error) continue;
    json.NewLine().BeginObject();
    json.Member("code", finding.code);
    json.Member("severity", NameOf(finding.severity));
    json.Member("file", file).Member("line", std::int64_t{finding.line});
    json.Member("column", std::int64_t{finding.column});
    json.Member("endColumn", std::int64_t{finding.endColumn});
    json.Member("text", WholeText(finding));
    json.Member("nodes", std::span<const int>(finding.nodes));
    json.Member("elements", std::span<const int>(finding.elements));
    json.EndObject();
  }
  json.EndArray();
}

namespace {

void WriteMode(JsonWriter& json, const MechanismMode& mode) {
  json.NewLine().BeginObject().Member("relativePivot", mode.ritz);
  json.Key("text").BeginArray();
  for (const std::string& line : mode.text) json.Value(line);
  json.EndArray().Key("motion").BeginObject();
  for (const NodeMotion& motion : mode.motion) {
    json.Key(std::to_string(motion.node)).BeginObject();
    json.Member("u", motion.u).Member("rotation", motion.rotation);
    json.EndObject();
  }
  json.EndObject().EndObject();
}

}  // namespace

void WriteMechanisms(JsonWriter& json, const Mechanisms* mechanisms) {
  json.NewLine().Member("modes", mechanisms != nullptr ? mechanisms->count : 0);
  json.Key("mechanisms").BeginArray();
  if (mechanisms != nullptr)
    for (const MechanismMode& mode : mechanisms->modes) WriteMode(json, mode);
  json.EndArray();
}

}  // namespace kestol
