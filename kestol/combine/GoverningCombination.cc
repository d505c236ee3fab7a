#include "kestol/combine/GoverningCombination.h"

#include <algorithm>
#include <limits>

#include "kestol/combine/EurocodeSets.h"

namespace kestol {

namespace {

using Subsets = std::vector<std::vector<int>>;

Subsets SubsetsOf(const std::vector<int>& actions, const Exclusions& exclusions, int leading) {
  Subsets subsets;
  ForEachSubset(actions, exclusions, leading,
                [&](const std::vector<int>& subset) { subsets.push_back(subset); });
  return subsets;
}

/// The actions in parts between which nothing excludes anything.
Subsets PartsOf(const std::vector<int>& actions, const Exclusions& exclusions) {
  Subsets parts;
  std::vector<int> left = actions;
  while (!left.empty()) {
    std::vector<int> part = {left.back()};
    left.pop_back();
    for (std::size_t k = 0; k < part.size(); ++k) {
      const auto joins = [&](int other) { return exclusions.Excludes(part[k], other); };
      std::copy_if(left.begin(), left.end(), std::back_inserter(part), joins);
      left.erase(std::remove_if(left.begin(), left.end(), joins), left.end());
    }
    parts.push_back(part);
  }
  return parts;
}

}  // namespace

GoverningCombination::GoverningCombination(const std::vector<Action>& actions,
                                           const EurocodeRules& rules)
    : count_(actions.size()), permanent_(PermanentGroups(actions)) {
  const Exclusions exclusions(actions.size(), rules.exclusive);
  for (int k = 0; k < static_cast<int>(actions.size()); ++k)
    if (!actions[k].permanent) variable_.push_back(k);

  for (const EurocodeExpression& expression : ExpressionsOf(rules)) {
    Sums sums{expression, {}, {}, {}};
    for (const Action& action : actions) {
      sums.accompanying.push_back(AccompanyingFactor(expression, action));
      sums.leading.push_back(LeadingFactor(expression, action));
    }
    for (const std::vector<int>& part : PartsOf(Accompanying(expression, actions), exclusions)) {
      Cluster cluster{SubsetsOf(part, exclusions, -1), {}};
      for (const int leading : variable_)
        if (std::any_of(part.begin(), part.end(), [&](int member) {
              return member == leading || exclusions.Excludes(member, leading);
            }))
          cluster.besideLeading[leading] = SubsetsOf(part, exclusions, leading);
      sums.clusters.push_back(std::move(cluster));
    }
    sums_.push_back(std::move(sums));
  }
}

/// The subset with the largest sum, which is added to `sum`.
const std::vector<int>& GoverningCombination::Best(const Subsets& subsets, const Sums& sums,
                                                   const double* values, double sign, double& sum) {
  const std::vector<int>* best = &subsets.front();
  double largest = -std::numeric_limits<double>::infinity();
  for (const std::vector<int>& subset : subsets) {
    double s = 0.0;
    for (const int k : subset) s += sums.accompanying[k] * values[k];
    s *= sign;
    if (s <= largest) continue;
    best = &subset;
    largest = s;
  }
  sum += largest;
  return *best;
}

/// The sum of the permanent actions; their factors go to `factors` unless that is null.
double GoverningCombination::PermanentSum(const Sums& sums, const double* values, double sign,
                                          std::vector<double>* factors) const {
  const double superior = SuperiorFactor(sums.expression), inferior = sums.expression.inferior;
  double sum = 0.0;
  for (const std::vector<int>& group : permanent_) {
    double ofGroup = 0.0;
    for (const int k : group) ofGroup += values[k];
    const double factor =
        sign * ofGroup * superior >= sign * ofGroup * inferior ? superior : inferior;
    sum += sign * factor * ofGroup;
    if (factors == nullptr) continue;
    for (const int k : group) (*factors)[k] = factor;
  }
  return sum;
}

const Subsets& GoverningCombination::Cluster::Beside(int leading) const {
  const auto found = besideLeading.find(leading);
  return found == besideLeading.end() ? subsets : found->second;
}

void GoverningCombination::Consider(const Sums& sums, const double* values, double sign,
                                    Choice& best) const {
  const double permanent = PermanentSum(sums, values, sign, nullptr);
  const auto consider = [&](int leading, double sum) {
    if (sum > best.sum) best = {&sums, leading, sum};
  };
  double accompanied = permanent;
  for (const Cluster& cluster : sums.clusters)
    Best(cluster.subsets, sums, values, sign, accompanied);
  if (!sums.expression.hasLeading) return consider(-1, accompanied);

  consider(-1, permanent);
  for (const int leading : variable_) {
    double sum = permanent + sign * sums.leading[leading] * values[leading];
    for (const Cluster& cluster : sums.clusters)
      Best(cluster.Beside(leading), sums, values, sign, sum);
    consider(leading, sum);
  }
}

void GoverningCombination::Find(const double* values, double sign,
                                std::vector<double>& factors) const {
  Choice best{&sums_.front(), -1, -std::numeric_limits<double>::infinity()};
  for (const Sums& sums : sums_) Consider(sums, values, sign, best);

  factors.assign(count_, 0.0);
  const Sums& sums = *best.sums;
  PermanentSum(sums, values, sign, &factors);
  if (best.leading >= 0) factors[best.leading] = sums.leading[best.leading];
  if (best.leading < 0 && sums.expression.hasLeading) return;
  double sum = 0.0;
  for (const Cluster& cluster : sums.clusters)
    for (const int k : Best(cluster.Beside(best.leading), sums, values, sign, sum))
      factors[k] = sums.accompanying[k];
}

}  // namespace kestol
