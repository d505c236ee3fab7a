#pragma once

#include <cstdint>
#include <vector>

#include "programs/common/JsonWriter.h"

namespace kestol {

/// Rising indices as pairs (first, how many): what many nodes or elements share takes little room.
class Runs {
public:
  void Add(std::int64_t index) {
    if (!pairs_.empty() && index == pairs_[pairs_.size() - 2] + pairs_.back()) {
      ++pairs_.back();
    } else {
      pairs_.push_back(index);
      pairs_.push_back(1);
    }
  }
  const std::vector<std::int64_t>& Pairs() const { return pairs_; }

private:
  std::vector<std::int64_t> pairs_;
};

inline void WriteRuns(JsonWriter& json, const Runs& runs) {
  json.Key("runs").BeginArray();
  for (const std::int64_t value : runs.Pairs()) json.Value(value);
  json.EndArray();
}

}  // namespace kestol
