#include "kestol/mechanisms/NullSpace.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <span>
#include <utility>

#include "kestol/mechanisms/VectorSpace.h"
#include "main/ErrorChannel.h"

namespace kestol {

namespace {

constexpr double kShift = 3e-14;
constexpr int kSteps = 4;
constexpr int kSmallestBlock = 8;

/// Vectors that are in no special position, the same at every run.
std::vector<ReaVecT> StartVectors(int n, int count) {
  std::uint64_t state = 0x2545F4914F6CDD1DU;
  std::vector<ReaVecT> block;
  for (int v = 0; v < count; ++v) {
    block.emplace_back(n);
    for (double& entry : block.back()) {
      state ^= state << 13U;
      state ^= state >> 7U;
      state ^= state << 17U;
      entry = static_cast<double>(state >> 11U) * 0x1p-52 - 1.0;
    }
  }
  return block;
}

/// Makes the length 1; false for a vector without one.
bool Normalise(ReaVecT& x) {
  const double length = LengthOf(x);
  if (!(length > 0.0) || !std::isfinite(length)) return false;
  for (double& entry : x) entry /= length;
  return true;
}

/// Gram and Schmidt. What is left of a vector that depends on the others is rounding, which serves
/// as well as any other direction once it is orthogonal: hence as many passes.
void Orthonormalise(std::vector<ReaVecT>& block) {
  constexpr int kPasses = 3;
  std::size_t kept = 0;
  for (std::size_t v = 0; v < block.size(); ++v) {
    bool isGood = Normalise(block[v]);
    for (int pass = 0; pass < kPasses && isGood; ++pass) {
      TakeOut(block[v], std::span(block).first(kept));
      isGood = Normalise(block[v]);
    }
    if (!isGood) continue;
    if (kept != v) block[kept] = std::move(block[v]);
    ++kept;
  }
  block.resize(kept);
}

/// A small symmetric matrix, row by row.
struct Small {
  std::size_t n;
  std::vector<double> entries;
  double& operator()(std::size_t i, std::size_t j) { return entries[i * n + j]; }
};

/// Turns the axes p and q by an angle of cosine c and sine s.
struct Rotation {
  std::size_t p, q;
  double c, s;

  void Turn(double& a, double& b) const {
    const double before = a;
    a = c * before - s * b;
    b = s * before + c * b;
  }
  void TurnColumns(Small& M) const {
    for (std::size_t k = 0; k < M.n; ++k) Turn(M(k, p), M(k, q));
  }
  void TurnRows(Small& M) const {
    for (std::size_t k = 0; k < M.n; ++k) Turn(M(p, k), M(q, k));
  }
};

/// The smaller of the rotations after which M(p, q), which is not 0, would be.
Rotation RotationAgainst(Small& M, std::size_t p, std::size_t q) {
  const double theta = (M(q, q) - M(p, p)) / (2.0 * M(p, q));
  const double sign = theta >= 0.0 ? 1.0 : -1.0;
  const double t = std::isfinite(theta * theta)
                       ? sign / (std::abs(theta) + std::sqrt(theta * theta + 1.0))
                       : 0.5 / theta;
  const double c = 1.0 / std::sqrt(t * t + 1.0);
  return {p, q, c, t * c};
}

/// The sum of the squares above the diagonal.
double OffDiagonal(Small& M) {
  double sum = 0.0;
  for (std::size_t p = 0; p < M.n; ++p)
    for (std::size_t q = p + 1; q < M.n; ++q) sum += M(p, q) * M(p, q);
  return sum;
}

/// Jacobi's rotations: M becomes diagonal, V its eigenvectors as columns.
void Diagonalise(Small& M, Small& V) {
  constexpr int kSweeps = 60;
  for (std::size_t i = 0; i < M.n; ++i) V(i, i) = 1.0;
  for (int sweep = 0; sweep < kSweeps && OffDiagonal(M) != 0.0; ++sweep) {
    for (std::size_t p = 0; p < M.n; ++p)
      for (std::size_t q = p + 1; q < M.n; ++q) {
        if (M(p, q) == 0.0) continue;
        const Rotation rotation = RotationAgainst(M, p, q);
        rotation.TurnColumns(M);
        rotation.TurnRows(M);
        M(p, q) = M(q, p) = 0.0;
        rotation.TurnColumns(V);
      }
  }
}

/// Rayleigh and Ritz: the eigenvectors of A in the space of the orthonormal block.
RitzVectors RitzOf(const ScaledSystem& A, const std::vector<ReaVecT>& block) {
  const std::size_t m = block.size();
  Small T{m, std::vector<double>(m * m)}, V{m, std::vector<double>(m * m)};
  for (std::size_t j = 0; j < m; ++j) {
    const ReaVecT image = A.Times(block[j]);
    for (std::size_t i = 0; i < m; ++i) T(i, j) = DotOf(block[i], image);
  }
  for (std::size_t i = 0; i < m; ++i)
    for (std::size_t j = 0; j < i; ++j) T(i, j) = T(j, i) = (T(i, j) + T(j, i)) / 2.0;
  Diagonalise(T, V);
  std::vector<std::size_t> order(m);
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::sort(order.begin(), order.end(),
            [&](std::size_t a, std::size_t b) { return std::abs(T(a, a)) < std::abs(T(b, b)); });
  RitzVectors ritz;
  for (const std::size_t column : order) {
    ritz.values.push_back(T(column, column));
    ritz.vectors.emplace_back(A.Size());
    for (std::size_t i = 0; i < m; ++i) AddTo(ritz.vectors.back(), V(i, column), block[i]);
  }
  return ritz;
}

}  // namespace

RitzVectors SubspaceIteration(const ScaledSystem& A, int count, int steps,
                              const std::function<void(std::vector<ReaVecT>&)>& solve) {
  std::vector<ReaVecT> block = StartVectors(A.Size(), std::min(count, A.Size()));
  Orthonormalise(block);
  for (int step = 0; step < steps; ++step) {
    solve(block);
    Orthonormalise(block);
  }
  return RitzOf(A, block);
}

RitzVectors NullSpaceOf(ScaledSystem& A, int atLeast, double longest) {
  // Rounding can make a pivot of the shifted matrix vanish: another shift is as good.
  double shift = kShift;
  constexpr double kLargestShift = 1e-11;
  while (!A.FactoriseShifted(shift)) {
    shift *= 3.0;
    if (shift > kLargestShift)
      Fatal("error when solving system. The matrix cannot be factorised\n");
  }
  for (int count = std::max(kSmallestBlock, atLeast + 2);; count *= 2) {
    RitzVectors ritz = SubspaceIteration(
        A, count, kSteps, [&](std::vector<ReaVecT>& block) { A.SolveShifted(block); });
    const auto modes = static_cast<std::size_t>(
        std::count_if(ritz.values.begin(), ritz.values.end(),
                      [](double value) { return std::abs(value) < kNoResistance; }));
    ritz.areAll = modes < ritz.values.size() || count >= A.Size();
    const double next = 2.0 * count;
    if (!ritz.areAll && A.Size() * next * next <= longest) continue;
    ritz.values.resize(modes);
    ritz.vectors.resize(modes);
    return ritz;
  }
}

}  // namespace kestol
