#pragma once

#include <algorithm>
#include <cmath>
#include <ostream>

#include "algebra/Tolerances.h"
#include "algebra/Txolesky.h"
#include "output/InfoFile.h"

namespace kestol {

/// Algorithms as a textbook writes them down: the slow twins of what the program computes in
/// another order.
namespace reference {

/// K = U^T D U row by row, in place. Returns 0 or the first degree whose pivot failed.
inline int Txolesky(const Profile& K, std::ostream* info) {
  const auto firstRow = [&](int j) { return j - K.heights[j - 1] + 1; };
  const auto entry = [&](int i, int j) -> double& { return K.columns[j - 1][j - i]; };
  for (int i = 1; i <= K.n; ++i) {
    for (int j = i; j <= K.n; ++j) {
      if (j - i >= K.heights[j - 1]) continue;
      double s = 0.0;
      for (int k = std::max(firstRow(i), firstRow(j)); k < i; ++k)
        s += entry(k, k) * entry(k, i) * entry(k, j);
      entry(i, j) -= s;
      if (j != i) {
        entry(i, j) /= entry(i, i);
        continue;
      }
      if (i % 500 == 0) Progress(info, "Solving degree %i of %i\n", i, K.n);
      if (!(std::abs(entry(i, i)) >= kZero)) return i;
    }
  }
  return 0;
}

}  // namespace reference

}  // namespace kestol
