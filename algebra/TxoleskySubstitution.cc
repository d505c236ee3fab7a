#include <algorithm>
#include <vector>

#include "algebra/Txolesky.h"

namespace kestol {

// The columns of the profile go upwards in the matrix, so f is reversed and both run in the same
// direction. The time is that of reading the profile: once from its first number to the last and
// once backwards, sequentially, as the hardware prefetches it.

namespace {

/// Numbers that are taken together; a fixed loop over them is laid out in whatever registers the
/// processor has.
constexpr int kLanes = 16;

/// Sum of x[k] y[k], k = 0..count-1.
double Dot(const double* x, const double* y, int count) {
  double sums[kLanes] = {};
  int k = 0;
  for (; k + kLanes <= count; k += kLanes)
    for (int lane = 0; lane < kLanes; ++lane) sums[lane] += x[k + lane] * y[k + lane];
  for (; k < count; ++k) sums[0] += x[k] * y[k];
  double sum = 0.0;
  for (int lane = 0; lane < kLanes; ++lane) sum += sums[lane];
  return sum;
}

/// y[k] -= factor x[k], k = count-1..0; x and y do not overlap.
void SubtractMultiple(double factor, const double* __restrict x, double* __restrict y, int count) {
  int k = count;
  for (; k >= kLanes; k -= kLanes) {
    const double* const xs = x + k - kLanes;
    double* const ys = y + k - kLanes;
    for (int lane = 0; lane < kLanes; ++lane) ys[lane] -= factor * xs[lane];
  }
  for (; k > 0; --k) y[k - 1] -= factor * x[k - 1];
}

}  // namespace

void SubstituteForward(const Profile& U, double* f) {
  std::vector<double> upwards(f, f + U.n);
  std::reverse(upwards.begin(), upwards.end());
  double* const end = upwards.data() + U.n;  // end[-i - 1] is f[i]
  for (int i = 0; i < U.n; ++i) {
    // f_i -= sum over k < i of u_ki f_k
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
    // f_i -= u_ij f_j for i < j
    SubtractMultiple(end[-j - 1], U.columns[j] + 1, end - j, U.heights[j] - 1);
  }
  std::reverse_copy(upwards.begin(), upwards.end(), f);
}

}  // namespace kestol
