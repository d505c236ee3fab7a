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
  if (!file_) return;
  std::setvbuf(file_.get(), nullptr, _IONBF, 0);  // the window is the only buffer
  window_.resize(kWindow);
  here_ = end_ = window_.data();
}

TextInput::TextInput(std::string text)
    : window_(std::move(text)), here_(window_.data()), end_(here_ + window_.size()) {}

// Brings the unread text to the front of the window and reads more behind it, until `wanted`
// characters are in sight or the text ends. A read error is the end of the text.
bool TextInput::Refill(std::size_t wanted) {
  std::size_t inSight = static_cast<std::size_t>(end_ - here_);
  if (file_ && inSight < wanted) {
    std::memmove(window_.data(), here_, inSight);
    if (2 * wanted > window_.size()) window_.resize(std::max(2 * wanted, 2 * window_.size()));
    while (file_ && inSight < wanted) {
      const std::size_t more =
          std::fread(window_.data() + inSight, 1, window_.size() - inSight, file_.get());
      inSight += more;
      if (more == 0) file_.reset();
    }
    here_ = window_.data();
    end_ = here_ + inSight;
  }
  return inSight >= wanted;
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
