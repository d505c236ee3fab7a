#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "input/TextInput.h"
#include "input/Words.h"

namespace kestol {

/// A word of the text behind the mark.
struct FoundWord {
  std::string text;     ///< in lower case
  std::string written;  ///< as it stands there
  std::uint64_t offset;
  bool startsLine;
  bool isComment;  ///< or stands behind one on its line
};

/// Walks word by word from the mark on.
class WordWalk {
public:
  explicit WordWalk(TextInput& input) : input_(input), mark_(input.Offset()) { input.Mark(); }

  /// The next word; none at the end of the text.
  std::optional<FoundWord> Next() {
    for (int c = input_.Peek(); IsSpace(c); c = input_.Peek()) {
      input_.Get();
      if (c != '\n') continue;
      startsLine_ = true;
      isComment_ = false;
    }
    const std::string written(input_.PeekWord());
    FoundWord word{LowerCase(written), written, input_.Offset(), startsLine_, false};
    if (word.text.empty()) return std::nullopt;
    input_.Advance(word.text.size());
    // Editors put it before the text, and nobody sees it.
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (word.offset == 0 && word.text.size() > kByteOrderMark.size() &&
        word.text.starts_with(kByteOrderMark)) {
      word.text.erase(0, kByteOrderMark.size());
      word.written.erase(0, kByteOrderMark.size());
      word.offset += kByteOrderMark.size();
    }
    isComment_ = isComment_ || word.text[0] == '#';
    word.isComment = isComment_;
    startsLine_ = false;
    return word;
  }

  /// Goes to a place behind the mark.
  void GoTo(std::uint64_t offset) {
    input_.Rewind();
    input_.Advance(static_cast<std::size_t>(offset - mark_));
    startsLine_ = false;
  }
  void GoBehind(const FoundWord& word) { GoTo(word.offset + word.text.size()); }

private:
  TextInput& input_;
  std::uint64_t mark_;
  bool startsLine_ = false;
  bool isComment_ = false;
};

/// `text` behind `word` and one ':' or '=' that is glued to it; none when it is another word.
inline std::optional<std::string_view> GluedTo(std::string_view word, std::string_view text) {
  if (!text.starts_with(word) || text.size() == word.size()) return std::nullopt;
  const std::string_view behind = text.substr(word.size());
  if (behind[0] != ':' && behind[0] != '=') return std::nullopt;
  return BehindSigns(behind);
}

}  // namespace kestol
