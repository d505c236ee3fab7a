#include <numeric>
#include <set>

#include "kestol/combine/Eurocode.h"
#include "kestol/combine/GoverningCombination.h"
#include "tests/support/ExpectFatal.h"

namespace kestol {
namespace {

using testing::Contains;
using testing::ElementsAre;

Action Of(const std::string& name, const char* category, bool separate = false) {
  const ActionCategory& found = *FindCategory(category);
  return {name, found.permanent, separate, found.psi};
}

EurocodeRules Rules(std::vector<CombinationRule> rules) {
  EurocodeRules all;
  all.rules = std::move(rules);
  return all;
}

std::vector<std::vector<double>> FactorsOf(const std::vector<Combination>& combinations) {
  std::vector<std::vector<double>> factors;
  for (const Combination& combination : combinations) factors.push_back(combination.factors);
  return factors;
}

std::vector<std::string> FormulasOf(const std::vector<Combination>& combinations) {
  std::vector<std::string> formulas;
  for (const Combination& combination : combinations) formulas.push_back(combination.formula);
  return formulas;
}

const std::vector<Action> kSnowAndWind = {Of("G", "permanent"), Of("S", "snow"), Of("W", "wind")};

TEST(ActionCategories, HaveTheSharesOfTheTable) {
  const std::vector<std::pair<const char*, std::array<double, 3>>> table = {
      {"live-A",      {0.7, 0.5, 0.3}},
      {"live-B",      {0.7, 0.5, 0.3}},
      {"live-C",      {0.7, 0.7, 0.6}},
      {"live-D",      {0.7, 0.7, 0.6}},
      {"live-E",      {1.0, 0.9, 0.8}},
      {"live-F",      {0.7, 0.7, 0.6}},
      {"live-G",      {0.7, 0.5, 0.3}},
      {"live-H",      {0.0, 0.0, 0.0}},
      {"snow",        {0.5, 0.2, 0.0}},
      {"wind",        {0.6, 0.2, 0.0}},
      {"temperature", {0.6, 0.5, 0.0}},
  };
  EXPECT_EQ(ActionCategories().size(), table.size() + 1);
  for (const auto& [name, psi] : table) {
    const ActionCategory* const category = FindCategory(name);
    ASSERT_NE(category, nullptr) << name;
    EXPECT_FALSE(category->permanent);
    EXPECT_EQ((std::array{category->psi.psi0, category->psi.psi1, category->psi.psi2}), psi)
        << name;
  }
  EXPECT_TRUE(FindCategory("permanent")->permanent);
  EXPECT_EQ(FindCategory("Snow"), nullptr);
}

TEST(Eurocode, ListsEveryLeadingActionWithEverySubsetAndBothPermanentFactors) {
  const auto combinations =
      GenerateCombinations(kSnowAndWind, Rules({CombinationRule::Fundamental}));
  EXPECT_THAT(FormulasOf(combinations),
              ElementsAre("1.35 G", "G", "1.35 G + 1.5 S", "G + 1.5 S",
                          "1.35 G + 1.5 S + 1.5*0.6 W", "G + 1.5 S + 1.5*0.6 W", "1.35 G + 1.5 W",
                          "G + 1.5 W", "1.35 G + 1.5 W + 1.5*0.5 S", "G + 1.5 W + 1.5*0.5 S"));
  EXPECT_EQ(combinations[4].factors, (std::vector<double>{1.35, 1.5, 0.9}));
  EXPECT_EQ(combinations[8].factors, (std::vector<double>{1.35, 0.75, 1.5}));
  EXPECT_EQ(combinations.front().name, "6.10-1");
  EXPECT_EQ(combinations.back().name, "6.10-10");
}

TEST(Eurocode, PairOfExpressionsHasNoLeadingActionInTheFirstAndReducesPermanentInTheSecond) {
  const std::vector<Action> actions = {Of("G", "permanent"), Of("Q", "live-B")};
  const auto combinations = GenerateCombinations(actions, Rules({CombinationRule::FundamentalAB}));
  EXPECT_THAT(FormulasOf(combinations),
              ElementsAre("1.35 G", "G", "1.35 G + 1.5*0.7 Q", "G + 1.5*0.7 Q", "0.85*1.35 G",
                          "0.85*1.35 G + 1.5 Q", "G + 1.5 Q"));
  EXPECT_EQ(combinations[2].name, "6.10a-3");
  EXPECT_EQ(combinations[4].name, "6.10b-1");  // G alone at 1 stands in 6.10a
  EXPECT_EQ(combinations[5].factors, (std::vector<double>{1.1475, 1.5}));
}

TEST(Eurocode, ServiceabilityTakesTheShareOfTheExpression) {
  const std::vector<Action> actions = {Of("G", "permanent"), Of("Q", "live-B"), Of("S", "snow")};
  EXPECT_THAT(FormulasOf(GenerateCombinations(actions, Rules({CombinationRule::Characteristic}))),
              ElementsAre("G", "G + Q", "G + Q + 0.5 S", "G + S", "G + S + 0.7 Q"));
  EXPECT_THAT(FormulasOf(GenerateCombinations(actions, Rules({CombinationRule::Frequent}))),
              ElementsAre("G", "G + 0.5 Q", "G + 0.2 S", "G + 0.2 S + 0.3 Q"));
  EXPECT_THAT(FormulasOf(GenerateCombinations(actions, Rules({CombinationRule::QuasiPermanent}))),
              ElementsAre("G", "G + 0.3 Q"));
}

TEST(Eurocode, ExclusiveActionsAreNeverTogether) {
  std::vector<Action> actions = kSnowAndWind;
  actions.push_back(Of("W2", "wind"));
  EurocodeRules rules = Rules({CombinationRule::Fundamental, CombinationRule::QuasiPermanent});
  rules.exclusive = {
      {2, 3}
  };
  const auto combinations = GenerateCombinations(actions, rules);
  for (const auto& factors : FactorsOf(combinations))
    EXPECT_TRUE(factors[2] == 0.0 || factors[3] == 0.0);
  EXPECT_THAT(FactorsOf(combinations), Contains(std::vector<double>{1.35, 1.5, 0.0, 0.9}));
  EXPECT_EQ(combinations.size(), 2 * (1 + 3 + 2 + 2));
}

TEST(Eurocode, SeparatePermanentActionHasItsOwnFactor) {
  const std::vector<Action> actions = {Of("G1", "permanent"), Of("G2", "permanent"),
                                       Of("H", "permanent", true)};
  const auto factors =
      FactorsOf(GenerateCombinations(actions, Rules({CombinationRule::Fundamental})));
  EXPECT_THAT(factors, ElementsAre(ElementsAre(1.35, 1.35, 1.35), ElementsAre(1.0, 1.0, 1.35),
                                   ElementsAre(1.35, 1.35, 1.0), ElementsAre(1.0, 1.0, 1.0)));
}

TEST(Eurocode, NothingIsListedTwice) {
  const std::vector<Action> actions = {Of("G", "permanent"), Of("E1", "live-E"), Of("E2", "live-E"),
                                       Of("H", "live-H")};
  const auto factors = FactorsOf(GenerateCombinations(
      actions, Rules({CombinationRule::Fundamental, CombinationRule::FundamentalAB,
                      CombinationRule::Characteristic, CombinationRule::Frequent,
                      CombinationRule::QuasiPermanent})));
  EXPECT_EQ(std::set(factors.begin(), factors.end()).size(), factors.size());
}

TEST(Eurocode, ActionWithoutAShareLeavesNoTerm) {
  const std::vector<Action> actions = {Of("Q", "live-A"), Of("H", "live-H")};
  const auto combinations =
      GenerateCombinations(actions, Rules({CombinationRule::Fundamental, CombinationRule::Frequent,
                                           CombinationRule::QuasiPermanent}));
  EXPECT_THAT(FormulasOf(combinations),
              ElementsAre("1.5 Q", "1.5 H", "1.5 H + 1.5*0.7 Q", "0.5 Q", "0.3 Q"));
  EXPECT_EQ(combinations.back().name, "6.15b-2");  // beside H, whose frequent share is 0
}

TEST(Eurocode, OverriddenFactorsAreUsedInTheUltimateLimitStatesOnly) {
  EurocodeRules rules = Rules({CombinationRule::Fundamental, CombinationRule::Characteristic});
  rules.gamma = {1.2, 0.9, 1.6, 1.0};
  const std::vector<Action> actions = {Of("G", "permanent"), Of("Q", "live-A")};
  EXPECT_THAT(FactorsOf(GenerateCombinations(actions, rules)),
              ElementsAre(ElementsAre(1.2, 0.0), ElementsAre(0.9, 0.0), ElementsAre(1.2, 1.6),
                          ElementsAre(0.9, 1.6), ElementsAre(1.0, 0.0), ElementsAre(1.0, 1.0)));
}

TEST(Eurocode, TooManyCombinationsAreRefused) {
  std::vector<Action> actions = {Of("G", "permanent")};
  for (int k = 0; k < 14; ++k) actions.push_back(Of("Q" + std::to_string(k), "live-A"));
  EXPECT_FATAL(GenerateCombinations(actions, Rules({CombinationRule::Fundamental})),
               "error: the rules give more than 100000 combinations: name actions that are never "
               "together in `exclusive`, or join cases\n");
}

// --- worked examples of textbooks ---------------------------------------------------------------

// CTICM and SCI, "Steel Buildings in Europe: Multi-Storey Steel Buildings, Part 3: Actions",
// page 5: expression 6.10 with snow leading, and with wind leading.
TEST(EurocodeWorkedExamples, SnowAndWindLeadInTurn) {
  const auto factors =
      FactorsOf(GenerateCombinations(kSnowAndWind, Rules({CombinationRule::Fundamental})));
  EXPECT_THAT(factors, Contains(std::vector<double>{1.35, 1.5, 0.9}));
  EXPECT_THAT(factors, Contains(std::vector<double>{1.35, 0.75, 1.5}));
}

// The same book, page 6: characteristic combinations with snow leading, beside wind and beside the
// imposed load of an office.
TEST(EurocodeWorkedExamples, CharacteristicSnowBesideWindAndOffice) {
  const std::vector<Action> actions = {Of("G", "permanent"), Of("S", "snow"), Of("W", "wind"),
                                       Of("Q", "live-B")};
  const auto factors =
      FactorsOf(GenerateCombinations(actions, Rules({CombinationRule::Characteristic})));
  EXPECT_THAT(factors, Contains(std::vector<double>{1.0, 1.0, 0.6, 0.0}));
  EXPECT_THAT(factors, Contains(std::vector<double>{1.0, 1.0, 0.0, 0.7}));
}

// The same book, pages 6 and 7: frequent combinations with snow leading, alone (wind has a share of
// 0) and beside the office; the quasi-permanent one.
TEST(EurocodeWorkedExamples, FrequentSnowAndQuasiPermanentOffice) {
  const std::vector<Action> actions = {Of("G", "permanent"), Of("S", "snow"), Of("W", "wind"),
                                       Of("Q", "live-B")};
  const auto frequent =
      FactorsOf(GenerateCombinations(actions, Rules({CombinationRule::Frequent})));
  EXPECT_THAT(frequent, Contains(std::vector<double>{1.0, 0.2, 0.0, 0.0}));
  EXPECT_THAT(frequent, Contains(std::vector<double>{1.0, 0.2, 0.0, 0.3}));
  EXPECT_THAT(FactorsOf(GenerateCombinations(actions, Rules({CombinationRule::QuasiPermanent}))),
              ElementsAre(ElementsAre(1.0, 0.0, 0.0, 0.0), ElementsAre(1.0, 0.0, 0.0, 0.3)));
}

// CTICM and SCI, "Steel Buildings in Europe: Single-Storey Steel Buildings, Part 3: Actions",
// page 6: characteristic and frequent combinations with wind leading.
TEST(EurocodeWorkedExamples, WindLeadsInServiceability) {
  const auto characteristic =
      FactorsOf(GenerateCombinations(kSnowAndWind, Rules({CombinationRule::Characteristic})));
  EXPECT_THAT(characteristic, Contains(std::vector<double>{1.0, 0.5, 1.0}));
  const auto frequent =
      FactorsOf(GenerateCombinations(kSnowAndWind, Rules({CombinationRule::Frequent})));
  EXPECT_THAT(frequent, Contains(std::vector<double>{1.0, 0.0, 0.2}));
}

// C. H. Goodchild and others, "Worked Examples to Eurocode 2", The Concrete Centre, example 3.1,
// pages 37 and 38: a slab with 5.9 kN/m2 permanent and 3.3 kN/m2 imposed load of an office carries
// 12.3 kN/m2 by 6.10b with xi = 0.925, and 5.9 + 0.3 x 3.3 in the quasi-permanent combination.
TEST(EurocodeWorkedExamples, SlabByExpressionB) {
  const std::vector<Action> actions = {Of("G", "permanent"), Of("Q", "live-B")};
  EurocodeRules rules = Rules({CombinationRule::FundamentalAB});
  rules.gamma.xi = 0.925;
  double largest = 0.0;
  for (const Combination& combination : GenerateCombinations(actions, rules))
    if (combination.name.starts_with("6.10b"))
      largest = std::max(largest, combination.factors[0] * 5.9 + combination.factors[1] * 3.3);
  EXPECT_NEAR(largest, 12.3, 0.05);
  const auto lasting = GenerateCombinations(actions, Rules({CombinationRule::QuasiPermanent}));
  EXPECT_EQ(lasting.back().factors, (std::vector<double>{1.0, 0.3}));
}

// --- the search for the governing combination ---------------------------------------------------

/// A repeatable sequence of numbers in (-1, 1).
class Numbers {
public:
  explicit Numbers(unsigned seed) : state_(seed * 2654435761u + 1u) {}
  double Next() {
    state_ = state_ * 1664525u + 1013904223u;
    return static_cast<double>(state_ >> 8) / (1 << 23) - 1.0;
  }
  int Below(int n) { return static_cast<int>((Next() + 1.0) / 2.0 * n) % n; }

private:
  unsigned state_;
};

TEST(GoverningCombination, IsTheBestOfTheListing) {
  constexpr CombinationRule kAll[] = {CombinationRule::Fundamental, CombinationRule::FundamentalAB,
                                      CombinationRule::Characteristic, CombinationRule::Frequent,
                                      CombinationRule::QuasiPermanent};
  const auto categories = ActionCategories();
  for (unsigned seed = 1; seed <= 200; ++seed) {
    Numbers numbers(seed);
    std::vector<Action> actions = {Of("G", "permanent")};
    const int count = 2 + numbers.Below(7);
    for (int k = 0; k < count; ++k) {
      const auto& category = categories[static_cast<std::size_t>(numbers.Below(12))];
      actions.push_back(
          {"A" + std::to_string(k), category.permanent, numbers.Below(2) == 0, category.psi});
    }
    EurocodeRules rules = Rules({kAll[numbers.Below(5)], kAll[numbers.Below(5)]});
    for (int g = numbers.Below(3); g > 0; --g) {
      std::vector<int> group;
      for (int k = 1; k <= count; ++k)
        if (!actions[static_cast<std::size_t>(k)].permanent && numbers.Below(2) == 0)
          group.push_back(k);
      rules.exclusive.push_back(group);
    }
    const auto listing = GenerateCombinations(actions, rules);
    const GoverningCombination governing(actions, rules);
    const auto factors = FactorsOf(listing);
    const std::set<std::vector<double>> listed(factors.begin(), factors.end());
    for (int trial = 0; trial < 20; ++trial) {
      std::vector<double> values(actions.size()), found;
      for (double& value : values) value = numbers.Below(4) == 0 ? 0.0 : numbers.Next();
      for (const double sign : {-1.0, 1.0}) {
        governing.Find(values.data(), sign, found);
        ASSERT_EQ(listed.count(found), 1u) << "seed " << seed;
        const auto sum = [&](const std::vector<double>& f) {
          return std::inner_product(f.begin(), f.end(), values.begin(), 0.0);
        };
        double best = sign * sum(factors.front());
        for (const auto& f : factors) best = std::max(best, sign * sum(f));
        ASSERT_NEAR(sign * sum(found), best, 1e-14) << "seed " << seed;
      }
    }
  }
}

// --- formulas -----------------------------------------------------------------------------------

TEST(Formula, SignsStandBetweenTheTerms) {
  EXPECT_EQ(FormulaOf({1.35, 0.0, -0.5}, {"G", "Q", "W"}), "1.35 G - 0.5 W");
  EXPECT_EQ(FormulaOf({-1.0, 1.0}, {"G", "Q"}), "-G + Q");
  EXPECT_EQ(FormulaOf({0.0}, {"G"}), "0");
}

}  // namespace
}  // namespace kestol
