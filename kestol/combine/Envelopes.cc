#include "kestol/combine/Envelopes.h"

#include <algorithm>

namespace kestol {

namespace {

void Keep(const double* values, int count, std::size_t combination, Extreme& extreme) {
  extreme.combination = static_cast<int>(combination);
  std::copy_n(values, count, extreme.values.begin());
}

}  // namespace

ExtremeFinder::ExtremeFinder(const std::vector<Combination>& combinations)
    : caseCount_(combinations.empty() ? 0 : combinations.front().factors.size()),
      namedCount_(combinations.size()) {
  for (const Combination& combination : combinations) {
    std::vector<Term>& terms = terms_.emplace_back();
    for (std::size_t k = 0; k < combination.factors.size(); ++k)
      if (combination.factors[k] != 0.0)
        terms.push_back({static_cast<int>(k), combination.factors[k]});
  }
}

void ExtremeFinder::UseRules(const std::vector<Action>& actions, const EurocodeRules& rules,
                             std::size_t namedCount) {
  namedCount_ = namedCount;
  governing_ = std::make_unique<GoverningCombination>(actions, rules);
  std::vector<double> factors(caseCount_);
  for (std::size_t c = namedCount; c < terms_.size(); ++c) {
    std::fill(factors.begin(), factors.end(), 0.0);
    for (const Term& term : terms_[c])
      factors[static_cast<std::size_t>(term.caseIndex)] = term.factor;
    byFactors_.emplace(FactorKey(factors), c);
  }
}

void ExtremeFinder::Sum(std::size_t combination, const double* ofCases, std::size_t stride,
                        ValueKind kind, double* sums) const {
  const int count = NamesOf(kind).linear;
  std::fill_n(sums, count, 0.0);
  for (const auto& [caseIndex, factor] : terms_[combination]) {
    const double* values = ofCases + static_cast<std::size_t>(caseIndex) * stride;
    for (int i = 0; i < count; ++i) sums[i] += factor * values[i];
  }
  AddDerived(kind, sums);
}

/// The combinations from `first` up to `end`, for the values from `firstValue` on.
void ExtremeFinder::TryAll(std::size_t first, std::size_t end, int firstValue,
                           const double* ofCases, std::size_t stride,
                           PlaceEnvelope& envelope) const {
  const ValueKind kind = envelope.place.kind;
  const int count = NamesOf(kind).Count();
  double sums[kMostValues];
  for (std::size_t c = first; c < end; ++c) {
    Sum(c, ofCases, stride, kind, sums);
    for (auto i = static_cast<std::size_t>(firstValue); i < static_cast<std::size_t>(count); ++i) {
      if (sums[i] < envelope.least[i].values[i]) Keep(sums, count, c, envelope.least[i]);
      if (sums[i] > envelope.largest[i].values[i]) Keep(sums, count, c, envelope.largest[i]);
    }
  }
}

void ExtremeFinder::TryGoverning(const double* ofCases, std::size_t stride,
                                 PlaceEnvelope& envelope) const {
  const ValueKind kind = envelope.place.kind;
  const ValueNames& names = NamesOf(kind);
  std::vector<double> values(caseCount_), factors;
  double sums[kMostValues];
  for (std::size_t i = 0; i < static_cast<std::size_t>(names.linear); ++i) {
    for (std::size_t k = 0; k < caseCount_; ++k) values[k] = ofCases[k * stride + i];
    for (const double sign : {-1.0, 1.0}) {
      governing_->Find(values.data(), sign, factors);
      const std::size_t c = byFactors_.at(FactorKey(factors));
      Sum(c, ofCases, stride, kind, sums);
      Extreme& extreme = sign < 0.0 ? envelope.least[i] : envelope.largest[i];
      if (sign * sums[i] > sign * extreme.values[i]) Keep(sums, names.Count(), c, extreme);
    }
  }
}

void ExtremeFinder::Find(const double* ofCases, std::size_t stride, PlaceEnvelope& envelope) const {
  const ValueNames& names = NamesOf(envelope.place.kind);
  double sums[kMostValues];
  Sum(0, ofCases, stride, envelope.place.kind, sums);
  for (std::size_t i = 0; i < static_cast<std::size_t>(names.Count()); ++i) {
    Keep(sums, names.Count(), 0, envelope.least[i]);
    Keep(sums, names.Count(), 0, envelope.largest[i]);
  }
  TryAll(0, namedCount_, 0, ofCases, stride, envelope);
  if (!governing_) return;
  TryGoverning(ofCases, stride, envelope);
  if (names.Count() > names.linear)  // what does not add up has no short way
    TryAll(namedCount_, terms_.size(), names.linear, ofCases, stride, envelope);
}

Envelopes::Envelopes(Superposition& sums, const ExtremeFinder& finder, std::size_t blockValues)
    : sums_(sums), finder_(finder), blockValues_(blockValues) {}

/// The values of all cases for the next places.
void Envelopes::FillBlock() {
  done_ += places_.size();
  places_.clear();
  starts_.clear();
  next_ = 0;
  const auto cases = static_cast<std::size_t>(sums_.CaseCount());
  const std::size_t most = std::max<std::size_t>(blockValues_ / cases, kMostValues);
  for (std::size_t k = 0; k < cases; ++k) {
    const Results results = sums_.Combine(sums_.Only(static_cast<int>(k)));
    std::size_t number = 0, width = 0;
    bool full = false;
    ForEachValue(sums_.Model(), results, [&](const ValuePlace& place, const double* values) {
      if (number++ < done_) return;
      const auto count = static_cast<std::size_t>(NamesOf(place.kind).linear);
      full = full || (k == 0 ? width + count > most : number - done_ > places_.size());
      if (full) return;
      if (k == 0) {
        places_.push_back(place);
        starts_.push_back(width);
      }
      values_.resize(std::max(values_.size(), k * blockWidth_ + width + count));
      std::copy_n(values, count,
                  values_.begin() + static_cast<std::ptrdiff_t>(k * blockWidth_ + width));
      width += count;
    });
    if (k == 0) {
      blockWidth_ = width;
      placeCount_ = number;
      values_.resize(cases * blockWidth_);
    }
  }
}

bool Envelopes::Next() {
  if (next_ == places_.size()) {
    if (placeCount_ > 0 && done_ + places_.size() == placeCount_) return false;
    FillBlock();
    if (places_.empty()) return false;
  }
  current_.place = places_[next_];
  finder_.Find(values_.data() + starts_[next_], blockWidth_, current_);
  ++next_;
  return true;
}

}  // namespace kestol
