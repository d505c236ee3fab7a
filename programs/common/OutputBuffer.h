#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace kestol {

/// Most characters of a number in WriteShortest.
constexpr std::size_t kShortestLength = 32;

/// The shortest text that reads back to the same double, at `to`; gives the place behind it.
char* WriteShortest(char* to, double value);
char* WriteShortest(char* to, std::int64_t value);

/// Bytes on their way out, gathered in a buffer. Formatters write straight into it:
///
///     |<---- written ---->|<------- room ------->|
///     buffer_             cursor_                limit_
class OutputBuffer {
public:
  OutputBuffer();
  virtual ~OutputBuffer() = default;
  OutputBuffer(const OutputBuffer&) = delete;
  OutputBuffer& operator=(const OutputBuffer&) = delete;

  OutputBuffer& operator<<(std::string_view text) {
    Write(text.data(), text.size());
    return *this;
  }
  OutputBuffer& operator<<(char c) {
    *Room(1) = c;
    Advance(cursor_ + 1);
    return *this;
  }
  OutputBuffer& operator<<(double value) {
    Advance(WriteShortest(Room(kShortestLength), value));
    return *this;
  }
  OutputBuffer& operator<<(std::int64_t value) {
    Advance(WriteShortest(Room(kShortestLength), value));
    return *this;
  }
  OutputBuffer& operator<<(int value) { return *this << std::int64_t{value}; }

  /// Bytes as they are; large blocks go out without a copy.
  void Write(const void* data, std::size_t size) {
    if (static_cast<std::size_t>(limit_ - cursor_) < size) return WriteLarge(data, size);
    std::memcpy(cursor_, data, size);
    cursor_ += size;
  }
  /// `size` bytes of 0; long runs of a file become holes of it.
  void WriteZeros(std::size_t size);

  /// Where the next `size` (at most kLargestRoom) bytes may be written; Advance takes them in.
  char* Room(std::size_t size) {
    if (static_cast<std::size_t>(limit_ - cursor_) < size) Flush();
    return cursor_;
  }
  void Advance(char* end) { cursor_ = end; }

  /// Hands everything over that was gathered.
  void Flush();

  static constexpr std::size_t kLargestRoom = 256 * 1024;

protected:
  /// For an output that is at its end.
  void FreeBuffer();

private:
  virtual void HandOver(const char* data, std::size_t size) = 0;
  /// Skips `size` bytes that read as 0; false when this output cannot.
  virtual bool SkipZeros(std::size_t /*size*/) { return false; }
  void WriteLarge(const void* data, std::size_t size);

  std::unique_ptr<char[]> buffer_;
  char* cursor_;
  char* limit_;
};

/// Output gathered in memory.
class OutputString final : public OutputBuffer {
public:
  /// Everything written so far; the string may be moved out.
  std::string& Text() {
    Flush();
    return text_;
  }

private:
  void HandOver(const char* data, std::size_t size) override { text_.append(data, size); }
  std::string text_;
};

/// Hands texts to `output`, which must outlive it.
inline std::function<void(std::string_view)> TakerOf(OutputBuffer& output) {
  return [&output](std::string_view text) { output << text; };
}

}  // namespace kestol
