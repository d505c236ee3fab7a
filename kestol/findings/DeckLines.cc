#include "kestol/findings/DeckLines.h"

#include <algorithm>
#include <cstring>

#include "input/Words.h"

namespace kestol {

namespace {

constexpr std::size_t kPiece = 1024 * 1024;

// What is kept of a line for a message: longer ones are cut.
constexpr std::size_t kLongestLine = 200;

std::size_t WordLength(std::string_view text) {
  std::size_t n = 0;
  while (n < text.size() && !IsSpace(static_cast<unsigned char>(text[n]))) ++n;
  return n;
}

}  // namespace

DeckLines::DeckLines(const SourceMap& map) {
  if (map.text.empty()) {
    file_.reset(std::fopen(map.file.c_str(), "r"));
  } else {
    text_ = map.text;
  }
}

// Drops nothing but what lies before the text in sight.
bool DeckLines::ReadMore() {
  if (!file_) return false;
  const std::size_t held = text_.size();
  if (held > 0) std::memmove(window_.data(), text_.data(), held);
  if (window_.size() < held + kPiece) window_.resize(held + kPiece);
  const std::size_t more = std::fread(window_.data() + held, 1, window_.size() - held, file_.get());
  if (more == 0) file_.reset();
  text_ = std::string_view(window_).substr(0, held + more);
  return more > 0;
}

std::string_view DeckLines::From(std::uint64_t offset, std::uint64_t end) {
  while (offset > base_ + text_.size()) {
    base_ += text_.size();
    text_ = {};
    if (!ReadMore()) return {};
  }
  text_.remove_prefix(static_cast<std::size_t>(offset - base_));
  base_ = offset;
  while (base_ + text_.size() < end && ReadMore()) {
  }
  std::size_t seen = end > offset ? static_cast<std::size_t>(end - offset) : 0;
  seen = std::min(seen, text_.size());
  for (;;) {
    const std::size_t lineEnd = text_.find('\n', seen);
    if (lineEnd != std::string_view::npos) return text_;
    seen = text_.size();
    if (!ReadMore()) return text_;
  }
}

namespace {

// A beginning of a line, and its number.
struct LineBegin {
  std::uint64_t offset = 0;
  long line = 1;
};

// Goes over whole pieces up to less than one before `offset`, so that no more is held.
void Approach(DeckLines& deck, LineBegin& here, std::uint64_t offset) {
  while (offset - here.offset > kPiece) {
    const std::string_view piece = deck.From(here.offset, here.offset + kPiece);
    const std::size_t end = piece.substr(0, kPiece).rfind('\n');
    if (end == std::string_view::npos) return;
    here.line +=
        std::count(piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(end) + 1, '\n');
    here.offset += end + 1;
  }
}

}  // namespace

void PlaceFindings(const SourceMap& map, std::vector<Finding>& findings) {
  DeckLines deck(map);
  LineBegin here;
  for (Finding& finding : findings) {
    if (finding.offset == Finding::kNowhere) break;
    Approach(deck, here, finding.offset);
    auto& [lineBegin, line] = here;
    const std::string_view text = deck.From(lineBegin, finding.offset);
    const auto place = static_cast<std::size_t>(finding.offset - lineBegin);
    const std::string_view before = text.substr(0, place);
    line += std::count(before.begin(), before.end(), '\n');
    const std::size_t lastEnd = before.rfind('\n');
    const std::size_t begin = lastEnd == std::string_view::npos ? 0 : lastEnd + 1;
    const std::string_view source = text.substr(begin, text.find('\n', place) - begin);
    finding.line = line;
    finding.column = static_cast<long>(place - begin) + 1;
    const std::string_view word = source.substr(std::min(place - begin, source.size()));
    const std::size_t length = finding.length > 0 ? finding.length : WordLength(word);
    finding.endColumn = finding.column + static_cast<long>(std::max<std::size_t>(length, 1));
    finding.sourceLine = source.substr(0, kLongestLine);
    if (!finding.sourceLine.empty() && finding.sourceLine.back() == '\r')
      finding.sourceLine.pop_back();
    lineBegin += begin;
  }
}

}  // namespace kestol
