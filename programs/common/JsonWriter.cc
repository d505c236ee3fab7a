#include "programs/common/JsonWriter.h"

#include <cmath>

#include "programs/common/Utf8.h"

namespace kestol {

void JsonWriter::Separate() {
  if (needsComma_) output_ << ',';
  if (newLine_) {
    output_ << '\n';
  } else if (needsComma_) {
    output_ << ' ';
  }
  newLine_ = false;
}

JsonWriter& JsonWriter::Open(char bracket) {
  Separate();
  output_ << bracket;
  needsComma_ = false;
  return *this;
}

JsonWriter& JsonWriter::Close(char bracket) {
  newLine_ = false;
  output_ << bracket;
  needsComma_ = true;
  return *this;
}

JsonWriter& JsonWriter::Key(std::string_view key) {
  Separate();
  Quote(key);
  output_ << ": ";
  needsComma_ = false;
  return *this;
}

JsonWriter& JsonWriter::Literal(std::string_view text) {
  Separate();
  output_ << text;
  needsComma_ = true;
  return *this;
}

JsonWriter& JsonWriter::Value(double value) {
  if (!std::isfinite(value)) return Null();
  if (value == 0.0 && std::signbit(value)) return Literal("-0.0");  // "-0" is an integer to many
  Separate();
  output_ << value;
  needsComma_ = true;
  return *this;
}

JsonWriter& JsonWriter::Value(std::int64_t value) {
  Separate();
  output_ << value;
  needsComma_ = true;
  return *this;
}

JsonWriter& JsonWriter::Value(std::string_view text) {
  Separate();
  Quote(text);
  needsComma_ = true;
  return *this;
}

JsonWriter& JsonWriter::Value(std::span<const double> values) {
  BeginArray();
  for (const double value : values) Value(value);
  return EndArray();
}

JsonWriter& JsonWriter::Value(std::span<const int> values) {
  BeginArray();
  for (const int value : values) Value(value);
  return EndArray();
}

void JsonWriter::Quote(std::string_view text) {
  constexpr char kHex[] = "0123456789abcdef";
  output_ << '"';
  while (!text.empty()) {
    const std::size_t length = Utf8Length(text);
    const char c = text.front();
    if (length == 0) {
      output_ << kReplacement;
    } else if (c == '"' || c == '\\') {
      output_ << '\\' << c;
    } else if (static_cast<unsigned char>(c) < 0x20) {
      output_ << "\\u00" << kHex[c >> 4] << kHex[c & 15];
    } else {
      output_ << text.substr(0, length);
    }
    text.remove_prefix(length == 0 ? 1 : length);
  }
  output_ << '"';
}

}  // namespace kestol
