#pragma once

#include <charconv>
#include <cstddef>
#include <ostream>

namespace kestol {

/// The shortest text that reads back to the same double.
struct Shortest {
  double value;
};

inline std::ostream& operator<<(std::ostream& stream, Shortest number) {
  constexpr std::size_t kLongest = 32;
  char text[kLongest];
  const auto [end, status] = std::to_chars(text, text + kLongest, number.value);
  return stream.write(text, end - text);
}

}  // namespace kestol
