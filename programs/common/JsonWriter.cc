#include "programs/common/JsonWriter.h"

#include <cmath>

namespace kestol {

namespace {

/// Length of the valid UTF-8 sequence at the front of `text`; 0 when there is none.
std::size_t SequenceLength(std::string_view text) {
  const auto byte = [text](std::size_t i) {
    return i < text.size() ? static_cast<unsigned char>(text[i]) : 0u;
  };
  const auto continues = [&](std::size_t i) { return (byte(i) & 0xc0u) == 0x80u; };
  const unsigned lead = byte(0), second = byte(1);
  if (lead < 0x80) return 1;
  if (lead >= 0xc2 && lead <= 0xdf) return continues(1) ? 2 : 0;
  if (lead >= 0xe0 && lead <= 0xef) {
    const bool overlong = lead == 0xe0 && second < 0xa0, surrogate = lead == 0xed && second > 0x9f;
    return continues(1) && continues(2) && !overlong && !surrogate ? 3 : 0;
  }
  if (lead >= 0xf0 && lead <= 0xf4) {
    const bool overlong = lead == 0xf0 && second < 0x90, beyond = lead == 0xf4 && second > 0x8f;
    return continues(1) && continues(2) && continues(3) && !overlong && !beyond ? 4 : 0;
  }
  return 0;
}

}  // namespace

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
    const std::size_t length = SequenceLength(text);
    const char c = text.front();
    if (length == 0) {
      output_ << "\xef\xbf\xbd";  // the replacement character
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
