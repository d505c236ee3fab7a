#pragma once

#include <cctype>
#include <string>

namespace kestol {

/// Long numbers ask for honest but large work (a table by element number, stations by the million);
/// what is looked for here does not need them.
inline bool AsksForMuch(const std::string& text) {
  constexpr int kLongest = 4;
  int digits = 0;
  for (const char c : text) {
    digits = std::isdigit(static_cast<unsigned char>(c)) ? digits + 1 : 0;
    if (digits > kLongest) return true;
  }
  return false;
}

}  // namespace kestol
