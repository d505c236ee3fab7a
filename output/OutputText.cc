#include "output/OutputText.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "main/ErrorChannel.h"

namespace kestol {

namespace {

/// Large enough that system calls do not count, small enough to stay in the second-level cache.
constexpr std::size_t kCapacity = 256 * 1024;

constexpr mode_t kMode = 0644;

}  // namespace

OutputText::OutputText(TextTaker taker)
    : capacity_(kCapacity),
      buffer_(new char[kCapacity]),
      cursor_(buffer_.get()),
      limit_(cursor_ + kCapacity),
      taker_(std::move(taker)) {}

OutputText::OutputText() : OutputText([this](std::string_view text) { memory_ += text; }) {}

OutputText::OutputText(const std::string& name) : OutputText(TextTaker()) {
  file_ = ::open(name.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, kMode);
  if (file_ == kNoFile) Fatal("can't open file ", name, "\n");
}

OutputText::~OutputText() {
  if (!taker_ && std::uncaught_exceptions() == exceptions_) HandOver(cursor_);
  if (file_ != kNoFile) ::close(file_);
}

void OutputText::Close() {
  HandOver(cursor_);
  if (file_ != kNoFile && ::close(file_) != 0) refused_ = true;
  file_ = kNoFile;
  RefuseAfterFailure();
}

void OutputText::RefuseAfterFailure() const {
  if (refused_) Fatal("error: Failed writing to disk. Probably the disk is full\n");
}

std::string OutputText::Text() const {
  return memory_ + std::string(buffer_.get(), cursor_);
}

void OutputText::HandOverLines() {
  const char* end = cursor_;
  while (end != buffer_.get() && end[-1] != '\n') --end;
  HandOver(end);
}

/// Only a line longer than the whole buffer makes it grow.
void OutputText::MakeRoom(std::size_t count) {
  HandOverLines();
  RefuseAfterFailure();  // what is still to come may take hours, and goes nowhere
  const auto begun = static_cast<std::size_t>(cursor_ - buffer_.get());
  if (capacity_ - begun >= count) return;
  capacity_ = std::max(2 * capacity_, begun + count);
  std::unique_ptr<char[]> larger(new char[capacity_]);
  std::memcpy(larger.get(), buffer_.get(), begun);
  buffer_ = std::move(larger);
  cursor_ = buffer_.get() + begun;
  limit_ = buffer_.get() + capacity_;
}

/// Gives what stands before `end` away; the rest moves to the front.
void OutputText::HandOver(const char* end) {
  const std::string_view text(buffer_.get(), static_cast<std::size_t>(end - buffer_.get()));
  if (taker_)
    taker_(text);
  else
    WriteToFile(text);
  const auto begun = static_cast<std::size_t>(cursor_ - end);
  std::memmove(buffer_.get(), end, begun);
  cursor_ = buffer_.get() + begun;
}

void OutputText::WriteToFile(std::string_view text) {
  while (!text.empty() && !refused_) {
    const ssize_t written = ::write(file_, text.data(), text.size());
    if (written > 0)
      text.remove_prefix(static_cast<std::size_t>(written));
    else if (written == 0 || errno != EINTR)
      refused_ = true;
  }
}

}  // namespace kestol
