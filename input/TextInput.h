#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

namespace kestol {

/// The characters of a deck, with one character to look ahead. Reads through a window that grows
/// only for words and lines longer than itself, so that a long deck costs little memory.
class TextInput {
public:
  static constexpr int kEnd = -1;  ///< what Peek and Get give behind the last character

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

private:
  bool Refill(std::size_t wanted);

  struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  std::unique_ptr<std::FILE, CloseFile> file_;
  std::string window_;
  const char* here_ = nullptr;
  const char* end_ = nullptr;
};

}  // namespace kestol
