#pragma once

#include <cmath>
#include <span>
#include <string_view>

#include "programs/common/OutputBuffer.h"

namespace kestol {

/// One table of comma-separated values: a header, then rows. Numbers are the shortest text that
/// reads back to the same double; what is not finite leaves its field empty. Fields are quoted
/// where they must be. Texts become valid UTF-8, whatever bytes they hold.
class CsvWriter {
public:
  explicit CsvWriter(OutputBuffer& output) : output_(output) {}

  CsvWriter& Field(double value) {
    Separate();
    if (std::isfinite(value)) output_ << value;
    return *this;
  }
  CsvWriter& Field(int value) {
    Separate();
    output_ << value;
    return *this;
  }
  CsvWriter& Field(std::string_view text);
  CsvWriter& Fields(std::span<const double> values) {
    for (const double value : values) Field(value);
    return *this;
  }
  void EndRow() {
    output_ << '\n';
    first_ = true;
  }

private:
  void Separate() {
    if (!first_) output_ << ',';
    first_ = false;
  }

  OutputBuffer& output_;
  bool first_ = true;
};

}  // namespace kestol
