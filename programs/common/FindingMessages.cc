#include "programs/common/FindingMessages.h"

#include <algorithm>
#include <cstdio>
#include <string_view>

#include "kestol/Check.h"
#include "kestol/Mechanisms.h"
#include "kestol/findings/DeckLines.h"
#include "main/ErrorChannel.h"
#include "programs/common/KeptText.h"
#include "programs/common/Messages.h"
#include "programs/common/RunProgram.h"
#include "programs/common/Utf8.h"

namespace kestol {

namespace {

void PrintFinding(const std::string& deck, const Finding& finding) {
  std::fputs(FindingText(deck, finding, WantsColour(stderr)).c_str(), stderr);
}

/// Where the record of the element begins.
std::uint64_t PlaceOfElement(const SourceMap& map, int number) {
  for (std::size_t i = 0; i < map.RecordCount(); ++i)
    if (map.At(i).kind == RecordKind::Element && map.At(i).number == number)
      return map.At(i).offset;
  return Finding::kNowhere;
}

/// What keeps the model from being solved, told.
std::vector<Finding> TellErrors(const std::string& deck) {
  SourceMap map;
  Project project = ReadKeptDeck(deck, &map);
  CheckOptions options;
  options.solve = options.condition = false;
  std::vector<Finding> errors = Check(project, map, options).list;
  std::erase_if(errors, [](const Finding& f) { return f.severity != Severity::Error; });
  for (const Finding& finding : errors) PrintFinding(deck, finding);
  return errors;
}

bool IsMotion(const Finding& finding) {
  return finding.code == "mechanism" || finding.code == "rigid-motion" ||
         finding.code == "orphan-node";
}

}  // namespace

const char* NameOf(Severity severity) {
  return severity == Severity::Error ? "error" : "warning";
}

std::string FindingText(const std::string& deck, const Finding& finding, bool colour) {
  Message message{NameOf(finding.severity), finding.text, finding.code, deck};
  message.line = finding.line;
  message.column = finding.column;
  message.endColumn = finding.endColumn;
  std::string text = MessageText(message, finding.line > 0 ? &finding.sourceLine : nullptr, colour);
  for (const std::string& line : finding.more) text += "  " + Harmless(line) + "\n";
  return text;
}

void EndUnsolved(const std::string& deck, const FatalError& refusal) {
  // The refusal's text stands in the channel of errors, which the search clears.
  const std::string words(PlainWords(refusal.what()));
  const bool moves = IsOfMechanism(refusal);
  const std::vector<Finding> errors = TellErrors(deck);
  const bool isExplained = std::any_of(errors.begin(), errors.end(), IsMotion);
  const bool isTold = isExplained || std::any_of(errors.begin(), errors.end(),
                                                 [&](const Finding& f) { return f.text == words; });
  if (!isTold) PrintMessage({"error", words, moves ? "mechanism" : "model", deck});
  throw ProgramEnd{moves || isExplained ? kFindings : kFailed};
}

std::vector<Finding> FindingsOf(const std::string& deck, const std::vector<LoadedHinge>& hinges) {
  SourceMap map;
  ReadKeptDeck(deck, &map);
  std::vector<Finding> findings;
  for (const LoadedHinge& hinge : hinges) {
    Finding& finding = findings.emplace_back();
    finding.code = "hinge-first";
    finding.text = TextOf(hinge);
    finding.elements = {hinge.element};
    finding.offset = PlaceOfElement(map, hinge.element);
  }
  PlaceFindings(map, findings);
  return findings;
}

void PrintLoadedHinges(const std::string& deck, const std::vector<LoadedHinge>& hinges) {
  for (const Finding& finding : FindingsOf(deck, hinges)) PrintFinding(deck, finding);
}

}  // namespace kestol
