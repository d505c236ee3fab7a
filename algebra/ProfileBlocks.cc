#include "algebra/ProfileBlocks.h"

#include <algorithm>
#include <cassert>
#include <numeric>

namespace kestol {

namespace {

constexpr int kRows = kTileRows;
constexpr int kWidth = kTileColumns;

/// Columns that are loaded at a time: one cache line of a sliver's row.
constexpr int kLanes = 8;

/// Mean heights from which blocks of two and of four tiles are faster than narrower ones, as
/// measured.
constexpr double kHighForTwo = 100, kHighForFour = 250;

/// Wide blocks read U less often and bring more columns of similar reach together, narrow ones
/// waste less on zeros above low columns. In the mean the heights count by the work in them, which
/// grows with their squares, so that a few high columns among many low ones decide.
int BlockSize(const Profile& K) {
  double sum = 0.0;
  double squares = 0.0;
  for (int j = 0; j < K.n; ++j) {
    sum += K.heights[j];
    squares += static_cast<double>(K.heights[j]) * K.heights[j];
  }
  if (squares < kHighForTwo * sum) return kWidth;
  return squares < kHighForFour * sum ? 2 * kWidth : 4 * kWidth;
}

}  // namespace

ProfileBlocks::ProfileBlocks(const Profile& profile)
    : K(profile),
      size(BlockSize(K)),
      count((K.n + size - 1) / size),
      natural(static_cast<std::size_t>(count) * size),
      padded_(static_cast<std::size_t>(kRows) * kMostRows) {
  std::iota(natural.begin(), natural.end(), 0);
  top = natural;
  for (int j = 0; j < K.n; ++j) top[j] = j - K.heights[j] + 1;
  byTop = natural;
  for (auto begin = byTop.begin(); begin != byTop.end(); begin += size)
    std::stable_sort(begin, begin + size, [&](int i, int j) { return top[i] < top[j]; });
}

void ProfileBlocks::PointTo(const int* group, int first, int last, const double** a) {
  assert(last - first <= kMostRows);
  for (int r = 0; r < kRows; ++r) {
    const int j = group[r];
    if (top[j] <= first) {
      a[r] = K.columns[j] + (j - last + 1);
      continue;
    }
    double* const copy = &padded_[static_cast<std::size_t>(r) * kMostRows];
    const int stored = std::max(0, last - top[j]);
    if (stored > 0) std::copy_n(K.columns[j] + (j - last + 1), stored, copy);
    std::fill(copy + stored, copy + (last - first), 0.0);
    a[r] = copy;
  }
}

void ProfileBlocks::Load(const Sliver& sliver, int begin) const {
  for (int lane = 0; lane < kWidth; lane += kLanes)
    LoadLanes(sliver.columns + lane, begin, sliver.Row(begin) + lane);
}

void ProfileBlocks::LoadLanes(const int* lanes, int begin, double* to) const {
  const int end = begin + size;
  const double* from[kLanes] = {};  // row `end` of each column; the rows before it follow upwards
  for (int lane = 0; lane < kLanes; ++lane) {
    const int j = lanes[lane];
    if (top[j] < end) from[lane] = K.columns[j] + (j - end);
  }
  const int whole = std::clamp(top[lanes[kLanes - 1]], begin, end);  // from here on all are stored
  for (int i = begin; i < whole; ++i, to += kWidth)
    for (int lane = 0; lane < kLanes; ++lane)
      to[lane] = i < top[lanes[lane]] ? 0.0 : from[lane][end - i];
  for (int i = whole; i < end; ++i, to += kWidth)
    for (int lane = 0; lane < kLanes; ++lane) to[lane] = from[lane][end - i];
}

void ProfileBlocks::Store(const Sliver& sliver, int row, const double* tile) const {
  for (int lane = 0; lane < kWidth; ++lane) {
    const int j = sliver.columns[lane];
    if (j >= row + kRows && top[j] < row + kRows) StoreColumn(j, row, tile + lane);
  }
}

void ProfileBlocks::StoreColumn(int j, int row, const double* from) const {
  double* const last = K.columns[j] + (j - row - kRows + 1);
  const int missing = top[j] - row;
  if (missing <= 0)  // nearly always; a loop of known length is laid out flat
    for (int r = 0; r < kRows; ++r) last[kRows - 1 - r] = from[kWidth * r];
  else
    for (int r = missing; r < kRows; ++r) last[kRows - 1 - r] = from[kWidth * r];
}

}  // namespace kestol
