#include "programs/common/Messages.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "programs/common/KeptText.h"
#include "programs/common/Utf8.h"
#include "programs/common/WholeFile.h"

namespace kestol {

namespace {

constexpr const char* kBold = "\x1b[1m";
constexpr const char* kRed = "\x1b[1;31m";
constexpr const char* kMagenta = "\x1b[1;35m";
constexpr const char* kGreen = "\x1b[1;32m";
constexpr const char* kPlain = "\x1b[0m";

std::string Painted(std::string_view text, const char* paint, bool colour) {
  return colour ? std::string(paint) + std::string(text) + kPlain : std::string(text);
}

std::string_view WithoutLineEnd(std::string_view text) {
  while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.remove_suffix(1);
  return text;
}

std::string Place(const Message& message) {
  std::string place(message.file);
  if (place.empty()) return place;
  for (const long number : {message.line, message.line > 0 ? message.column : 0})
    if (number > 0) place += ':' + std::to_string(number);
  return place + ": ";
}

/// "   14 | text", and under it the caret. Tabs stay tabs, so that both lines align. Of a line that
/// is longer than any screen only the beginning is shown.
std::string Excerpt(const Message& message, std::string_view sourceLine, bool colour) {
  sourceLine = sourceLine.substr(0, kLongestExcerpt);
  const std::string number = std::to_string(message.line);
  const std::string margin(std::max<std::size_t>(5, number.size()), ' ');
  std::string text = margin.substr(number.size()) + number + " | " + Harmless(sourceLine) + '\n';
  const auto length = static_cast<long>(sourceLine.size());
  if (message.column < 1 || message.column > length + 1) return text;
  std::string blanks(sourceLine.substr(0, static_cast<std::size_t>(message.column - 1)));
  std::replace_if(
      blanks.begin(), blanks.end(), [](char c) { return c != '\t'; }, ' ');
  const long end = std::min(message.endColumn, length + 1);
  std::string caret = "^";
  if (end > message.column + 1)
    caret.append(static_cast<std::size_t>(end - message.column - 1), '~');
  return text + margin + " | " + blanks + Painted(caret, kGreen, colour) + '\n';
}

/// Looks for one line (from 1) in a text that comes in pieces, and keeps as much of it as a message
/// shows.
struct LineSearch {
  long line;
  std::string& text;
  long here = 1;
  bool isThere = false;

  bool IsBehind() const { return here > line; }
  void Take(std::string_view rest) {
    while (!rest.empty() && !IsBehind()) {
      const std::size_t end = std::min(rest.find('\n'), rest.size());
      isThere = here == line;
      if (isThere && text.size() < kLongestExcerpt)
        text += rest.substr(0, std::min(end, kLongestExcerpt));
      if (end < rest.size()) ++here;
      rest.remove_prefix(std::min(end + 1, rest.size()));
    }
  }
};

}  // namespace

bool IsTerminal(std::FILE* stream) {
  return ::isatty(::fileno(stream)) != 0;
}

bool WantsColour(std::FILE* stream) {
  const char* const noColour = std::getenv("NO_COLOR");
  return IsTerminal(stream) && (noColour == nullptr || *noColour == '\0');
}

bool ReadSourceLine(const std::string& file, long line, std::string& text) {
  text.clear();
  LineSearch search{line, text};
  std::error_code unknown;
  if (const std::string* const kept = KeptText(file)) {
    search.Take(*kept);
  } else if (std::filesystem::is_regular_file(file, unknown)) {  // a pipe would wait for its writer
    const ReadOnlyFile stream(std::fopen(file.c_str(), "r"));
    if (!stream) return false;
    char piece[16 * 1024];
    for (std::size_t size = 1; !search.IsBehind() && size > 0;) {
      size = std::fread(piece, 1, sizeof piece, stream.get());
      search.Take({piece, size});
    }
  }
  text = WithoutLineEnd(text);
  return search.isThere;
}

std::string MessageText(const Message& message, const std::string* sourceLine, bool colour) {
  const char* const paint = message.severity == "error" ? kRed : kMagenta;
  std::string text = Painted(HarmlessWords(Place(message)), kBold, colour) +
                     Painted(std::string(message.severity) + ":", paint, colour) + ' ' +
                     Harmless(WithoutLineEnd(message.text));
  if (!message.code.empty()) text += " [" + std::string(message.code) + ']';
  text += '\n';
  if (message.line > 0 && sourceLine != nullptr) text += Excerpt(message, *sourceLine, colour);
  return text;
}

void PrintMessage(const Message& message) {
  std::string line;
  const bool known =
      message.line > 0 && ReadSourceLine(std::string(message.file), message.line, line);
  const std::string text = MessageText(message, known ? &line : nullptr, WantsColour(stderr));
  std::fwrite(text.data(), 1, text.size(), stderr);
}

}  // namespace kestol
