#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kestol {

/// Length of the valid UTF-8 sequence at the front of `text`; 0 when there is none.
std::size_t Utf8Length(std::string_view text);

/// Stands for bytes that are no text.
constexpr std::string_view kReplacement = "\xef\xbf\xbd";

/// The text for a terminal, of which the deck may say anything: what could drive it becomes '?'.
/// Tabs and line ends stay, and so do the letters of one-byte alphabets.
std::string Harmless(std::string_view text);
/// The same for a part of a line, which tabs and line ends would break: they become blanks.
std::string HarmlessWords(std::string_view text);

}  // namespace kestol
