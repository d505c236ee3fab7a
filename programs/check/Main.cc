#include "kestol/Check.h"
#include "programs/check/Options.h"
#include "programs/check/Outputs.h"
#include "programs/check/TextOutput.h"
#include "programs/common/MappedDeck.h"
#include "programs/common/OutputFile.h"
#include "programs/common/ProgressLine.h"
#include "programs/common/RunProgram.h"

namespace kestol {

namespace {

bool IsWrong(const CheckRequest& request, const Findings& findings) {
  return findings.Count(Severity::Error) > 0 ||
         (request.strict && findings.Count(Severity::Warning) > 0);
}

Project ReadOrSay(const CheckRequest& request, SourceMap& map, Outputs& outputs) {
  try {
    return ReadMappedDeck(request.deck, map);
  } catch (const ProgramError& failure) {
    outputs.WriteFailure(failure.what());
    throw;
  }
}

/// What can be looked up without a deck.
void LookUp(const CheckRequest& request) {
  OutputFile output("-", {});
  if (request.listCodes) WriteCodes(output);
  if (!request.explain.empty()) WriteExplanation(output, request.explain);
  output.Commit();
}

int Run(const CheckRequest& request) {
  if (request.listCodes || !request.explain.empty()) LookUp(request);
  if (request.deck.empty()) return kDone;
  // The deck is opened behind the outputs: a document says that it cannot be.
  Outputs outputs(request);
  ProgressLine progress(request.quiet);
  progress.Show("reading");
  // Held to the end of the program: to free millions of records one by one takes a while.
  static SourceMap& map = *new SourceMap;
  static Project& project = *new Project(ReadOrSay(request, map, outputs));
  progress.Show("checking");
  const Findings findings = Check(project, map, request.check);
  progress.Show("writing");
  outputs.Write(project, findings);
  return IsWrong(request, findings) ? kFindings : kDone;
}

}  // namespace

}  // namespace kestol

int main(int argc, char** argv) {
  kestol::CheckRequest request;
  return kestol::RunProgram("kestol-check", request.deck, [&] {
    request = kestol::ParseOptions(argc, argv);
    return kestol::Run(request);
  });
}
