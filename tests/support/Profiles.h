#pragma once

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "algebra/Txolesky.h"

namespace kestol {

// Profiles of matrices, and matrices on them, for the tests and timings of the factorisation.

/// A matrix on a profile of given heights, with storage of its own.
struct TestMatrix {
  explicit TestMatrix(std::vector<int> columnHeights)
      : heights(std::move(columnHeights)),
        entries(std::accumulate(heights.begin(), heights.end(), std::size_t{0})) {
    PointColumns();
  }
  TestMatrix(const TestMatrix& other) : heights(other.heights), entries(other.entries) {
    PointColumns();
  }
  TestMatrix& operator=(const TestMatrix&) = delete;

  Profile View() { return {static_cast<int>(heights.size()), heights.data(), columns.data()}; }
  double& Entry(int i, int j) { return columns[j - 1][j - i]; }  ///< i <= j, stored

  std::vector<double> Times(const std::vector<double>& x) {
    std::vector<double> product(x.size());
    for (std::size_t j = 0; j < heights.size(); ++j) {
      product[j] += columns[j][0] * x[j];
      for (int k = 1; k < heights[j]; ++k) {
        product[j] += columns[j][k] * x[j - k];
        product[j - k] += columns[j][k] * x[j];
      }
    }
    return product;
  }

  std::vector<int> heights;
  std::vector<double> entries;  ///< column after column
  std::vector<double*> columns;

private:
  void PointColumns() {
    double* next = entries.data();
    for (const int height : heights) {
      columns.push_back(next);
      next += height;
    }
  }
};

/// Off-diagonal entries between -1 and 1, a diagonal that outweighs them.
inline TestMatrix DominantMatrix(const std::vector<int>& heights) {
  TestMatrix K(heights);
  unsigned state = 1;  // of a short congruential sequence
  for (double& entry : K.entries) {
    state = state * 1664525u + 1013904223u;
    entry = (state >> 8) / 8388608.0 - 1.0;
  }
  const auto largest = *std::max_element(heights.begin(), heights.end());
  for (double* column : K.columns) column[0] = 2.5 * largest + column[0];
  return K;
}

inline std::vector<int> BandHeights(int n, int height) {
  std::vector<int> heights(n);
  for (int j = 0; j < n; ++j) heights[j] = std::min(j + 1, height);
  return heights;
}

inline std::vector<int> FullHeights(int n) {
  return BandHeights(n, n);
}

/// Heights anywhere between 1 and 2 mean - 1, one column independent of the next.
inline std::vector<int> RandomHeights(int n, int mean) {
  std::mt19937 generator(7);
  std::vector<int> heights(n);
  for (int j = 0; j < n; ++j)
    heights[j] = std::min(j + 1, 1 + static_cast<int>(generator() % (2u * mean - 1)));
  return heights;
}

/// The profile of a side x side grid of nodes, each coupled with its eight neighbours, numbered by
/// the distance from a corner: low at both ends, and different from node to node.
inline std::vector<int> WaveFrontHeights(int side, int dofsPerNode) {
  std::vector<int> order(side * side);
  std::iota(order.begin(), order.end(), 0);
  const auto distance = [&](int node) {
    return std::hypot(node % side, 1.001 * (node / side));  // no two alike
  };
  std::sort(order.begin(), order.end(), [&](int a, int b) { return distance(a) < distance(b); });
  std::vector<int> indexOf(order.size());
  for (int index = 0; index < side * side; ++index) indexOf[order[index]] = index;

  std::vector<int> heights;
  for (int index = 0; index < side * side; ++index) {
    const int x = order[index] % side;
    const int y = order[index] / side;
    int lowest = index;
    for (int v = std::max(y - 1, 0); v <= std::min(y + 1, side - 1); ++v)
      for (int u = std::max(x - 1, 0); u <= std::min(x + 1, side - 1); ++u)
        lowest = std::min(lowest, indexOf[v * side + u]);
    for (int d = 1; d <= dofsPerNode; ++d) heights.push_back((index - lowest) * dofsPerNode + d);
  }
  return heights;
}

/// Low columns with a full one at every 50th place.
inline std::vector<int> SpikedHeights(int n) {
  std::vector<int> heights = BandHeights(n, 5);
  for (int j = 49; j < n; j += 50) heights[j] = j + 1;
  return heights;
}

/// One of each kind, of sizes that cut the blocks in unequal pieces.
inline std::vector<std::pair<std::string, std::vector<int>>> ProfileKinds() {
  return {
      {"diagonal",         BandHeights(130,             1)},
      {"narrow band",                  BandHeights(300,                                 20)},
      {"band",               BandHeights(450,          160)},
      {"wide band",BandHeights(700,   430)},
      {"full",        FullHeights(421)                               },
      {"random, low",                  RandomHeights(500,                                        30)},
      {"random",                  RandomHeights(500,  130)},
      {"random, high",               RandomHeights(800,   400)},
      {"wave front",WaveFrontHeights(20,      3)},
      {"wave front of 6",     WaveFrontHeights(12, 6)},
      {"spiked",                  SpikedHeights(530)                                 },
  };
}

}  // namespace kestol
