#include "kestol/mechanisms/VectorSpace.h"

#include <cmath>
#include <numeric>

namespace kestol {

// Partial sums do not wait for each other.
double DotOf(const ReaVecT& a, const ReaVecT& b) {
  constexpr int kSums = 8;
  double sums[kSums] = {};
  const double* const x = a.begin();
  const double* const y = b.begin();
  int i = 0;
  for (; i + kSums <= a.n; i += kSums)
    for (int k = 0; k < kSums; ++k) sums[k] += x[i + k] * y[i + k];
  for (; i < a.n; ++i) sums[0] += x[i] * y[i];
  return std::accumulate(sums, sums + kSums, 0.0);
}

double LengthOf(const ReaVecT& x) {
  return std::sqrt(DotOf(x, x));
}

void AddTo(ReaVecT& y, double factor, const ReaVecT& x) {
  double* const sum = y.begin();
  const double* const entries = x.begin();
  for (int i = 0; i < y.n; ++i) sum[i] += factor * entries[i];
}

void TakeOut(ReaVecT& x, std::span<const ReaVecT> basis) {
  for (const ReaVecT& direction : basis) AddTo(x, -DotOf(x, direction), direction);
}

}  // namespace kestol
