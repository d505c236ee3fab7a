#pragma once

#include <string>

namespace kestol {

/// A deck as a reader wants to see it: its title, and its text with the middle of long lists left
/// out.
struct DeckText {
  std::string title;
  std::string text;
  int omittedLines = 0;
};

/// Reads the file. Texts above `largest` bytes keep the first and last lines of each run of lines
/// that begin with a number.
DeckText TextOfDeck(const std::string& file, std::size_t largest = 200'000);

}  // namespace kestol
