#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "input/ReadOnlyFile.h"
#include "input/SourceMap.h"
#include "kestol/findings/Finding.h"

namespace kestol {

/// The text of a deck, read once more from front to back.
class DeckLines {
public:
  explicit DeckLines(const SourceMap& map);

  /// The text from `offset` on, at least up to the end of its line; with `end` up to there.
  /// Offsets must not go back. Valid until the next call.
  std::string_view From(std::uint64_t offset, std::uint64_t end = 0);

private:
  bool ReadMore();

  ReadOnlyFile file_;  // null: the text is in memory, or ended
  std::string window_;
  std::string_view text_;   // what is in sight
  std::uint64_t base_ = 0;  // offset of its first character
};

/// Gives the findings, which are ordered by their offsets, their lines, columns and source lines.
void PlaceFindings(const SourceMap& map, std::vector<Finding>& findings);

}  // namespace kestol
