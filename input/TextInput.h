#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

#include "input/ReadOnlyFile.h"

namespace kestol {

/// The characters of a deck, with one character to look ahead. Reads through a window that grows
/// only for words and lines longer than itself, and for what is marked, so that a long deck costs
/// little memory.
class TextInput {
public:
  static constexpr int kEnd = -1;  ///< what Peek and Get give behind the last character
  static constexpr std::uint64_t kNowhere = ~std::uint64_t{0};  ///< the offset of no place

  /// Takes over an open file; null or unreadable is an empty text.
  explicit TextInput(std::FILE* file);
  /// Reads from a text in memory.
  explicit TextInput(std::string text);
  TextInput(const TextInput&) = delete;
  TextInput& operator=(const TextInput&) = delete;

  /// The next character as an unsigned char value, not taken; kEnd at the end.
  int Peek() { return here_ < end_ || Refill(1) ? static_cast<unsigned char>(*here_) : kEnd; }
  /// Takes the next character; kEnd at the end, as often as asked.
  int Get() { return here_ < end_ || Refill(1) ? static_cast<unsigned char>(*here_++) : kEnd; }

  /// The next run of characters other than white space, without taking it; empty when the next
  /// character is white space or the end. Valid until the next call on this object.
  std::string_view PeekWord();
  /// What is left of the current line without its '\n', without taking it. Valid until the next
  /// call on this object.
  std::string_view PeekLine();
  /// The text in sight, at least `wanted` characters of it unless the whole text ends before.
  /// Valid until the next call on this object.
  std::string_view PeekAhead(std::size_t wanted);
  /// Takes `count` characters of those just seen.
  void Advance(std::size_t count) { here_ += count; }

  // --- places ---------------------------------------------------------------------------------
  /// Characters of the text before the next one.
  std::uint64_t Offset() const { return base_ + static_cast<std::size_t>(here_ - window_.data()); }

  /// Says that what is refused from now on stands in the record that begins here, or at `offset`.
  void BeginRecord() { record_ = Offset(); }
  void BeginRecord(std::uint64_t offset) { record_ = offset; }
  /// Where the current record begins.
  std::uint64_t RecordOffset() const { return record_; }

  /// Keeps what comes from here on in the window, until the next mark or Unmark.
  void Mark() { mark_ = Offset(); }
  void Unmark() { mark_ = kNowhere; }
  /// What was taken since the mark. Valid until the next call on this object.
  std::string_view TakenSinceMark() const;
  /// Goes back to the mark.
  void Rewind();

private:
  bool Refill(std::size_t wanted);
  const char* AtMark() const { return window_.data() + (mark_ - base_); }

  ReadOnlyFile file_;
  std::string window_;
  const char* here_ = nullptr;
  const char* end_ = nullptr;
  std::uint64_t base_ = 0;  ///< characters before the window
  std::uint64_t record_ = 0;
  std::uint64_t mark_ = kNowhere;
};

}  // namespace kestol
