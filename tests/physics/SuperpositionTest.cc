#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "kestol/ReadDeck.h"
#include "kestol/combine/CaseReader.h"
#include "kestol/combine/Envelopes.h"
#include "kestol/combine/Superposition.h"
#include "tests/support/RandomCases.h"

namespace kestol {
namespace {

std::vector<CaseLoads> CasesOf(Project& project, const RandomCases& random) {
  std::vector<CaseLoads> cases;
  cases.push_back(TakeLoads(project));
  for (int k = 1; k < random.CaseCount(); ++k)
    cases.push_back(ReadCaseText(project, random.CaseText(k), "case"));
  return cases;
}

double Largest(const ReaVecT& values) {
  double largest = 0.0;
  for (const double value : values) largest = std::max(largest, std::abs(value));
  return largest;
}

/// Equal to 1e-10 of the largest entry.
void ExpectSame(const ReaVecT& found, const ReaVecT& wanted, const char* what, unsigned seed) {
  ASSERT_EQ(found.n, wanted.n) << what << ", seed " << seed;
  const double scale = Largest(wanted);
  for (int i = 1; i <= found.n; ++i)
    ASSERT_NEAR(found(i), wanted(i), 1e-10 * scale) << what << " " << i << ", seed " << seed;
}

struct PlacedValues {
  ValuePlace place;
  std::vector<double> values;  ///< derived ones too
};

std::vector<PlacedValues> ValuesOf(const Project& project, const Results& results) {
  std::vector<PlacedValues> all;
  ForEachValue(project, results, [&](const ValuePlace& place, const double* linear) {
    const ValueNames& names = NamesOf(place.kind);
    std::vector<double> values(linear, linear + names.linear);
    values.resize(static_cast<std::size_t>(names.Count()));
    AddDerived(place.kind, values.data());
    all.push_back({place, values});
  });
  return all;
}

/// The largest value of each kind, against which small ones are judged.
std::array<double, 10> ScalesOf(const std::vector<PlacedValues>& all) {
  std::array<double, 10> scales{};
  for (const auto& [place, values] : all)
    for (const double value : values) {
      double& scale = scales[static_cast<std::size_t>(place.kind)];
      scale = std::max(scale, std::abs(value));
    }
  // The axes of a support do not change what is large.
  const double reaction = scales[static_cast<std::size_t>(ValueKind::Reaction)];
  scales.back() = std::max(scales.back(), reaction);
  return scales;
}

void ExpectSameValues(const std::vector<PlacedValues>& found,
                      const std::vector<PlacedValues>& wanted, unsigned seed) {
  ASSERT_EQ(found.size(), wanted.size());
  const std::array<double, 10> scales = ScalesOf(wanted);
  for (std::size_t i = 0; i < found.size(); ++i) {
    ASSERT_EQ(found[i].place.number, wanted[i].place.number);
    for (std::size_t j = 0; j < found[i].values.size(); ++j)
      ASSERT_NEAR(found[i].values[j], wanted[i].values[j],
                  1e-10 * scales[static_cast<std::size_t>(wanted[i].place.kind)])
          << NamesOf(wanted[i].place.kind).names[j] << " of " << wanted[i].place.number << ", seed "
          << seed;
  }
}

void ExpectSameResults(const Results& found, const Results& wanted, unsigned seed) {
  ExpectSame(found.loads, wanted.loads, "loads", seed);
  ExpectSame(found.displacements, wanted.displacements, "displacements", seed);
  ExpectSame(found.nodalStresses, wanted.nodalStresses, "nodal stresses", seed);
  ASSERT_EQ(found.meshes.size(), wanted.meshes.size());
  for (std::size_t m = 0; m < found.meshes.size(); ++m) {
    ExpectSame(found.meshes[m].local, wanted.meshes[m].local, "point values", seed);
    ExpectSame(found.meshes[m].smoothed, wanted.meshes[m].smoothed, "smoothed values", seed);
    ExpectSame(found.meshes[m].main, wanted.meshes[m].main, "main values", seed);
  }
}

// The deck that carries the sum is solved by what the program itself does.
TEST(Superposition, EverySumIsOneRunOfTheSummedDeck) {
  for (unsigned seed = 1; seed <= 300; ++seed) {
    RandomCases random(seed);
    Project project = ReadDeckText(random.Model(), "model");
    Superposition sums(project, CasesOf(project, random));
    for (int trial = 0; trial < 2; ++trial) {
      const std::vector<double> factors = random.Factors();
      Project summed = ReadDeckText(random.Deck(factors), "summed");
      const Results wanted = SolveOnce(summed);
      const Results found = sums.Combine(factors);
      ExpectSameResults(found, wanted, seed);
      ExpectSameValues(ValuesOf(project, found), ValuesOf(summed, wanted), seed);
      if (testing::Test::HasFatalFailure()) return;
    }
  }
}

/// Named combinations, and those of the rules for the cases as actions of mixed categories.
struct Listed {
  std::vector<Action> actions;
  EurocodeRules rules;
  std::vector<Combination> combinations;
  std::size_t named = 0;
};

Listed ListFor(RandomCases& random, int cases) {
  Listed listed;
  const char* const categories[] = {"permanent", "live-B", "wind", "snow", "temperature"};
  std::vector<std::string> names;
  for (int k = 0; k < cases; ++k) {
    const ActionCategory& category = *FindCategory(categories[k]);
    names.push_back("C" + std::to_string(k));
    listed.actions.push_back({names.back(), category.permanent, false, category.psi});
  }
  listed.rules.rules = {CombinationRule::Fundamental, CombinationRule::Frequent};
  for (int n = 0; n < 3; ++n)
    listed.combinations.push_back(
        NamedCombination("N" + std::to_string(n), random.Factors(), names));
  listed.named = listed.combinations.size();
  for (Combination& combination : GenerateCombinations(listed.actions, listed.rules))
    listed.combinations.push_back(std::move(combination));
  return listed;
}

void ExpectEnvelopesOf(const std::vector<std::vector<PlacedValues>>& all, Envelopes& envelopes,
                       unsigned seed) {
  const std::array<double, 10> scales = ScalesOf(all[0]);
  std::size_t place = 0;
  for (; envelopes.Next(); ++place) {
    const PlaceEnvelope& envelope = envelopes.Current();
    const double tolerance =
        1e-9 * std::max(scales[static_cast<std::size_t>(envelope.place.kind)], 1e-12);
    for (std::size_t i = 0; i < all[0][place].values.size(); ++i) {
      double least = all[0][place].values[i], largest = least;
      for (const auto& combination : all) {
        least = std::min(least, combination[place].values[i]);
        largest = std::max(largest, combination[place].values[i]);
      }
      ASSERT_NEAR(envelope.least[i].values[i], least, tolerance) << "seed " << seed;
      ASSERT_NEAR(envelope.largest[i].values[i], largest, tolerance) << "seed " << seed;
      for (const Extreme* extreme : {&envelope.least[i], &envelope.largest[i]}) {
        const auto& governing = all[static_cast<std::size_t>(extreme->combination)][place];
        ASSERT_EQ(governing.place.number, envelope.place.number);
        for (std::size_t j = 0; j < governing.values.size(); ++j)
          ASSERT_NEAR(extreme->values[j], governing.values[j], tolerance) << "seed " << seed;
      }
    }
  }
  ASSERT_EQ(place, all[0].size());
}

TEST(Envelopes, AreThoseOfAllCombinationsOneByOne) {
  for (unsigned seed = 1; seed <= 32; ++seed) {
    RandomCases random(seed);
    Project project = ReadDeckText(random.Model(), "model");
    Superposition sums(project, CasesOf(project, random));
    const Listed listed = ListFor(random, sums.CaseCount());
    std::vector<std::vector<PlacedValues>> all;
    for (const Combination& combination : listed.combinations) {
      const Results results = sums.Combine(combination.factors);
      all.push_back(ValuesOf(project, results));
    }
    const ExtremeFinder every(listed.combinations);
    ExtremeFinder quick(listed.combinations);
    quick.UseRules(listed.actions, listed.rules, listed.named);
    for (const ExtremeFinder* finder : {&every, static_cast<const ExtremeFinder*>(&quick)}) {
      Envelopes whole(sums, *finder);
      ExpectEnvelopesOf(all, whole, seed);
    }
    Envelopes inBlocks(sums, every, 500);
    ExpectEnvelopesOf(all, inBlocks, seed);
    if (testing::Test::HasFatalFailure()) return;
  }
}

// The search must give the listing's extremes also where there are many combinations.
TEST(Envelopes, SearchEqualsTheListingOfManyCombinations) {
  std::vector<Action> actions = {
      {"G", true, false, {}}
  };
  for (int k = 0; k < 9; ++k)
    actions.push_back({"Q" + std::to_string(k), false, false, ActionCategories()[k % 11 + 1].psi});
  EurocodeRules rules;
  rules.rules = {CombinationRule::FundamentalAB};
  rules.exclusive = {
      {1, 2, 3},
      {3, 4 }
  };
  const std::vector<Combination> combinations = GenerateCombinations(actions, rules);
  EXPECT_GT(combinations.size(), kManyCombinations);
  const ExtremeFinder every(combinations);
  ExtremeFinder quick(combinations);
  quick.UseRules(actions, rules, 0);
  std::vector<double> values(actions.size() * 6);
  for (std::size_t i = 0; i < values.size(); ++i)
    values[i] = std::sin(12.9898 * static_cast<double>(i + 1)) * 100.0;
  PlaceEnvelope a, b;
  a.place = b.place = {ValueKind::NodalStress, 1};
  every.Find(values.data(), 6, a);
  quick.Find(values.data(), 6, b);
  for (std::size_t i = 0; i < 7; ++i) {
    EXPECT_EQ(a.least[i].values, b.least[i].values);
    EXPECT_EQ(a.largest[i].values, b.largest[i].values);
  }
}

}  // namespace
}  // namespace kestol
