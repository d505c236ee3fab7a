#include "programs/check/TextOutput.h"

#include <algorithm>
#include <cstdio>
#include <string_view>

#include "programs/check/CodesPage.h"
#include "programs/common/FindingMessages.h"
#include "programs/common/Messages.h"
#include "programs/common/Utf8.h"

namespace kestol {

namespace {

std::string Counted(int count, const char* what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

std::string Padded(std::string_view text, std::size_t width) {
  std::string padded(text);
  padded.resize(std::max(width, text.size()), ' ');
  return padded;
}

}  // namespace

void PrintFindings(const std::string& deck, const Findings& findings, bool quiet) {
  const bool colour = WantsColour(stderr);
  for (const Finding& finding : findings.list)
    if (!quiet || finding.severity == Severity::Error)
      std::fputs(FindingText(deck, finding, colour).c_str(), stderr);
  if (quiet) return;
  const int errors = findings.Count(Severity::Error), warnings = findings.Count(Severity::Warning);
  std::string text = HarmlessWords(deck) + ": ";
  if (errors == 0 && warnings == 0)
    text += "nothing found";
  else
    text += (errors > 0 ? Counted(errors, "error") : "") +
            (errors > 0 && warnings > 0 ? ", " : "") +
            (warnings > 0 ? Counted(warnings, "warning") : "");
  std::fprintf(stderr, "%s\n", text.c_str());
}

void WriteCodes(OutputBuffer& output) {
  std::vector<FindingKind> kinds = FindingKinds();
  std::sort(kinds.begin(), kinds.end(),
            [](const FindingKind& a, const FindingKind& b) { return a.code < b.code; });
  for (const FindingKind& kind : kinds)
    output << Padded(kind.code, 19) << Padded(NameOf(kind.severity), 9) << kind.explain << '\n';
}

void WriteExplanation(OutputBuffer& output, const std::string& code) {
  const std::string_view page = CodesPage();
  const std::string heading = "\n## " + code + "\n";
  const std::size_t begin = page.find(heading);
  std::string_view text = page.substr(begin == std::string_view::npos ? page.size() : begin + 4);
  text = text.substr(0, text.find("\n## "));
  while (text.ends_with('\n')) text.remove_suffix(1);
  output << text << '\n';
}

}  // namespace kestol
