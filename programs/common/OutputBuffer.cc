#include "programs/common/OutputBuffer.h"

#include <algorithm>
#include <charconv>

namespace kestol {

char* WriteShortest(char* to, double value) {
  return std::to_chars(to, to + kShortestLength, value).ptr;
}

char* WriteShortest(char* to, std::int64_t value) {
  return std::to_chars(to, to + kShortestLength, value).ptr;
}

OutputBuffer::OutputBuffer()
    : buffer_(new char[kLargestRoom]), cursor_(buffer_.get()), limit_(cursor_ + kLargestRoom) {}

void OutputBuffer::WriteLarge(const void* data, std::size_t size) {
  Flush();
  if (size >= kLargestRoom) return HandOver(static_cast<const char*>(data), size);
  std::memcpy(cursor_, data, size);
  cursor_ += size;
}

void OutputBuffer::WriteZeros(std::size_t size) {
  constexpr std::size_t kWorthAHole = 64 * 1024;
  if (size >= kWorthAHole) {
    Flush();
    if (SkipZeros(size)) return;
  }
  while (size > 0) {
    const std::size_t part = std::min(size, kLargestRoom);
    char* const to = Room(part);
    std::memset(to, 0, part);
    Advance(to + part);
    size -= part;
  }
}

void OutputBuffer::FreeBuffer() {
  buffer_.reset();
  cursor_ = limit_ = nullptr;
}

void OutputBuffer::Flush() {
  const auto size = static_cast<std::size_t>(cursor_ - buffer_.get());
  cursor_ = buffer_.get();
  if (size > 0) HandOver(buffer_.get(), size);
}

}  // namespace kestol
