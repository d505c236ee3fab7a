#include "programs/check/Outputs.h"

#include "programs/check/JsonOutput.h"
#include "programs/check/ModeGrid.h"
#include "programs/check/SarifOutput.h"
#include "programs/check/Tables.h"
#include "programs/check/TextOutput.h"

namespace kestol {

Outputs::Outputs(const CheckRequest& request) : request_(request) {
  const bool hasDocument =
      request.format != CheckFormat::Text || request.reactions || request.equilibrium;
  if (hasDocument || !request.output.empty())
    document_ = Open(request.output.empty() ? "-" : request.output);
  if (!request.modes.empty()) modes_ = Open(request.modes);
  std::vector<std::string> names;
  for (const auto& file : files_) names.push_back(file->Name());
  RefuseSharedNames(names);
}

OutputFile* Outputs::Open(const std::string& name) {
  files_.push_back(std::make_unique<OutputFile>(name, std::vector{request_.deck}));
  return files_.back().get();
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
  for (const auto& file : files_) file->Flush();
  for (const auto& file : files_) file->Commit();
}

void Outputs::WriteFailure(const std::string& why) {
  if (request_.format != CheckFormat::Sarif) return;
  WriteFailedSarif(*document_, request_.deck, why);
  document_->Flush();
  document_->Commit();
}

}  // namespace kestol
