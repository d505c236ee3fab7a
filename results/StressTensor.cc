#include "results/StressTensor.h"

#include <algorithm>
#include <cmath>

namespace kestol {

namespace {

/// One step of Jacobi: the rotation in the plane (p, q) that makes A(p, q) zero.
void Rotate(double A[3][3], double V[3][3], int p, int q) {
  const double apq = A[p][q];
  if (apq == 0.0) return;
  const double theta = 0.5 * (A[q][q] - A[p][p]) / apq;
  const double t = std::copysign(1.0, theta) / (std::abs(theta) + std::sqrt(theta * theta + 1.0));
  const double c = 1.0 / std::sqrt(t * t + 1.0), s = t * c;
  const int r = 3 - p - q;
  A[p][p] -= t * apq;
  A[q][q] += t * apq;
  A[p][q] = A[q][p] = 0.0;
  const double arp = A[r][p], arq = A[r][q];
  A[r][p] = A[p][r] = c * arp - s * arq;
  A[r][q] = A[q][r] = s * arp + c * arq;
  for (int k = 0; k < 3; ++k) {
    const double vkp = V[k][p], vkq = V[k][q];
    V[k][p] = c * vkp - s * vkq;
    V[k][q] = s * vkp + c * vkq;
  }
}

}  // namespace

double VonMises(const StressTensor& s) {
  const double xy = s[0] - s[1], yz = s[1] - s[2], zx = s[2] - s[0];
  const double shears = s[3] * s[3] + s[5] * s[5] + s[4] * s[4];
  return std::sqrt(0.5 * (xy * xy + yz * yz + zx * zx + 6.0 * shears));
}

StressTensor SurfaceStressToGlobal(double xx, double yy, double xy, const Frame& frame) {
  const Vector3 &x = frame.x, &y = frame.y;
  const auto at = [&](int i, int j) {
    return xx * x[i] * x[j] + yy * y[i] * y[j] + xy * (x[i] * y[j] + y[i] * x[j]);
  };
  return {at(0, 0), at(1, 1), at(2, 2), at(0, 1), at(1, 2), at(0, 2)};
}

MainStress MainStressOf(const StressTensor& s) {
  constexpr int kSweeps = 20;  // it converges quadratically: five are many
  double A[3][3] = {
      {s[0], s[3], s[5]},
      {s[3], s[1], s[4]},
      {s[5], s[4], s[2]}
  };
  double V[3][3] = {
      {1, 0, 0},
      {0, 1, 0},
      {0, 0, 1}
  };
  for (int sweep = 0; sweep < kSweeps; ++sweep) {
    const double off = std::abs(A[0][1]) + std::abs(A[0][2]) + std::abs(A[1][2]);
    const double on = std::abs(A[0][0]) + std::abs(A[1][1]) + std::abs(A[2][2]);
    if (!(off > 1e-17 * on)) break;
    Rotate(A, V, 0, 1);
    Rotate(A, V, 0, 2);
    Rotate(A, V, 1, 2);
  }
  std::array<int, 3> order = {0, 1, 2};
  std::sort(order.begin(), order.end(), [&](int a, int b) { return A[a][a] > A[b][b]; });
  MainStress main;
  for (int k = 0; k < 3; ++k) {
    const int i = order[k];
    main.values[k] = A[i][i];
    main.directions[k] = {V[0][i], V[1][i], V[2][i]};
  }
  main.directions[2] = Cross(main.directions[0], main.directions[1]);
  return main;
}

}  // namespace kestol
