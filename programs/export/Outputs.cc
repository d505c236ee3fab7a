#include "programs/export/Outputs.h"

#include "kestol/Reports.h"
#include "programs/common/ResultCsv.h"
#include "programs/common/ResultGrid.h"
#include "programs/common/ResultJson.h"

namespace kestol {

namespace {

bool IsWritten(const CsvTable& table, const ExportOptions& options) {
  return !options.csv.empty() && !(table.needsSolution && options.meshOnly);
}

}  // namespace

Outputs::Outputs(const ExportOptions& options, bool hasBeams)
    : options_(options), files_({options.deck}) {
  const bool drawn = !options.vtu.empty() && hasBeams && !options.meshOnly;
  vtu_ = Open(options.vtu);
  diagrams_ = Open(drawn ? DiagramsBeside(options.vtu) : "");
  json_ = Open(options.json);
  report_ = Open(options.report);
  res_ = Open(options.res);
  for (const CsvTable& table : CsvTables())
    tables_.push_back(
        Open(IsWritten(table, options) ? options.csv + '_' + table.name + ".csv" : ""));
  files_.RefuseSharedNames();
}

OutputFile* Outputs::Open(const std::string& name) {
  return name.empty() ? nullptr : &files_.Open(name);
}

void Outputs::Write(const ResultData& data) {
  if (vtu_ != nullptr) WriteVtu(*vtu_, ResultGrid(data).Grid(), options_.encoding);
  if (diagrams_ != nullptr) WriteVtu(*diagrams_, DiagramGrid(data).Grid(), options_.encoding);
  if (json_ != nullptr) WriteResultJson(*json_, options_.deck, data);
  for (std::size_t t = 0; t < tables_.size(); ++t)
    if (tables_[t] != nullptr) CsvTables()[t].write(*tables_[t], data);
  WriteOwnFiles(data);
  files_.Commit();
}

void Outputs::WriteOwnFiles(const ResultData& data) {
  if (report_ != nullptr) WriteReportText(data.project, data.results, TakerOf(*report_));
  if (res_ != nullptr) WriteResultText(data.project, data.results, TakerOf(*res_));
}

}  // namespace kestol
