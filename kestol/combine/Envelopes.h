#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "kestol/combine/Combination.h"
#include "kestol/combine/GoverningCombination.h"
#include "kestol/combine/Superposition.h"
#include "kestol/combine/Values.h"

namespace kestol {

/// The smallest or largest of one value, the combination that gives it, and all values of the place
/// under that combination.
struct Extreme {
  int combination = 0;  ///< index in the list of combinations
  std::array<double, kMostValues> values{};
};

/// The extremes of each value of one place.
struct PlaceEnvelope {
  ValuePlace place;
  std::array<Extreme, kMostValues> least, largest;
};

/// Finds the extremes of the values of one place among combinations. Equal extremes: the first.
class ExtremeFinder {
public:
  /// At least one combination.
  explicit ExtremeFinder(const std::vector<Combination>& combinations);

  /// Tells that the combinations behind the first `namedCount` are all that the rules give for
  /// these actions. Linear values then need not be summed up for each of them.
  void UseRules(const std::vector<Action>& actions, const EurocodeRules& rules,
                std::size_t namedCount);

  /// `ofCases` holds the linear values of case k from k * stride on.
  void Find(const double* ofCases, std::size_t stride, PlaceEnvelope& envelope) const;

private:
  struct Term {
    int caseIndex;
    double factor;
  };
  void Sum(std::size_t combination, const double* ofCases, std::size_t stride, ValueKind kind,
           double* sums) const;
  void TryAll(std::size_t first, std::size_t end, int firstValue, const double* ofCases,
              std::size_t stride, PlaceEnvelope& envelope) const;
  void TryGoverning(const double* ofCases, std::size_t stride, PlaceEnvelope& envelope) const;

  std::size_t caseCount_;
  std::vector<std::vector<Term>> terms_;  ///< by combination
  std::size_t namedCount_ = 0;
  std::unique_ptr<GoverningCombination> governing_;  ///< null: all are tried
  std::unordered_map<std::string, std::size_t> byFactors_;
};

/// The envelopes of a model, place after place in the order of ForEachValue. The values of the
/// cases are kept for a part of the places at a time.
class Envelopes {
public:
  /// Most values of all cases that are kept at a time: 256 MB.
  static constexpr std::size_t kBlockValues = std::size_t{32} << 20;

  /// `sums` and `finder` must outlive this.
  Envelopes(Superposition& sums, const ExtremeFinder& finder,
            std::size_t blockValues = kBlockValues);

  /// Goes to the next place; false behind the last one.
  bool Next();
  const PlaceEnvelope& Current() const { return current_; }

private:
  void FillBlock();

  Superposition& sums_;
  const ExtremeFinder& finder_;
  std::size_t blockValues_;
  std::vector<ValuePlace> places_;   ///< of the block
  std::vector<double> values_;       ///< of the block, case after case
  std::vector<std::size_t> starts_;  ///< of each place in the values of one case
  std::size_t blockWidth_ = 0;       ///< values of the block per case
  std::size_t done_ = 0;             ///< places in front of the block
  std::size_t next_ = 0;             ///< in the block
  std::size_t placeCount_ = 0;
  PlaceEnvelope current_;
};

/// From how many generated combinations on the search replaces the trial of all.
constexpr std::size_t kManyCombinations = 200;

}  // namespace kestol
