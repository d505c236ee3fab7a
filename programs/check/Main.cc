#include "kestol/Check.h"
#include "programs/common/MappedDeck.h"
#include "programs/check/Options.h"
#include "programs/check/Outputs.h"
#include "programs/check/TextOutput.h"
#include "programs/common/ProgressLine.h"
#include "programs/common/RunProgram.h"

namespace kestol {

namespace {

bool IsWrong(const CheckRequest& request, const Findings& findings) {
  return findings.Count(Severity::Error) > 0 ||
         (request.strict && findings.Count(Severity::Warning) > 0);
}

int Run(const CheckRequest& request) {
  Outputs outputs(request);
  ProgressLine progress(request.quiet);
  progress.Show("reading");
  // Held to the end of the program: to free millions of records one by one takes a while.
  static SourceMap& map = *new SourceMap;
  static Project& project = *new Project(ReadMappedDeck(request.deck, map));
  progress.Show("checking");
  const Findings findings = Check(project, map, request.check);
  progress.Show("writing");
  outputs.Write(project, findings);
  return IsWrong(request, findings) ? kFindings : kDone;
}

}  // namespace

}  // namespace kestol

int main(int argc, char** argv) {
  const kestol::CheckRequest request = kestol::ParseOptions(argc, argv);
  return kestol::RunProgram("kestol-check", request.deck, [&] {
    if (request.listCodes) kestol::PrintCodes();
    if (!request.explain.empty()) kestol::PrintExplanation(request.explain);
    return request.deck.empty() ? kestol::kDone : kestol::Run(request);
  });
}
