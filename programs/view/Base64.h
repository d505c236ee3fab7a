#pragma once

#include <cstddef>
#include <cstdint>

#include "programs/common/OutputBuffer.h"

namespace kestol {

/// Bytes as base64, without line ends; the last group is closed when the writer ends.
class Base64Writer {
public:
  explicit Base64Writer(OutputBuffer& output) : output_(output) {}
  ~Base64Writer() { Close(); }
  Base64Writer(const Base64Writer&) = delete;
  Base64Writer& operator=(const Base64Writer&) = delete;

  void Write(const void* data, std::size_t size) {
    const auto* byte = static_cast<const std::uint8_t*>(data);
    for (std::size_t i = 0; i < size; ++i) {
      pending_ = pending_ << 8 | byte[i];
      if (++count_ == 3) Group();
    }
  }

private:
  static constexpr char kDigits[] =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

  /// Three bytes are four digits.
  void Group() {
    char* const to = output_.Room(4);
    to[0] = kDigits[pending_ >> 18];
    to[1] = kDigits[pending_ >> 12 & 63];
    to[2] = kDigits[pending_ >> 6 & 63];
    to[3] = kDigits[pending_ & 63];
    output_.Advance(to + 4);
    pending_ = 0;
    count_ = 0;
  }

  void Close() {
    if (count_ == 0) return;
    const int bytes = count_;
    pending_ <<= 8 * (3 - bytes);
    char* const to = output_.Room(4);
    to[0] = kDigits[pending_ >> 18];
    to[1] = kDigits[pending_ >> 12 & 63];
    to[2] = bytes == 2 ? kDigits[pending_ >> 6 & 63] : '=';
    to[3] = '=';
    output_.Advance(to + 4);
  }

  OutputBuffer& output_;
  std::uint32_t pending_ = 0;
  int count_ = 0;
};

}  // namespace kestol
