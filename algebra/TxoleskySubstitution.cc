#include <algorithm>
#include <cstring>
#include <vector>

#include "algebra/Txolesky.h"

// The columns of the profile go upwards, so f is turned round once and both run in the same
// direction; the profile is read once from end to end, which is all that the time is spent on.

namespace {

/// Eight numbers taken together, in whatever registers the processor has.
using Eight [[gnu::vector_size(64)]] = double;

constexpr int kEight = 8;

/// Sum of x[k] y[k], k = 0..count-1.
double Dot(const double* x, const double* y, int count) {
  Eight sums = {};
  int k = 0;
  for (; k + kEight <= count; k += kEight) {
    Eight xs;
    Eight ys;
    std::memcpy(&xs, x + k, sizeof xs);
    std::memcpy(&ys, y + k, sizeof ys);
    sums += xs * ys;
  }
  double sum = 0.0;
  for (int lane = 0; lane < kEight; ++lane) sum += sums[lane];
  for (; k < count; ++k) sum += x[k] * y[k];
  return sum;
}

/// y[k] -= factor x[k], k = 0..count-1.
void SubtractMultiple(double factor, const double* x, double* y, int count) {
  for (int k = 0; k < count; ++k) y[k] -= factor * x[k];
}

}  // namespace

void SubstituteForward(const Profile& U, double* f) {
  std::vector<double> upwards(f, f + U.n);
  std::reverse(upwards.begin(), upwards.end());
  double* const end = upwards.data() + U.n;  // end[-i - 1] is f[i]
  for (int i = 0; i < U.n; ++i) {
    end[-i - 1] -= Dot(U.columns[i] + 1, end - i, U.heights[i] - 1);
  }
  std::reverse_copy(upwards.begin(), upwards.end(), f);
}

void DivideByDiagonal(const Profile& D, double* f) {
  for (int i = 0; i < D.n; ++i) f[i] /= D.columns[i][0];
}

void SubstituteBackward(const Profile& U, double* f) {
  std::vector<double> upwards(f, f + U.n);
  std::reverse(upwards.begin(), upwards.end());
  double* const end = upwards.data() + U.n;
  for (int j = U.n - 1; j > 0; --j) {
    SubtractMultiple(end[-j - 1], U.columns[j] + 1, end - j, U.heights[j] - 1);
  }
  std::reverse_copy(upwards.begin(), upwards.end(), f);
}
