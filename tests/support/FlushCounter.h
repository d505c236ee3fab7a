#pragma once

#include <ostream>
#include <sstream>
#include <string>

namespace kestol {

/// A stream that keeps its text and counts its flushes.
class FlushCounter : public std::ostream {
public:
  FlushCounter() : std::ostream(&buffer_) {}
  std::string Text() const { return buffer_.str(); }
  int Flushes() const { return buffer_.flushes; }

private:
  struct Buffer : std::stringbuf {
    int sync() override { return ++flushes, 0; }
    int flushes = 0;
  };
  Buffer buffer_;
};

}  // namespace kestol
