#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "output/NumberText.h"

namespace kestol {

/// Takes a text piece by piece.
using TextTaker = std::function<void(std::string_view)>;

/// A result file. While it grows, text is handed over in pieces that end at a line end, so that a
/// reader never sees half a line; a flush after each line would promise the same and cost more than
/// the whole run. Only a full disk leaves a line cut, and only the end of the object hands over one
/// that was begun and not ended.
///
/// Reals come in the two forms of the reports: the default form (printf's %g, six significant
/// digits) and vector form (two blanks, then %13.6e).
///
///     |<-------- whole lines -------->|<- begun line ->|<------- room ------->|
///     buffer_                                          cursor_                limit_
class OutputText {
public:
  /// Creates or truncates the file (mode 0644 under the umask); ends the run with
  /// "can't open file " name "\n" when it cannot.
  explicit OutputText(const std::string& name);
  /// Gives the text to `taker`, whose refusals pass through.
  explicit OutputText(TextTaker taker);
  /// Gathers the text in memory; for tests.
  OutputText();
  /// What was written before an end without Close stays in the file; of a refusal that passes
  /// through, only what was handed over before. A taker gets nothing more.
  ~OutputText();
  OutputText(const OutputText&) = delete;
  OutputText& operator=(const OutputText&) = delete;

  OutputText& operator<<(std::string_view text) {
    char* const to = Room(text.size());
    std::memcpy(to, text.data(), text.size());
    return Advance(to + text.size());
  }
  OutputText& operator<<(char c) {
    char* const to = Room(1);
    *to = c;
    return Advance(to + 1);
  }
  OutputText& operator<<(int value) { return *this << std::int64_t{value}; }
  OutputText& operator<<(std::int64_t value) {
    return Advance(WriteInteger(Room(kNumberLength), value));
  }
  OutputText& operator<<(double value) {  ///< default form
    return Advance(WriteDefault(Room(kNumberLength), value));
  }

  /// "  " and the value in scientific notation, at least 13 characters wide.
  OutputText& Vector(double value) { return Advance(WriteVectorForm(Room(kNumberLength), value)); }

  /// Where the next `count` characters may be written; Advance then takes them in. For writers of
  /// many lines.
  char* Room(std::size_t count) {
    if (static_cast<std::size_t>(limit_ - cursor_) < count) MakeRoom(count);
    return cursor_;
  }
  OutputText& Advance(char* end) {
    cursor_ = end;
    return *this;
  }

  /// Hands the whole lines over that were written so far: call it before an error ends the run.
  void HandOverLines();

  /// Hands everything over and closes the file.
  void Close();

  /// Everything written so far; only without a file.
  std::string Text() const;

private:
  /// Ends the run with "error: Failed writing to disk. Probably the disk is full\n" when the disk
  /// refused a part: as soon as more room is asked for, at Close at the latest.
  void RefuseAfterFailure() const;
  void MakeRoom(std::size_t count);
  void HandOver(const char* end);
  void WriteToFile(std::string_view text);

  static constexpr int kNoFile = -1;

  std::size_t capacity_;
  std::unique_ptr<char[]> buffer_;
  char* cursor_;
  char* limit_;
  int file_ = kNoFile;
  TextTaker taker_;       ///< none: a file
  bool refused_ = false;  ///< the disk took less than it was given; the rest is dropped
  std::string memory_;
  int exceptions_ = std::uncaught_exceptions();  ///< on their way when this was made
};

}  // namespace kestol
