#include "kestol/Check.h"
#include "main/ErrorChannel.h"
#include "programs/check/Options.h"
#include "programs/check/Outputs.h"
#include "programs/check/TextOutput.h"
#include "programs/common/MappedDeck.h"
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

int Run(const CheckRequest& request) {
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
  const kestol::CheckRequest request = kestol::ParseOptions(argc, argv);
  // The deck is opened behind the outputs: a document says that it cannot be.
  return kestol::RunProgram("kestol-check", {}, [&] {
    if (request.listCodes) kestol::PrintCodes();
    if (!request.explain.empty()) kestol::PrintExplanation(request.explain);
    if (request.deck.empty()) return kestol::kDone;
    try {
      return kestol::Run(request);
    } catch (const kestol::FatalError& refusal) {
      kestol::PrintRefusal(request.deck, refusal);
      return kestol::kFailed;
    }
  });
}
