// kestol-check on arbitrary text: read with a map, every rule, and the solution of what has no
// error.
#include <cstddef>
#include <cstdint>
#include <string>

#include "kestol/Check.h"
#include "kestol/ReadDeck.h"
#include "tests/fuzz/AsksForMuch.h"
#include "tests/support/ExpectFatal.h"

namespace kestol {

namespace {

void RunCheck(const std::string& text, bool syntaxOnly) {
  SourceMap map;
  Project project = ReadDeckText(text, "deck", &map);
  CheckOptions options;
  options.syntaxOnly = syntaxOnly;
  const Findings findings = Check(project, map, options);
  // With a map nothing is refused without a finding.
  if (!map.Refusals().empty() && findings.list.empty()) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  if (text.empty() || AsksForMuch(text)) return 0;
  RunCheck(text, true);
  RunCheck(text, false);
  return 0;
}

}  // namespace kestol
