#include "programs/check/SarifOutput.h"

#include <algorithm>

#include "programs/common/FindingJson.h"
#include "programs/common/FindingMessages.h"
#include "programs/common/JsonWriter.h"

namespace kestol {

namespace {

/// A path as a relative or absolute URI reference: what a URI may not hold goes in percent form.
std::string UriOf(const std::string& path) {
  constexpr std::string_view kPlain = "-._~/";
  constexpr const char* kDigits = "0123456789ABCDEF";
  std::string uri = path.starts_with('/') ? "file://" : "";
  for (const char c : path) {
    const auto byte = static_cast<unsigned char>(c);
    const bool isPlain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                         (c >= '0' && c <= '9') || kPlain.find(c) != std::string_view::npos;
    if (isPlain) {
      uri += c;
    } else {
      uri += '%';
      uri += kDigits[byte >> 4U];
      uri += kDigits[byte & 15U];
    }
  }
  return uri;
}

void WriteRules(JsonWriter& json, const std::vector<FindingKind>& kinds) {
  json.NewLine().Key("rules").BeginArray();
  for (const FindingKind& kind : kinds) {
    json.NewLine().BeginObject();
    json.Member("id", kind.code);
    json.Key("shortDescription").BeginObject().Member("text", kind.explain).EndObject();
    json.Key("defaultConfiguration").BeginObject();
    json.Member("level", NameOf(kind.severity)).EndObject();
    json.EndObject();
  }
  json.EndArray();
}

void WriteRegion(JsonWriter& json, const Finding& finding) {
  if (finding.line < 1) return;
  json.Key("region").BeginObject();
  json.Member("startLine", std::int64_t{finding.line});
  json.Member("startColumn", std::int64_t{std::max(finding.column, 1L)});
  json.Member("endColumn", std::int64_t{std::max(finding.endColumn, finding.column + 1)});
  json.EndObject();
}

void WriteResult(JsonWriter& json, const std::string& uri, const std::vector<FindingKind>& kinds,
                 const Finding& finding) {
  const auto kind = std::find_if(kinds.begin(), kinds.end(),
                                 [&](const FindingKind& row) { return row.code == finding.code; });
  json.NewLine().BeginObject();
  json.Member("ruleId", finding.code);
  json.Member("ruleIndex", std::int64_t{kind - kinds.begin()});
  json.Member("level", NameOf(finding.severity));
  json.Key("message").BeginObject().Member("text", WholeText(finding)).EndObject();
  json.Key("locations").BeginArray().BeginObject().Key("physicalLocation").BeginObject();
  json.Key("artifactLocation").BeginObject().Member("uri", uri).EndObject();
  WriteRegion(json, finding);
  json.EndObject().EndObject().EndArray();
  json.EndObject();
}

void WriteInvocation(JsonWriter& json, const std::string* failure) {
  json.NewLine().Key("invocations").BeginArray().BeginObject();
  json.Member("executionSuccessful", failure == nullptr);
  if (failure != nullptr) {
    json.Key("toolExecutionNotifications").BeginArray().BeginObject();
    json.Member("level", "error").Key("message").BeginObject();
    json.Member("text", *failure).EndObject().EndObject().EndArray();
  }
  json.EndObject().EndArray();
}

void WriteRun(OutputBuffer& output, const std::string& deck, const Findings& findings, bool quiet,
              const std::string* failure) {
  const std::vector<FindingKind> kinds = FindingKinds();
  const std::string uri = UriOf(deck);
  JsonWriter json(output);
  json.BeginObject();
  json.Member("$schema",
              "https://docs.oasis-open.org/sarif/sarif/v2.1.0/errata01/os/schemas/"
              "sarif-schema-2.1.0.json");
  json.Member("version", "2.1.0");
  json.Key("runs").BeginArray().BeginObject();
  json.NewLine().Key("tool").BeginObject().Key("driver").BeginObject();
  json.Member("name", "kestol-check").Member("version", KESTOL_VERSION);
  WriteRules(json, kinds);
  json.EndObject().EndObject();
  WriteInvocation(json, failure);
  json.NewLine().Member("columnKind", "utf16CodeUnits");
  json.NewLine().Key("artifacts").BeginArray().BeginObject();
  json.Key("location").BeginObject().Member("uri", uri).EndObject().EndObject().EndArray();
  json.NewLine().Key("results").BeginArray();
  for (const Finding& finding : findings.list)
    if (!quiet || finding.severity == Severity::Error) WriteResult(json, uri, kinds, finding);
  json.EndArray();
  json.NewLine().EndObject().EndArray().EndObject();
  output << '\n';
}

}  // namespace

void WriteSarif(OutputBuffer& output, const std::string& deck, const Findings& findings,
                bool quiet) {
  WriteRun(output, deck, findings, quiet, nullptr);
}

void WriteFailedSarif(OutputBuffer& output, const std::string& deck, const std::string& why) {
  WriteRun(output, deck, {}, false, &why);
}

}  // namespace kestol
