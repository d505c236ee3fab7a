#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>

namespace kestol {

/// One message about a place in a deck. Lines and columns count from 1, columns in bytes; 0 is
/// "not known".
struct Message {
  std::string_view severity;  ///< "error" or "warning"
  std::string_view text;      ///< may end with a line end, which is not repeated
  std::string_view code = {};
  std::string_view file = {};
  long line = 0;
  long column = 0;
  long endColumn = 0;  ///< behind the last byte of the word
};

/// Of a line of the deck no more bytes are shown.
constexpr std::size_t kLongestExcerpt = 200;

/// `file:line:column: severity: text [code]`, then the line of the deck and a caret under the
/// word. What is not known is left out. `sourceLine` is the line's text without its end; null when
/// it is not at hand.
std::string MessageText(const Message& message, const std::string* sourceLine, bool colour);

/// The same on standard error, with the line read from the file and colour where that is wanted.
void PrintMessage(const Message& message);

/// Line `line` (from 1) of the file without its line end, or as much of it as a message shows;
/// false when there is none.
bool ReadSourceLine(const std::string& file, long line, std::string& text);

/// Whether `stream` is a terminal and NO_COLOR is not set.
bool WantsColour(std::FILE* stream);

/// Whether `stream` is a terminal.
bool IsTerminal(std::FILE* stream);

}  // namespace kestol
