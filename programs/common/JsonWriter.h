#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "programs/common/OutputBuffer.h"

namespace kestol {

/// JSON as it is composed, straight into the output: commas and quotes are its concern, the order
/// of the calls is the caller's. Numbers are the shortest text that reads back to the same double;
/// what is not finite is null. Texts become valid UTF-8, whatever bytes they hold.
///
///     JsonWriter json(output);
///     json.BeginObject();
///     json.Member("schema", "kestol-result/1");
///     json.Key("nodes").BeginArray();
///     for (...) json.NewLine().BeginObject()...
class JsonWriter {
public:
  explicit JsonWriter(OutputBuffer& output) : output_(output) {}

  JsonWriter& BeginObject() { return Open('{'); }
  JsonWriter& EndObject() { return Close('}'); }
  JsonWriter& BeginArray() { return Open('['); }
  JsonWriter& EndArray() { return Close(']'); }
  JsonWriter& Key(std::string_view key);

  JsonWriter& Value(double value);
  JsonWriter& Value(std::int64_t value);
  JsonWriter& Value(int value) { return Value(std::int64_t{value}); }
  JsonWriter& Value(bool value) { return Literal(value ? "true" : "false"); }
  JsonWriter& Value(std::string_view text);
  JsonWriter& Value(const char* text) { return Value(std::string_view(text)); }
  JsonWriter& Null() { return Literal("null"); }

  /// An array of numbers on one line.
  JsonWriter& Value(std::span<const double> values);
  JsonWriter& Value(std::span<const int> values);

  template <class T>
  JsonWriter& Member(std::string_view key, const T& value) {
    return Key(key).Value(value);
  }

  /// The next value begins a line.
  JsonWriter& NewLine() {
    newLine_ = true;
    return *this;
  }

private:
  JsonWriter& Open(char bracket);
  JsonWriter& Close(char bracket);
  JsonWriter& Literal(std::string_view text);
  void Separate();
  void Quote(std::string_view text);

  OutputBuffer& output_;
  bool needsComma_ = false;
  bool newLine_ = false;
};

}  // namespace kestol
