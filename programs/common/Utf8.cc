#include "programs/common/Utf8.h"

#include <algorithm>

namespace kestol {

namespace {

/// Control characters: the old ones, delete, and those that follow it, which begin commands too.
bool DrivesATerminal(std::string_view sequence) {
  const auto byte = static_cast<unsigned char>(sequence.front());
  if (sequence.size() == 1)
    return (byte < 0x20 && byte != '\t' && byte != '\n') || (byte >= 0x7f && byte < 0xa0);
  return byte == 0xc2 && static_cast<unsigned char>(sequence[1]) < 0xa0;
}

}  // namespace

std::size_t Utf8Length(std::string_view text) {
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

std::string Harmless(std::string_view text) {
  std::string harmless;
  harmless.reserve(text.size());
  while (!text.empty()) {
    const std::string_view sequence = text.substr(0, std::max<std::size_t>(Utf8Length(text), 1));
    if (DrivesATerminal(sequence))
      harmless += '?';
    else
      harmless += sequence;
    text.remove_prefix(sequence.size());
  }
  return harmless;
}

std::string HarmlessWords(std::string_view text) {
  std::string words = Harmless(text);
  std::replace_if(
      words.begin(), words.end(), [](char c) { return c == '\t' || c == '\n'; }, ' ');
  return words;
}

}  // namespace kestol
