#pragma once

#include <cstddef>
#include <unordered_map>
#include <vector>

#include "kestol/combine/Eurocode.h"

namespace kestol {

/// Finds the generated combination that makes one value largest without trying them all: in each
/// expression and for each leading action every group of permanent actions takes its better factor
/// and every set of actions that exclude each other its best subset. The answer is one of
/// GenerateCombinations; equal sums may be won by any of them.
///
/// Cost per value: expressions x leading actions x actions, where the listing has 2^actions.
class GoverningCombination {
public:
  /// At least one rule, and an action.
  GoverningCombination(const std::vector<Action>& actions, const EurocodeRules& rules);

  /// Fills `factors` (one per action) with those that make the sum of factors times `values`
  /// largest; with `sign` -1.0 smallest.
  void Find(const double* values, double sign, std::vector<double>& factors) const;

private:
  using Subsets = std::vector<std::vector<int>>;

  /// Actions that exclude each other, directly or through others, and what may be chosen of them.
  struct Cluster {
    Subsets subsets;
    /// By leading action: what may stand beside it, where that is less than `subsets`.
    std::unordered_map<int, Subsets> besideLeading;

    const Subsets& Beside(int leading) const;
  };
  /// One expression, and its factors by action.
  struct Sums {
    EurocodeExpression expression;
    std::vector<Cluster> clusters;
    std::vector<double> accompanying, leading;
  };
  struct Choice {
    const Sums* sums;
    int leading;  ///< -1: none
    double sum;
  };

  static const std::vector<int>& Best(const Subsets& subsets, const Sums& sums,
                                      const double* values, double sign, double& sum);
  double PermanentSum(const Sums& sums, const double* values, double sign,
                      std::vector<double>* factors) const;
  void Consider(const Sums& sums, const double* values, double sign, Choice& best) const;

  std::size_t count_;
  std::vector<std::vector<int>> permanent_;
  std::vector<int> variable_;
  std::vector<Sums> sums_;
};

}  // namespace kestol
