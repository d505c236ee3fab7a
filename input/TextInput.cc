#include "input/TextInput.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "input/Words.h"

namespace kestol {

namespace {

constexpr std::size_t kWindow = 64 * 1024;

}  // namespace

TextInput::TextInput(std::FILE* file) : file_(file) {
  if (file_) {
    std::setvbuf(file_.get(), nullptr, _IONBF, 0);  // the window is the only buffer
    window_.resize(kWindow);
  }
  here_ = end_ = window_.data();
}

TextInput::TextInput(std::string text)
    : window_(std::move(text)), here_(window_.data()), end_(here_ + window_.size()) {}

// Brings the unread text, and what is marked before it, to the front of the window and reads more
// behind it, until `wanted` characters are in sight or the text ends. A read error is the end of
// the text.
bool TextInput::Refill(std::size_t wanted) {
  const char* const first = mark_ == kNowhere ? here_ : AtMark();
  const std::size_t before = static_cast<std::size_t>(here_ - first);
  std::size_t held = static_cast<std::size_t>(end_ - first);
  wanted += before;
  if (file_ && held < wanted) {
    base_ += static_cast<std::size_t>(first - window_.data());
    std::memmove(window_.data(), first, held);
    if (2 * wanted > window_.size()) window_.resize(std::max(2 * wanted, 2 * window_.size()));
    while (file_ && held < wanted) {
      const std::size_t more =
          std::fread(window_.data() + held, 1, window_.size() - held, file_.get());
      held += more;
      if (more == 0) file_.reset();
    }
    here_ = window_.data() + before;
    end_ = window_.data() + held;
  }
  return held >= wanted;
}

std::string_view TextInput::TakenSinceMark() const {
  return {AtMark(), static_cast<std::size_t>(here_ - AtMark())};
}

void TextInput::Rewind() {
  here_ = AtMark();
}

std::string_view TextInput::PeekWord() {
  std::size_t length = 0;
  do {
    const std::string_view text(here_, static_cast<std::size_t>(end_ - here_));
    while (length < text.size() && !IsSpace(static_cast<unsigned char>(text[length]))) ++length;
    if (length < text.size()) break;
  } while (Refill(length + 1));
  return {here_, length};
}

std::string_view TextInput::PeekLine() {
  std::size_t length = 0;
  do {
    const std::string_view text(here_, static_cast<std::size_t>(end_ - here_));
    length = std::min(text.find('\n', length), text.size());
    if (length < text.size()) break;
  } while (Refill(length + 1));
  return {here_, length};
}

std::string_view TextInput::PeekAhead(std::size_t wanted) {
  Refill(wanted);
  return {here_, static_cast<std::size_t>(end_ - here_)};
}

}  // namespace kestol
