#include "programs/common/CsvWriter.h"

#include <algorithm>
#include <string>

#include "programs/common/Utf8.h"

namespace kestol {

namespace {

/// Valid UTF-8 without what readers of tables stumble over.
std::string Readable(std::string_view text) {
  std::string readable;
  while (!text.empty()) {
    const std::string_view sequence = text.substr(0, std::max<std::size_t>(Utf8Length(text), 1));
    const auto byte = static_cast<unsigned char>(sequence.front());
    const bool isControl = byte < 0x20 && byte != '\t' && byte != '\n' && byte != '\r';
    readable += isControl || Utf8Length(text) == 0 ? kReplacement : sequence;
    text.remove_prefix(sequence.size());
  }
  return readable;
}

}  // namespace

CsvWriter& CsvWriter::Field(std::string_view name) {
  const std::string text = Readable(name);
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
