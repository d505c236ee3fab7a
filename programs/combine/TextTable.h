#pragma once

#include <string>
#include <vector>

#include "programs/common/OutputBuffer.h"

namespace kestol {

/// A table for people: columns as wide as their widest text, two blanks between them.
class TextTable {
public:
  TextTable& Row() {
    rows_.emplace_back();
    return *this;
  }
  /// The next cell of the row, at the left or the right of its column.
  TextTable& Left(std::string text) { return Add(std::move(text), false); }
  TextTable& Right(std::string text) { return Add(std::move(text), true); }

  void Write(OutputBuffer& output) const;

private:
  struct Cell {
    std::string text;
    bool right;
  };
  TextTable& Add(std::string text, bool right) {
    rows_.back().push_back({std::move(text), right});
    return *this;
  }

  std::vector<std::vector<Cell>> rows_;
};

}  // namespace kestol
