#pragma once

#include <string_view>

#include "input/Units.h"
#include "input/Words.h"

namespace kestol {

/// The key and value pairs behind the numbers of a line of constraints or loads, one after the
/// other. Units keys are dealt with here: they change `factors` and are not handed out.
class LinePairs {
public:
  LinePairs(std::string_view text, const Units& units)
      : factors(DefaultFactors(units)), text_(text), units_(units) {}

  /// Takes the next pair; false at the end of the line, and at a key without a value.
  bool Next() {
    while (TakePair()) {
      if (!IsUnitsKey(key)) return true;
      text_ = behindKey_;  // a unit name has its own rule for what may stand before it
      factors = TakeUnits(units_, text_);
    }
    return false;
  }

  /// Whether the line ended behind a key.
  bool KeyWithoutValue() const { return !key.empty() && value.empty(); }

  std::string_view key, value;
  UnitFactors factors;  ///< of the last units key so far

private:
  bool TakePair() {
    key = TakeKey(text_);
    behindKey_ = text_;
    value = TakeValue(text_);
    return !key.empty() && !value.empty();
  }

  std::string_view text_, behindKey_;
  const Units& units_;
};

}  // namespace kestol
