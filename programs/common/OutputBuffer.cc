#include "programs/common/OutputBuffer.h"

#include <charconv>
#include <cstring>

namespace kestol {

char* WriteShortest(char* to, double value) {
  return std::to_chars(to, to + kShortestLength, value).ptr;
}

char* WriteShortest(char* to, std::int64_t value) {
  return std::to_chars(to, to + kShortestLength, value).ptr;
}

OutputBuffer::OutputBuffer()
    : buffer_(new char[kLargestRoom]), cursor_(buffer_.get()), limit_(cursor_ + kLargestRoom) {}

void OutputBuffer::Write(const void* data, std::size_t size) {
  if (static_cast<std::size_t>(limit_ - cursor_) < size) {
    Flush();
    if (size >= kLargestRoom) return HandOver(static_cast<const char*>(data), size);
  }
  std::memcpy(cursor_, data, size);
  cursor_ += size;
}

void OutputBuffer::Flush() {
  const auto size = static_cast<std::size_t>(cursor_ - buffer_.get());
  cursor_ = buffer_.get();
  if (size > 0) HandOver(buffer_.get(), size);
}

}  // namespace kestol
