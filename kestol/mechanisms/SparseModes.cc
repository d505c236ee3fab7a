#include "kestol/mechanisms/SparseModes.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <span>
#include <utility>

#include "kestol/mechanisms/VectorSpace.h"

namespace kestol {

namespace {

constexpr double kRounding = 1e-8;  ///< of the largest entry
constexpr double kOutside = 1e-5;   ///< of a unit vector: it is not in the space of the others

double LargestOf(const ReaVecT& x) {
  double largest = 0.0;
  for (const double entry : x) largest = std::max(largest, std::abs(entry));
  return largest;
}

void Multiply(ReaVecT& x, double factor) {
  for (double& entry : x) entry *= factor;
}

/// The second time takes what rounding has left.
void TakeOutTwice(ReaVecT& x, const std::vector<ReaVecT>& basis) {
  for (int pass = 0; pass < 2; ++pass) TakeOut(x, basis);
}

/// Adds the direction of x that the orthonormal basis lacks, if there is one.
bool Extend(std::vector<ReaVecT>& basis, ReaVecT x) {
  const double before = LengthOf(x);
  if (!(before > 0.0)) return false;
  Multiply(x, 1.0 / before);
  TakeOutTwice(x, basis);
  const double after = LengthOf(x);
  if (!(after >= kOutside)) return false;
  Multiply(x, 1.0 / after);
  basis.push_back(std::move(x));
  return true;
}

/// What the modes span beside the rigid ones: those first that lie least in their space.
std::vector<ReaVecT> Beside(const std::vector<ReaVecT>& modes, const std::vector<ReaVecT>& rigid) {
  std::vector<ReaVecT> basis, space;
  for (const ReaVecT& r : rigid) Extend(basis, r);
  for (const ReaVecT& mode : modes) Extend(space, mode);
  // With an orthonormal basis of both, what is left of a mode is not small by accident.
  const std::size_t rigidCount = basis.size();
  std::vector<ReaVecT> left = space;
  for (ReaVecT& x : left) TakeOutTwice(x, basis);
  for (std::size_t step = 0; step < left.size(); ++step) {
    const auto largest = std::max_element(
        left.begin(), left.end(), [](auto& a, auto& b) { return DotOf(a, a) < DotOf(b, b); });
    const double length = LengthOf(*largest);
    if (!(length >= kOutside)) break;
    ReaVecT x = *largest;
    Multiply(x, 1.0 / length);
    TakeOutTwice(x, basis);
    Multiply(x, 1.0 / LengthOf(x));
    for (ReaVecT& other : left) AddTo(other, -DotOf(other, x), x);
    basis.push_back(std::move(x));
  }
  return {basis.begin() + static_cast<std::ptrdiff_t>(rigidCount), basis.end()};
}

/// The degree of freedom that the unit vectors of a space move most, of equal ones the first: it
/// depends on the space alone, not on the orthonormal vectors that span it.
int PivotOf(std::span<const ReaVecT> space) {
  constexpr double kEqual = 1e-6;
  std::vector<double> squares(static_cast<std::size_t>(space.front().n));
  for (const ReaVecT& x : space)
    std::transform(x.begin(), x.end(), squares.begin(), squares.begin(),
                   [](double entry, double sum) { return sum + entry * entry; });
  const double least = (1.0 - kEqual) * *std::max_element(squares.begin(), squares.end());
  const auto first =
      std::find_if(squares.begin(), squares.end(), [&](double square) { return square >= least; });
  return static_cast<int>(first - squares.begin()) + 1;
}

/// Householder's reflection of the vectors after which only the first has an entry in `row`.
void Gather(std::span<ReaVecT> space, int row) {
  std::vector<double> w;
  for (const ReaVecT& x : space) w.push_back(x(row));
  const double length = std::sqrt(std::inner_product(w.begin(), w.end(), w.begin(), 0.0));
  w.front() += w.front() < 0.0 ? -length : length;
  const double square = std::inner_product(w.begin(), w.end(), w.begin(), 0.0);
  ReaVecT sum(space.front().n);
  sum.Fill(0.0);
  for (std::size_t m = 0; m < w.size(); ++m) AddTo(sum, w[m], space[m]);
  for (std::size_t m = 0; m < w.size(); ++m) AddTo(space[m], -2.0 * w[m] / square, sum);
}

/// Elimination with pivots of the space, so that the digits that a machine rounds otherwise do not
/// choose them: each of the orthonormal vectors gets an entry 1 where the others have 0.
void Eliminate(std::vector<ReaVecT>& modes) {
  std::vector<int> pivots;
  for (std::size_t step = 0; step < modes.size(); ++step) {
    const std::span<ReaVecT> rest = std::span(modes).subspan(step);
    pivots.push_back(PivotOf(rest));
    Gather(rest, pivots.back());
  }
  for (std::size_t k = modes.size(); k-- > 0;) {
    Multiply(modes[k], 1.0 / modes[k](pivots[k]));
    for (std::size_t m = 0; m < k; ++m) AddTo(modes[m], -modes[m](pivots[k]), modes[k]);
  }
}

/// The factor by which `b` must be taken from `a` for most entries of it to vanish, and how many do
/// more than without.
struct BestFactor {
  double factor = 0.0;
  int gain = 0;
};

BestFactor FactorOf(const ReaVecT& a, const ReaVecT& b) {
  const double noiseA = kRounding * LargestOf(a), noiseB = kRounding * LargestOf(b);
  std::vector<double> ratios;
  int zeros = 0;
  for (int i = 1; i <= a.n; ++i) {
    if (std::abs(b(i)) <= noiseB) continue;
    if (std::abs(a(i)) <= noiseA)
      ++zeros;
    else
      ratios.push_back(a(i) / b(i));
  }
  std::sort(ratios.begin(), ratios.end());
  BestFactor best;
  constexpr double kSame = 1e-6;
  for (std::size_t first = 0, last = 0; first < ratios.size(); ++first) {
    last = std::max(last, first);
    const double width = kSame * std::abs(ratios[first]);
    while (last < ratios.size() && ratios[last] - ratios[first] <= width) ++last;
    const int gain = static_cast<int>(last - first) - zeros;
    if (gain <= best.gain) continue;
    best.gain = gain;
    best.factor = std::accumulate(ratios.begin() + static_cast<std::ptrdiff_t>(first),
                                  ratios.begin() + static_cast<std::ptrdiff_t>(last), 0.0) /
                  static_cast<double>(last - first);
  }
  return best;
}

void DropRounding(ReaVecT& x) {
  const double noise = kRounding * LargestOf(x);
  for (double& entry : x)
    if (std::abs(entry) <= noise) entry = 0.0;
}

/// Takes multiples of the others from each mode as long as that empties entries.
void Thin(std::vector<ReaVecT>& modes, const std::vector<ReaVecT>& rigid) {
  constexpr int kSweeps = 6;
  constexpr std::size_t kMostModes = 40;  // beyond that each has its own pivot and no more
  if (modes.size() > kMostModes) return;
  for (int sweep = 0; sweep < kSweeps; ++sweep) {
    bool changed = false;
    const auto thinBy = [&](ReaVecT& a, const ReaVecT& b) {
      const BestFactor best = FactorOf(a, b);
      if (best.gain <= 0) return;
      AddTo(a, -best.factor, b);
      DropRounding(a);
      changed = true;
    };
    for (std::size_t m = 0; m < modes.size(); ++m) {
      for (const ReaVecT& r : rigid) thinBy(modes[m], r);
      for (std::size_t other = 0; other < modes.size(); ++other)
        if (other != m) thinBy(modes[m], modes[other]);
    }
    if (!changed) return;
  }
}

}  // namespace

std::vector<ReaVecT> SparseModes(const std::vector<ReaVecT>& modes,
                                 const std::vector<ReaVecT>& rigid) {
  std::vector<ReaVecT> rest = Beside(modes, rigid);
  Eliminate(rest);
  for (ReaVecT& mode : rest) DropRounding(mode);
  Thin(rest, rigid);
  return rest;
}

}  // namespace kestol
