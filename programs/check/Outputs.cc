#include "programs/check/Outputs.h"

#include "programs/check/JsonOutput.h"
#include "programs/check/ModeGrid.h"
#include "programs/check/SarifOutput.h"
#include "programs/check/Tables.h"
#include "programs/check/TextOutput.h"

namespace kestol {

Outputs::Outputs(const CheckRequest& request) : request_(request), files_({request.deck}) {
  const bool hasDocument =
      request.format != CheckFormat::Text || request.reactions || request.equilibrium;
  if (hasDocument || !request.output.empty())
    document_ = &files_.Open(request.output.empty() ? "-" : request.output);
  if (!request.modes.empty()) modes_ = &files_.Open(request.modes);
  files_.RefuseSharedNames();
}

void Outputs::Write(const Project& project, const Findings& findings) {
  switch (request_.format) {
    case CheckFormat::Text:
      PrintFindings(request_.deck, findings, request_.quiet);
      if (findings.results && request_.reactions)
        WriteReactions(*document_, project, *findings.results);
      if (findings.results && request_.equilibrium)
        WriteEquilibrium(*document_, project, *findings.results);
      break;
    case CheckFormat::Json:
      WriteJson(*document_, request_.deck, project, findings, request_.quiet);
      break;
    case CheckFormat::Sarif:
      WriteSarif(*document_, request_.deck, findings, request_.quiet);
      break;
  }
  if (modes_ != nullptr) WriteModes(*modes_, project, findings);
  files_.Commit();
}

void Outputs::WriteFailure(const std::string& why) {
  if (request_.format != CheckFormat::Sarif) return;
  WriteFailedSarif(*document_, request_.deck, why);
  document_->Commit();
}

}  // namespace kestol
