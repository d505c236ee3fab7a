#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace kestol {

// Space divided into cells, to find what is near without asking everything.

/// What has no place, because a size or a sum of the model overflows, stands in cell 0.
inline std::int64_t CellIndex(double x, double cell) {
  constexpr double kMost = 4e18;
  const double index = std::floor(x / cell);
  return std::isnan(index) ? 0 : static_cast<std::int64_t>(std::clamp(index, -kMost, kMost));
}

/// One number for the three of a cell; far cells may share one.
inline std::uint64_t CellKey(std::int64_t i, std::int64_t j, std::int64_t k) {
  return (static_cast<std::uint64_t>(i) * 0x9E3779B97F4A7C15U) ^
         (static_cast<std::uint64_t>(j) * 0xC2B2AE3D27D4EB4FU) ^
         (static_cast<std::uint64_t>(k) * 0x165667B19E3779F9U);
}

}  // namespace kestol
