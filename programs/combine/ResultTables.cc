#include "programs/combine/ResultTables.h"

#include <string_view>

#include "programs/common/CsvWriter.h"
#include "programs/common/ResultCsv.h"

namespace kestol {

namespace {

std::string FieldText(std::string_view text) {
  OutputString field;
  CsvWriter(field).Field(text);
  return field.Text();
}

}  // namespace

ResultTables::ResultTables(const std::string& prefix, OutputFiles& files) {
  for (const CsvTable& table : CsvTables())
    files_.push_back(&files.Open(prefix + '_' + table.name + ".csv"));
}

void ResultTables::Add(const std::string& name, const ResultData& data) {
  const std::string field = FieldText(name);
  auto file = files_.begin();
  for (const CsvTable& table : CsvTables()) {
    OutputBuffer& output = **file++;
    OutputString rows;
    table.write(rows, data);
    std::string_view text = rows.Text();
    for (bool header = true; !text.empty(); header = false) {
      const std::string_view line = text.substr(0, text.find('\n') + 1);
      text.remove_prefix(line.size());
      if (!header || first_) output << (header ? "result" : field) << ',' << line;
    }
  }
  first_ = false;
}

}  // namespace kestol
