#pragma once

#include <cstdio>
#include <ostream>
#include <streambuf>

/// The one way out of a run that cannot go on: a message is composed on `message` and handed to
/// ErrorExit. The text lives in a fixed array, so that composing it needs no heap.
class ErrorChannel {
public:
  static constexpr int kCapacity = 2048;  ///< bytes of the buffer, the closing NUL included

  ErrorChannel();

  /// What was composed so far, NUL-terminated; cut after kCapacity - 1 characters.
  const char* Text() const { return buffer_.Text(); }

  /// Forgets what was composed.
  void Clear();

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
};

/// The program's error channel; ready before main begins.
extern ErrorChannel error;

/// Writes the composed text to the error file, or to standard output without one, and ends the
/// process with exit status 2. Test programs link a version that throws instead.
[[noreturn]] void ErrorExit(ErrorChannel& channel);

/// The same with exit status 1: the refusals of the sparse kernels.
[[noreturn]] void KernelExit(ErrorChannel& channel);

/// Composes the pieces on the program's error channel and ends the run through ErrorExit.
template <class... Pieces>
[[noreturn]] void Fatal(const Pieces&... pieces) {
  (error.message << ... << pieces);
  ErrorExit(error);
}

/// Ends the run with "Not space available on heap". The new-handler of the program; also called
/// for sizes that do not fit their field.
[[noreturn]] void HeapExhausted();
