#include "main/ErrorChannel.h"

#include <algorithm>
#include <cstring>

namespace kestol {

ErrorChannel error;

ErrorChannel::ErrorChannel() : message(&buffer_) {}

void ErrorChannel::Clear() {
  buffer_.Clear();
  message.clear();
  deck[0] = '\0';
  line = 0;
}

void ErrorChannel::SetPlace(std::string_view deckName, long lineNumber) {
  const std::size_t length = std::min(deckName.size(), sizeof deck - 1);
  std::memcpy(deck, deckName.data(), length);
  deck[length] = '\0';
  line = lineNumber;
}

void ErrorChannel::FixedBuffer::Clear() {
  std::memset(text_, 0, sizeof text_);
  setp(text_, text_ + kCapacity - 1);
}

/// A full buffer takes what comes and drops it: a message is cut, never lost.
ErrorChannel::FixedBuffer::int_type ErrorChannel::FixedBuffer::overflow(int_type c) {
  return traits_type::not_eof(c);
}

std::string_view PlainWords(std::string_view text) {
  constexpr std::string_view kWord = "error: ";
  while (text.starts_with('\n')) text.remove_prefix(1);
  while (text.ends_with('\n')) text.remove_suffix(1);
  if (text.starts_with(kWord)) text.remove_prefix(kWord.size());
  return text;
}

}  // namespace kestol
