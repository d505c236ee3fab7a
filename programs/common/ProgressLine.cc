#include "programs/common/ProgressLine.h"

#include <cstdio>

#include "programs/common/Messages.h"
#include "programs/common/Utf8.h"

namespace kestol {

namespace {

using std::chrono::milliseconds;
constexpr milliseconds kPatience{2000}, kPause{100};  ///< before the first line, between two
constexpr std::size_t kWidth = 78;

}  // namespace

ProgressLine::ProgressLine(bool quiet) : active_(!quiet && IsTerminal(stderr)), stream_(this) {}

ProgressLine::~ProgressLine() {
  Clear();
}

void ProgressLine::Show(std::string_view text) {
  if (!active_ || text.empty()) return;
  const Clock::time_point now = Clock::now();
  if (now - start_ < kPatience || now - last_ < kPause) return;
  last_ = now;
  const std::string cut = Harmless(text.substr(0, kWidth));
  std::fprintf(stderr, "\r%s\x1b[K", cut.c_str());
  std::fflush(stderr);
  shown_ = true;
}

void ProgressLine::Clear() {
  if (shown_) std::fputs("\r\x1b[K", stderr);
  shown_ = false;
}

ProgressLine::int_type ProgressLine::overflow(int_type c) {
  if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
  if (c == '\n') {
    Show(line_);
    line_.clear();
  } else {
    line_ += traits_type::to_char_type(c);
  }
  return c;
}

}  // namespace kestol
