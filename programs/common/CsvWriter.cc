#include "programs/common/CsvWriter.h"

namespace kestol {

CsvWriter& CsvWriter::Field(std::string_view text) {
  Separate();
  if (text.find_first_of(",\"\r\n") == std::string_view::npos) {
    output_ << text;
    return *this;
  }
  output_ << '"';
  for (const char c : text) {
    if (c == '"') output_ << '"';
    output_ << c;
  }
  output_ << '"';
  return *this;
}

}  // namespace kestol
