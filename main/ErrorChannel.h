#pragma once

#include <cstdio>
#include <exception>
#include <ostream>
#include <streambuf>
#include <string_view>

namespace kestol {

/// Where the message of a refusal is composed. The text lives in a fixed array, so that composing
/// it needs no heap.
class ErrorChannel {
public:
  static constexpr int kCapacity = 2048;  ///< bytes of the buffer, the closing NUL included

  ErrorChannel();

  /// What was composed so far, NUL-terminated; cut after kCapacity - 1 characters.
  const char* Text() const { return buffer_.Text(); }

  /// Forgets what was composed, and the place.
  void Clear();

  /// Where the refused record begins: the name of the deck and the line, from 1. A name that is
  /// longer than kCapacity - 1 characters is cut.
  void SetPlace(std::string_view deck, long lineNumber);

private:
  class FixedBuffer : public std::streambuf {
  public:
    FixedBuffer() { Clear(); }
    void Clear();
    const char* Text() const { return text_; }

  private:
    int_type overflow(int_type c) override;
    char text_[kCapacity];
  };
  FixedBuffer buffer_;

public:
  std::FILE* file = nullptr;  ///< where ErrorExit writes; null means standard output
  std::ostream message;       ///< composes the text
  char deck[kCapacity] = "";  ///< file of the refused record; empty when unknown
  long line = 0;              ///< its line, from 1; 0 when unknown
};

/// The program's error channel; ready before main begins.
extern ErrorChannel error;

/// A refusal on its way to whoever answers for the run: the program's `main` ends with it, a user
/// of the library catches it. It holds no heap; what it says stands on the channel until that is
/// cleared, which every call of the public interface does when it begins.
class FatalError : public std::exception {
public:
  /// `exitStatus` is what a program that gives up over this refusal ends with.
  FatalError(const ErrorChannel& channel, int exitStatus)
      : channel_(&channel), status_(exitStatus) {}

  /// The whole message, as the program prints it: most texts end with a line end.
  const char* what() const noexcept override { return channel_->Text(); }
  /// The deck and the line (from 1) of the refused record; "" and 0 when it is not known.
  const char* File() const { return channel_->deck; }
  long Line() const { return channel_->line; }
  int Status() const { return status_; }
  std::FILE* ErrorFile() const { return channel_->file; }

private:
  const ErrorChannel* channel_;
  int status_;
};

/// The words of a refusal alone: most texts begin with "error: ", and have line ends around them.
std::string_view PlainWords(std::string_view text);

/// Exit status after a refusal, and after one of the sparse kernels.
constexpr int kRefused = 2, kKernelRefused = 1;

/// Composes the pieces on the program's error channel and throws FatalError.
template <class... Pieces>
[[noreturn]] void Fatal(const Pieces&... pieces) {
  (error.message << ... << pieces);
  throw FatalError(error, kRefused);
}

/// Writes the text to the error file, or to standard output without one, and ends the process with
/// the status of the refusal. Only `main` calls it.
[[noreturn]] void ErrorExit(const FatalError& refusal);

/// Ends the process with "Not space available on heap" and status 2; for `main`, in answer to
/// std::bad_alloc and std::length_error.
[[noreturn]] void HeapExit();

}  // namespace kestol
