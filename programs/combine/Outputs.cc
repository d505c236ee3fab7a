#include "programs/combine/Outputs.h"

#include <algorithm>
#include <filesystem>

#include "programs/combine/EnvelopeCsv.h"
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
                 const std::vector<Combination>& combinations, std::vector<std::string> inputs)
    : options_(options),
      file_(file),
      combinations_(combinations),
      inputs_(std::move(inputs)),
      needsResults_(options.WritesFiles() && (options.cases || options.combinations)) {
  const bool wantsText = !options.output.empty() || !options.WritesFiles();
  if (wantsText && (combinations.empty() || !options.envelopes))
    throw ProgramError(
        "the text holds envelopes, and there is no combination to make one of; --json, --csv or "
        "--vtu write the cases");
  if (wantsText)
    text_ = std::make_unique<OutputFile>(options.output.empty() ? "-" : options.output, inputs_);
  if (!options.json.empty()) json_ = std::make_unique<OutputFile>(options.json, inputs_);
  if (!options.vtu.empty() && needsResults_)
    collection_ = std::make_unique<OutputFile>(options.vtu + ".pvd", inputs_);
  std::vector<std::string> names;
  for (const auto* output : {&text_, &json_, &collection_})
    if (*output) names.push_back((*output)->Name());
  RefuseSharedNames(names);
  if (!options.csv.empty() && needsResults_)
    tables_ = std::make_unique<ResultTables>(options.csv, inputs_);
}

void Outputs::Write(Superposition& sums, const ExtremeFinder* finder, ProgressLine& progress) {
  if (json_) WriteHead(sums.Model());
  if (options_.cases && needsResults_) WriteCases(sums, progress);
  if (options_.combinations && needsResults_) WriteCombinations(sums, progress);
  progress.Show("envelopes");
  if (options_.envelopes && finder != nullptr) WriteAllEnvelopes(sums, *finder);
  WriteCollection();
  if (document_) document_->EndObject();
  if (json_) *json_ << '\n';
  Commit();
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
  if (collection_) WriteVtuFile(name, data);
}

void Outputs::WriteVtuFile(const std::string& name, const ResultData& data) {
  std::string safe = SafeName(name);
  for (int n = 2; !vtuNames_.insert(safe).second; ++n)
    safe = SafeName(name) + '_' + std::to_string(n);
  const std::string path = options_.vtu + '_' + safe + ".vtu";
  OutputFile file(path, inputs_);
  WriteVtu(file, ResultGrid(data).Grid(), VtuEncoding::Raw);
  file.Commit();
  vtuFiles_.emplace_back(static_cast<double>(vtuFiles_.size()),
                         std::filesystem::path(path).filename().string());
}

void Outputs::WriteAllEnvelopes(Superposition& sums, const ExtremeFinder& finder) {
  if (document_) {
    Envelopes envelopes(sums, finder);
    document_->NewLine().Key("envelopes");
    WriteEnvelopes(*document_, sums.Model(), envelopes, combinations_);
  }
  if (!options_.csv.empty()) {
    Envelopes envelopes(sums, finder);
    EnvelopeCsv tables(options_.csv, sums.Model(), inputs_);
    tables.Write(envelopes, combinations_);
    tables.Commit();
  }
  if (text_) {
    Envelopes envelopes(sums, finder);
    WriteEnvelopeText(*text_, sums.Model(), envelopes, combinations_);
  }
}

void Outputs::WriteCollection() {
  if (collection_) WritePvd(*collection_, vtuFiles_);
}

void Outputs::Commit() {
  for (const auto* file : {&json_, &collection_, &text_})
    if (*file) (*file)->Commit();
  if (tables_) tables_->Commit();
}

}  // namespace kestol
