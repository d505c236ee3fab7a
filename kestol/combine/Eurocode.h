#pragma once

#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

#include "kestol/combine/Actions.h"
#include "kestol/combine/Combination.h"

namespace kestol {

/// The sets of combinations that EN 1990 asks for.
enum class CombinationRule {
  Fundamental,     ///< 6.10
  FundamentalAB,   ///< 6.10a and 6.10b
  Characteristic,  ///< 6.14b
  Frequent,        ///< 6.15b
  QuasiPermanent   ///< 6.16b
};

/// The rules by their names in the input: "6.10", "6.10ab", "characteristic", "frequent",
/// "quasi-permanent".
struct RuleName {
  std::string_view name;
  CombinationRule rule;
};
extern const std::array<RuleName, 5> kRuleNames;

/// Partial factors of the ultimate limit states and the reduction of permanent actions in 6.10b.
struct PartialFactors {
  double superior = 1.35;  ///< unfavourable permanent actions
  double inferior = 1.0;   ///< favourable ones
  double variable = 1.5;   ///< unfavourable variable actions; favourable ones are left out
  double xi = 0.85;
};

/// What is to be combined, and how. Exclusive actions, by their places in the list of actions, are
/// never together.
struct EurocodeRules {
  std::vector<CombinationRule> rules;
  PartialFactors gamma;
  std::vector<std::vector<int>> exclusive;
};

/// One expression of EN 1990: the sum of the factors times the actions
///
///     {superior or inferior} G  +  variable leading Q1  +  sum of variable accompanying Qi
struct EurocodeExpression {
  std::string_view name;          ///< "6.10b"
  double xi, superior, inferior;  ///< of permanent actions; xi reduces superior alone
  double variable;                ///< partial factor of variable actions
  bool hasLeading;                ///< false: all variable actions accompany
  double Psi::*leading;           ///< null: 1
  double Psi::*accompanying;
};

/// The expressions of the rules, in their order.
std::vector<EurocodeExpression> ExpressionsOf(const EurocodeRules& rules);

/// Most combinations that are generated.
constexpr std::size_t kMostCombinations = 100000;

/// All combinations of the rules: per expression each variable action leading in turn, beside every
/// subset of the others; permanent actions all superior and all inferior, separate ones each on its
/// own; permanent actions alone; exclusive actions never together; no factors twice. Names are
/// that of the expression and a number: "6.10-1", "6.10-2".
///
/// Refuses more than kMostCombinations.
std::vector<Combination> GenerateCombinations(const std::vector<Action>& actions,
                                              const EurocodeRules& rules);

}  // namespace kestol
