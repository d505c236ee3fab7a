#include "programs/combine/Outputs.h"

#include <algorithm>
#include <filesystem>
#include <set>

#include "programs/combine/EnvelopeJson.h"
#include "programs/combine/EnvelopeText.h"
#include "programs/common/ResultGrid.h"
#include "programs/common/ResultJson.h"
#include "programs/common/RunProgram.h"

namespace kestol {

namespace {

/// The name as part of a file name.
std::string SafeName(std::string name) {
  const auto isSafe = [](char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '.' ||
           c == '-' || c == '_' || c == '+';
  };
  std::replace_if(
      name.begin(), name.end(), [&](char c) { return !isSafe(c); }, '_');
  return name;
}

}  // namespace

Outputs::Outputs(const CombineOptions& options, const CombinationFile& file,
                 const std::vector<Combination>& combinations, const Project& project,
                 std::vector<std::string> inputs)
    : options_(options),
      file_(file),
      combinations_(combinations),
      needsResults_(options.WritesFiles() && (options.cases || options.combinations)),
      files_(std::move(inputs)) {
  OpenDocuments();
  OpenTables(project);
  if (collection_ != nullptr) NameVtuFiles();
  files_.RefuseSharedNames(vtuNames_);
}

void Outputs::OpenDocuments() {
  const bool wantsText = !options_.output.empty() || !options_.WritesFiles();
  if (wantsText && !options_.envelopes)
    throw ProgramError(
        "the text holds envelopes alone; --json, --csv or --vtu write cases and combinations");
  if (wantsText && combinations_.empty())
    throw ProgramError(
        "the text holds envelopes, and there is no combination to make one of; --json, --csv or "
        "--vtu write the cases");
  if (!options_.cases && combinations_.empty())
    throw ProgramError("there is no combination; --cases writes the cases");
  if (wantsText) text_ = &files_.Open(options_.output.empty() ? "-" : options_.output);
  if (!options_.json.empty()) json_ = &files_.Open(options_.json);
  if (!options_.vtu.empty() && needsResults_) collection_ = &files_.Open(options_.vtu + ".pvd");
}

void Outputs::OpenTables(const Project& project) {
  if (options_.csv.empty()) return;
  if (needsResults_) tables_ = std::make_unique<ResultTables>(options_.csv, files_);
  if (options_.envelopes && !combinations_.empty())
    envelopeTables_ = std::make_unique<EnvelopeCsv>(options_.csv, project, files_);
}

void Outputs::NameVtuFiles() {
  std::vector<std::string> results;
  if (options_.cases) results = file_.CaseNames();
  if (options_.combinations)
    for (const Combination& combination : combinations_) results.push_back(combination.name);
  std::set<std::string> taken;
  for (const std::string& result : results) {
    std::string safe = SafeName(result);
    for (int n = 2; !taken.insert(safe).second; ++n)
      safe = SafeName(result) + '_' + std::to_string(n);
    vtuNames_.push_back(options_.vtu + '_' + safe + ".vtu");
  }
}

void Outputs::Write(Superposition& sums, const ExtremeFinder* finder, ProgressLine& progress) {
  if (json_ != nullptr) WriteHead(sums.Model());
  if (options_.cases && needsResults_) WriteCases(sums, progress);
  if (options_.combinations && needsResults_) WriteCombinations(sums, progress);
  progress.Show("envelopes");
  if (options_.envelopes && finder != nullptr) WriteAllEnvelopes(sums, *finder);
  WriteCollection();
  if (document_) document_->EndObject();
  if (json_ != nullptr) *json_ << '\n';
  files_.Commit();
}

void Outputs::WriteHead(const Project& project) {
  document_ = std::make_unique<JsonWriter>(*json_);
  document_->BeginObject();
  document_->Member("schema", "kestol-combine/1").Member("deck", file_.model);
  WriteUnitsMember(*document_, UnitNamesOf(project.units));
}

void Outputs::WriteCases(Superposition& sums, ProgressLine& progress) {
  if (document_) document_->NewLine().Key("cases").BeginArray();
  for (int k = 0; k < sums.CaseCount(); ++k) {
    const CaseEntry& entry = file_.cases[static_cast<std::size_t>(k)];
    progress.Show("case " + entry.name);
    const Results results = sums.Combine(sums.Only(k));
    if (document_) {
      document_->NewLine().BeginObject();
      document_->Member("name", entry.name).Member("category", entry.category);
    }
    WriteResult(entry.name, results, sums.Model());
    if (document_) document_->EndObject();
  }
  if (document_) document_->EndArray();
}

void Outputs::WriteCombinations(Superposition& sums, ProgressLine& progress) {
  if (document_) document_->NewLine().Key("combinations").BeginArray();
  for (const auto& [name, factors, formula] : combinations_) {
    progress.Show("combination " + name);
    const Results results = sums.Combine(factors);
    if (document_) {
      document_->NewLine().BeginObject().Member("name", name);
      document_->Key("factors").BeginObject();
      for (std::size_t k = 0; k < factors.size(); ++k)
        if (factors[k] != 0.0) document_->Member(file_.cases[k].name, factors[k]);
      document_->EndObject().Member("formula", formula);
    }
    WriteResult(name, results, sums.Model());
    if (document_) document_->EndObject();
  }
  if (document_) document_->EndArray();
}

void Outputs::WriteResult(const std::string& name, const Results& results, const Project& project) {
  const ResultData data(project, results);
  if (document_) {
    document_->Key("result").BeginObject();
    WriteResultMembers(*document_, data);
    document_->EndObject();
  }
  if (tables_) tables_->Add(name, data);
  if (collection_ != nullptr) WriteVtuFile(data);
}

void Outputs::WriteVtuFile(const ResultData& data) {
  const std::string& path = vtuNames_[vtuFiles_.size()];
  OutputFile& file = files_.Open(path);
  WriteVtu(file, ResultGrid(data).Grid(), VtuEncoding::Raw);
  file.Close();
  vtuFiles_.emplace_back(static_cast<double>(vtuFiles_.size()),
                         std::filesystem::path(path).filename().string());
}

void Outputs::WriteAllEnvelopes(Superposition& sums, const ExtremeFinder& finder) {
  if (document_) {
    Envelopes envelopes(sums, finder);
    document_->NewLine().Key("envelopes");
    WriteEnvelopes(*document_, sums.Model(), envelopes, combinations_);
  }
  if (envelopeTables_) {
    Envelopes envelopes(sums, finder);
    envelopeTables_->Write(envelopes, combinations_);
  }
  if (text_ != nullptr) {
    Envelopes envelopes(sums, finder);
    WriteEnvelopeText(*text_, sums.Model(), envelopes, combinations_);
  }
}

void Outputs::WriteCollection() {
  if (collection_ != nullptr) WritePvd(*collection_, vtuFiles_);
}

}  // namespace kestol
