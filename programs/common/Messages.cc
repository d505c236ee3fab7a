#include "programs/common/Messages.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <system_error>

#include "programs/common/KeptText.h"

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

/// Deck text goes to a terminal: what could drive it becomes '?'.
std::string Harmless(std::string_view text) {
  std::string harmless(text);
  std::replace_if(
      harmless.begin(), harmless.end(),
      [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return (byte < 0x20 && c != '\t' && c != '\n') || byte == 0x7f;
      },
      '?');
  return harmless;
}

std::string Place(const Message& message) {
  std::string place(message.file);
  if (place.empty()) return place;
  for (const long number : {message.line, message.line > 0 ? message.column : 0})
    if (number > 0) place += ':' + std::to_string(number);
  return place + ": ";
}

/// "   14 | text", and under it the caret. Tabs stay tabs, so that both lines align.
std::string Excerpt(const Message& message, const std::string& sourceLine, bool colour) {
  const std::string number = std::to_string(message.line);
  const std::string margin(std::max<std::size_t>(5, number.size()), ' ');
  std::string text = margin.substr(number.size()) + number + " | " + Harmless(sourceLine) + '\n';
  const auto length = static_cast<long>(sourceLine.size());
  if (message.column < 1 || message.column > length + 1) return text;
  std::string blanks = sourceLine.substr(0, static_cast<std::size_t>(message.column - 1));
  std::replace_if(
      blanks.begin(), blanks.end(), [](char c) { return c != '\t'; }, ' ');
  const long end = std::min(message.endColumn, length + 1);
  std::string caret = "^";
  if (end > message.column + 1)
    caret.append(static_cast<std::size_t>(end - message.column - 1), '~');
  return text + margin + " | " + blanks + Painted(caret, kGreen, colour) + '\n';
}

}  // namespace

bool IsTerminal(std::FILE* stream) {
  return ::isatty(::fileno(stream)) != 0;
}

bool WantsColour(std::FILE* stream) {
  const char* const noColour = std::getenv("NO_COLOR");
  return IsTerminal(stream) && (noColour == nullptr || *noColour == '\0');
}

bool ReadSourceLine(const std::string& file, long line, std::string& text) {
  const std::string* const kept = KeptText(file);
  std::unique_ptr<std::istream> stream;
  std::error_code unknown;
  if (kept != nullptr)
    stream = std::make_unique<std::istringstream>(*kept);
  else if (std::filesystem::is_regular_file(file, unknown))  // a pipe would wait for its writer
    stream = std::make_unique<std::ifstream>(file, std::ios::binary);
  else
    return false;
  for (long k = 0; k < line; ++k)
    if (!std::getline(*stream, text)) return false;
  text = WithoutLineEnd(text);
  return line > 0;
}

std::string MessageText(const Message& message, const std::string* sourceLine, bool colour) {
  const char* const paint = message.severity == "error" ? kRed : kMagenta;
  std::string text = Painted(Harmless(Place(message)), kBold, colour) +
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
