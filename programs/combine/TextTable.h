#pragma once

#include <string>
#include <vector>

#include "programs/common/OutputBuffer.h"
#include "programs/common/Utf8.h"

namespace kestol {

/// A table for people: columns as wide as their widest text, two blanks between them. Names go
/// to a terminal: what could drive it becomes '?'.
class TextTable {
public:
  TextTable& Row() {
    rows_.emplace_back();
    return *this;
  }
  /// The next cell of the row, at the left or the right of its column.
  TextTable& Left(const std::string& text) { return Add(text, false); }
  TextTable& Right(const std::string& text) { return Add(text, true); }

  void Write(OutputBuffer& output) const;

private:
  struct Cell {
    std::string text;
    bool right;
  };
  TextTable& Add(const std::string& text, bool right) {
    rows_.back().push_back({HarmlessWords(text), right});
    return *this;
  }

  std::vector<std::vector<Cell>> rows_;
};

}  // namespace kestol
