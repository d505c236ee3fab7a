#pragma once

#include <functional>
#include <vector>

#include "kestol/combine/Eurocode.h"

namespace kestol {

// What the listing of all combinations and the search for the governing one share.

/// Permanent actions that share their factor, by their places: all that are not separate, then each
/// separate one.
std::vector<std::vector<int>> PermanentGroups(const std::vector<Action>& actions);

/// Which actions exclude each other.
class Exclusions {
public:
  Exclusions(std::size_t actionCount, const std::vector<std::vector<int>>& groups);

  bool Excludes(int a, int b) const { return excluded_[a * count_ + b]; }
  /// Whether `action` may stand beside all of `others`.
  bool Allows(int action, const std::vector<int>& others) const;

private:
  std::size_t count_;
  std::vector<bool> excluded_;
};

/// Calls `use` for every subset of `actions` without two that exclude each other and without one
/// that `leading` (-1: none) excludes, the empty one first.
void ForEachSubset(const std::vector<int>& actions, const Exclusions& exclusions, int leading,
                   const std::function<void(const std::vector<int>&)>& use);

/// A product of factors as people write it: 1.5 times 0.6 is 0.9, not 0.8999999999999999.
double DecimalProduct(double a, double b);

/// Factors of one expression.
double SuperiorFactor(const EurocodeExpression& expression);
double LeadingFactor(const EurocodeExpression& expression, const Action& action);
double AccompanyingFactor(const EurocodeExpression& expression, const Action& action);

/// The variable actions that count beside a leading one: those with a factor other than 0.
std::vector<int> Accompanying(const EurocodeExpression& expression,
                              const std::vector<Action>& actions);

}  // namespace kestol
