#include "kestol/combine/Eurocode.h"

#include <algorithm>
#include <string>
#include <unordered_set>
#include <utility>

#include "kestol/combine/EurocodeSets.h"
#include "main/ErrorChannel.h"

namespace kestol {

const std::array<RuleName, 5> kRuleNames = {
    {
     {"6.10", CombinationRule::Fundamental},
     {"6.10ab", CombinationRule::FundamentalAB},
     {"characteristic", CombinationRule::Characteristic},
     {"frequent", CombinationRule::Frequent},
     {"quasi-permanent", CombinationRule::QuasiPermanent},
     }
};

namespace {

/// Lists the combinations of one expression after the other.
class Lister {
public:
  Lister(const std::vector<Action>& actions, const EurocodeRules& rules)
      : actions_(actions),
        exclusions_(actions.size(), rules.exclusive),
        groups_(PermanentGroups(actions)) {}

  void List(const EurocodeExpression& expression) {
    expression_ = &expression;
    number_ = 0;
    const std::vector<int> accompanying = Accompanying(expression, actions_);
    if (expression.hasLeading) {
      AddPermanentLevels(-1, {});
      for (int k = 0; k < static_cast<int>(actions_.size()); ++k)
        if (!actions_[k].permanent) AddSubsets(accompanying, k);
    } else {
      AddSubsets(accompanying, -1);
    }
  }

  std::vector<Combination> combinations;

private:
  [[noreturn]] static void RefuseMore() {
    Fatal("error: the rules give more than ", kMostCombinations,
          " combinations: name actions that are never together in `exclusive`, or join cases\n");
  }

  void AddSubsets(const std::vector<int>& accompanying, int leading) {
    ForEachSubset(accompanying, exclusions_, leading,
                  [&](const std::vector<int>& subset) { AddPermanentLevels(leading, subset); });
  }

  /// The variable actions with every choice of superior and inferior factors. Bit g of `levels`
  /// makes group g inferior; where both factors are the same there is one level.
  void AddPermanentLevels(int leading, const std::vector<int>& subset) {
    const bool oneLevel = SuperiorFactor(*expression_) == expression_->inferior;
    constexpr std::size_t kMostGroups = 20;  // 2^20 levels are more than anyone may have
    if (!oneLevel && groups_.size() > kMostGroups) RefuseMore();
    const std::size_t levels = oneLevel ? 1 : std::size_t{1} << groups_.size();
    for (std::size_t level = 0; level < levels; ++level) Add(level, leading, subset);
  }

  void Add(std::size_t level, int leading, const std::vector<int>& subset) {
    Combination combination;
    combination.factors.assign(actions_.size(), 0.0);
    std::vector<FormulaTerm> terms;
    const auto put = [&](int place, double factor, std::vector<double> product) {
      combination.factors[place] = factor;
      terms.push_back({std::move(product), actions_[place].name});
    };
    PutPermanent(level, put);
    PutVariable(leading, subset, put);
    if (terms.empty() || !known_.insert(FactorKey(combination.factors)).second) return;
    if (combinations.size() == kMostCombinations) RefuseMore();
    combination.name = std::string(expression_->name) + '-' + std::to_string(++number_);
    combination.formula = FormulaOf(terms);
    combinations.push_back(std::move(combination));
  }

  template <class Put>
  void PutPermanent(std::size_t level, const Put& put) const {
    const EurocodeExpression& e = *expression_;
    for (int k = 0; k < static_cast<int>(actions_.size()); ++k)
      for (std::size_t g = 0; g < groups_.size(); ++g) {
        if (std::find(groups_[g].begin(), groups_[g].end(), k) == groups_[g].end()) continue;
        if ((level >> g & 1) != 0)
          put(k, e.inferior, {e.inferior});
        else
          put(k, SuperiorFactor(e), {e.xi, e.superior});
      }
  }

  template <class Put>
  void PutVariable(int leading, const std::vector<int>& subset, const Put& put) const {
    const EurocodeExpression& e = *expression_;
    if (leading >= 0) {
      const Action& action = actions_[leading];
      const double share = e.leading == nullptr ? 1.0 : action.psi.*e.leading;
      const double factor = LeadingFactor(e, action);
      if (factor != 0.0) put(leading, factor, {e.variable, share});
    }
    for (auto place = subset.rbegin(); place != subset.rend(); ++place) {
      const Action& action = actions_[*place];
      put(*place, AccompanyingFactor(e, action), {e.variable, action.psi.*e.accompanying});
    }
  }

  const std::vector<Action>& actions_;
  Exclusions exclusions_;
  std::vector<std::vector<int>> groups_;
  const EurocodeExpression* expression_ = nullptr;
  int number_ = 0;
  std::unordered_set<std::string> known_;
};

}  // namespace

std::vector<EurocodeExpression> ExpressionsOf(const EurocodeRules& rules) {
  const PartialFactors& g = rules.gamma;
  std::vector<EurocodeExpression> expressions;
  for (const CombinationRule rule : rules.rules) switch (rule) {
      case CombinationRule::Fundamental:
        expressions.push_back(
            {"6.10", 1.0, g.superior, g.inferior, g.variable, true, nullptr, &Psi::psi0});
        break;
      case CombinationRule::FundamentalAB:
        expressions.push_back(
            {"6.10a", 1.0, g.superior, g.inferior, g.variable, false, nullptr, &Psi::psi0});
        expressions.push_back(
            {"6.10b", g.xi, g.superior, g.inferior, g.variable, true, nullptr, &Psi::psi0});
        break;
      case CombinationRule::Characteristic:
        expressions.push_back({"6.14b", 1.0, 1.0, 1.0, 1.0, true, nullptr, &Psi::psi0});
        break;
      case CombinationRule::Frequent:
        expressions.push_back({"6.15b", 1.0, 1.0, 1.0, 1.0, true, &Psi::psi1, &Psi::psi2});
        break;
      case CombinationRule::QuasiPermanent:
        expressions.push_back({"6.16b", 1.0, 1.0, 1.0, 1.0, false, nullptr, &Psi::psi2});
        break;
    }
  return expressions;
}

std::vector<Combination> GenerateCombinations(const std::vector<Action>& actions,
                                              const EurocodeRules& rules) {
  Lister lister(actions, rules);
  for (const EurocodeExpression& expression : ExpressionsOf(rules)) lister.List(expression);
  return std::move(lister.combinations);
}

}  // namespace kestol
