#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <map>
#include <unordered_map>
#include <vector>

#include "algebra/Vector3.h"
#include "kestol/findings/CellGrid.h"

namespace kestol {

/// Segments in space, found by where they are: a grid of cells for each size of segment, so that
/// one that is a million times as long as the others costs no more than they do. Sizes double from
/// grid to grid; a segment is in the few cells that its box touches.
class SegmentGrid {
public:
  /// `near` is how far apart two things may be to be found.
  explicit SegmentGrid(double near) : near_(near) {}

  /// Lengths are finite and above 0.
  void Add(std::size_t segment, const Vector3& a, const Vector3& b) {
    const int level = LevelOf(Norm(Minus(b, a)));
    auto& cells = levels_[level];
    ForEachCell(level, a, b, [&](std::uint64_t key) { cells[key].push_back(segment); });
  }

  /// Calls look(i) for the segments of the size of a to b and of larger ones that may come near to
  /// it; for some of them more than once. A point has them all.
  template <class Look>
  void ForEachAround(const Vector3& a, const Vector3& b, Look look) const {
    const double length = Norm(Minus(b, a));
    const auto first = length > 0.0 ? levels_.lower_bound(LevelOf(length)) : levels_.begin();
    for (auto level = first; level != levels_.end(); ++level)
      ForEachCell(level->first, a, b, [&](std::uint64_t key) {
        const auto found = level->second.find(key);
        if (found == level->second.end()) return;
        for (const std::size_t i : found->second) look(i);
      });
  }

  /// Segments of one level are as long as a cell of it at most, and longer than half of it.
  static int LevelOf(double length) { return std::ilogb(length) + 1; }

private:
  template <class Action>
  void ForEachCell(int level, const Vector3& a, const Vector3& b, Action action) const {
    const double cell = std::max(std::ldexp(1.0, level), near_);
    std::array<std::array<std::int64_t, 2>, 3> range{};
    for (int i = 0; i < 3; ++i)
      range[i] = {CellIndex(std::min(a[i], b[i]) - near_, cell),
                  CellIndex(std::max(a[i], b[i]) + near_, cell)};
    for (std::int64_t i = range[0][0]; i <= range[0][1]; ++i)
      for (std::int64_t j = range[1][0]; j <= range[1][1]; ++j)
        for (std::int64_t k = range[2][0]; k <= range[2][1]; ++k) action(CellKey(i, j, k));
  }

  double near_;
  std::map<int, std::unordered_map<std::uint64_t, std::vector<std::size_t>>> levels_;
};

}  // namespace kestol
