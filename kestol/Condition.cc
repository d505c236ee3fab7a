#include "kestol/Condition.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>
#include <utility>

#include "kestol/mechanisms/ElementEnergies.h"
#include "kestol/mechanisms/NullSpace.h"

namespace kestol {

namespace {

double OneNorm(const ReaVecT& x) {
  double sum = 0.0;
  for (const double entry : x) sum += std::abs(entry);
  return sum;
}

ReaVecT SignsOf(const ReaVecT& x) {
  ReaVecT signs = x;
  for (double& entry : signs) entry = entry < 0.0 ? -1.0 : 1.0;
  return signs;
}

int LargestEntry(const ReaVecT& x) {
  const double* const largest = std::max_element(
      x.begin(), x.end(), [](double a, double b) { return std::abs(a) < std::abs(b); });
  return static_cast<int>(largest - x.begin()) + 1;
}

/// A lower bound, nearly always good to a factor of 3, of the one-norm of a symmetric matrix that
/// is known by its products.
double EstimateNorm(int n, const std::function<ReaVecT(const ReaVecT&)>& times) {
  constexpr int kPairs = 5;
  ReaVecT x(n);
  x.Fill(1.0 / n);
  ReaVecT y = times(x);
  double estimate = OneNorm(y);
  ReaVecT signs = SignsOf(y);
  int last = 0;
  for (int pair = 1; pair < kPairs; ++pair) {
    const ReaVecT z = times(signs);
    const int j = LargestEntry(z);
    const double already = std::inner_product(z.begin(), z.end(), x.begin(), 0.0);
    if (j == last || std::abs(z(j)) <= already) break;
    last = j;
    x.Fill(0.0);
    x(j) = 1.0;
    y = times(x);
    const double grown = OneNorm(y);
    if (grown <= estimate) break;
    estimate = grown;
    signs = SignsOf(y);
  }
  // A vector that catches what the steps cannot see.
  for (int i = 1; i <= n; ++i)
    x(i) = (i % 2 == 1 ? 1.0 : -1.0) * (1.0 + (i - 1.0) / std::max(n - 1, 1));
  return std::max(estimate, 2.0 * OneNorm(times(x)) / (3.0 * n));
}

}  // namespace

double EstimateCondition(LinearSystem& system, const ScaledSystem& A) {
  const double norm = EstimateNorm(A.Size(), [&](const ReaVecT& x) { return A.Times(x); });
  const double inverse = EstimateNorm(A.Size(), [&](const ReaVecT& x) {
    std::vector<ReaVecT> y{x};
    A.SolveBy(system.Factor(), y);
    return y.front();
  });
  return norm * inverse;
}

std::vector<int> SoftestElements(LinearSystem& system, const ScaledSystem& A, std::size_t most) {
  constexpr int kVectors = 2, kSteps = 3;
  RitzVectors softest = SubspaceIteration(
      A, kVectors, kSteps, [&](std::vector<ReaVecT>& block) { A.SolveBy(system.Factor(), block); });
  ReaVecT z = std::move(softest.vectors.front());
  A.Scale(z);
  system.TurnToGlobal(z);
  std::vector<ElementEnergy> energies = ElementEnergiesOf(system.Model(), z);
  std::sort(energies.begin(), energies.end(),
            [](const ElementEnergy& a, const ElementEnergy& b) { return a.energy > b.energy; });
  constexpr double kShare = 0.1;  // of the largest
  std::vector<int> elements;
  for (const ElementEnergy& element : energies)
    if (elements.size() < most && element.energy >= kShare * energies.front().energy)
      elements.push_back(element.number);
  return elements;
}

}  // namespace kestol
