#include "main/ErrorChannel.h"

#include <cstring>

ErrorChannel error;

ErrorChannel::ErrorChannel() : message(&buffer_) {}

void ErrorChannel::Clear() {
  buffer_.Clear();
  message.clear();
}

void ErrorChannel::FixedBuffer::Clear() {
  std::memset(text_, 0, sizeof text_);
  setp(text_, text_ + kCapacity - 1);
}

// A full buffer takes what comes and drops it: a message is cut, never lost.
ErrorChannel::FixedBuffer::int_type ErrorChannel::FixedBuffer::overflow(int_type c) {
  return traits_type::not_eof(c);
}

void HeapExhausted() {
  error.Clear();
  Fatal("Not space available on heap");
}
