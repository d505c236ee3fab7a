// Solves decks over the processes of mpirun and compares every value with the solver's own SkyLine:
//
//     mpirun -n P compare_decks [--gamg | --hypre] DECK...
//
// Many decks at a start: starting takes longer than solving. Ends with 1 when a value differs.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "kestol/LinearSystem.h"
#include "kestol/ReadDeck.h"
#include "main/ErrorChannel.h"
#include "programs/common/RunProgram.h"
#include "programs/mpi/MpiRun.h"

namespace kestol {

namespace {

double LargestOf(const ReaVecT& values) {
  double largest = 0.0;
  for (const double value : values) largest = std::max(largest, std::abs(value));
  return largest;
}

/// Values of all reactions; supports stand in the order of their nodes.
ReaVecT Values(const std::vector<Reaction>& reactions) {
  ReaVecT values(static_cast<int>(reactions.size()) * 6);
  double* to = values.begin();
  for (const Reaction& reaction : reactions)
    to = std::copy(reaction.values.begin(), reaction.values.end(), to);
  return values;
}

/// Everything that is compared, with the part of the largest value that may differ.
struct Quantity {
  std::string name;
  ReaVecT values;
  double tolerance;
};

std::vector<Quantity> QuantitiesOf(const Results& results) {
  constexpr double kSame = 1e-12, kDisplacements = 1e-7, kForces = 1e-6;
  std::vector<Quantity> all;
  const auto add = [&](const char* name, const ReaVecT& values, double tolerance) {
    all.push_back({name, values, tolerance});
  };
  add("loads", results.loads, kSame);
  add("displacements", results.displacements, kDisplacements);
  add("reactions", Values(results.reactions), kForces);
  for (const PointValues& mesh : results.meshes) {
    add("values", mesh.local, kForces);
    add("smoothed values", mesh.smoothed, kForces);
    add("main values", mesh.main, kForces);
  }
  add("nodal stresses", results.nodalStresses, kForces);
  return all;
}

double LargestDifference(const ReaVecT& a, const ReaVecT& b) {
  double largest = a.n == b.n ? 0.0 : HUGE_VAL;
  for (int i = 1; i <= std::min(a.n, b.n); ++i) {
    const double difference = std::abs(a(i) - b(i));
    if (!(difference <= largest)) largest = difference;
  }
  return largest;
}

std::vector<Quantity> Expected(const std::string& deck, SolverName solver) {
  Project project = ReadDeck(deck);
  LinearSystem system(project, {.solver = solver, .renumber = false});
  return QuantitiesOf(system.SolveDeck());
}

/// How far rounding carries the solver itself: its two solvers differ by so much. Thin plates lose
/// more digits than the tolerances allow.
double Rounding(const std::string& deck, const std::vector<Quantity>& expected, std::size_t q) {
  constexpr double kFew = 4.0, kMost = 1e-5;
  const std::vector<Quantity> other = Expected(deck, SolverName::Sparse);
  return std::min(kFew * LargestDifference(expected[q].values, other[q].values),
                  kMost * LargestOf(expected[q].values));
}

int Compare(const std::string& deck, const Results& results) {
  const std::vector<Quantity> expected = Expected(deck, SolverName::SkyLine);
  const std::vector<Quantity> found = QuantitiesOf(results);
  int faults = expected.size() == found.size() ? 0 : 1;
  for (std::size_t q = 0; q < std::min(expected.size(), found.size()); ++q) {
    const double difference = LargestDifference(expected[q].values, found[q].values);
    const double largest = LargestOf(expected[q].values);
    if (difference <= expected[q].tolerance * largest) continue;
    if (difference <= Rounding(deck, expected, q)) continue;
    std::fprintf(stderr, "%s: %s differ by %.3g, the largest is %.6g\n", deck.c_str(),
                 expected[q].name.c_str(), difference, largest);
    ++faults;
  }
  return faults;
}

struct Wishes {
  MpiOptions options;
  std::vector<std::string> decks;
};

Wishes WishesOf(int argc, char** argv) {
  Wishes wishes;
  wishes.options.quiet = true;
  wishes.options.resultFile = "/dev/null";
  for (int a = 1; a < argc; ++a) {
    const std::string word = argv[a];
    if (word == "--gamg")
      wishes.options.solver = MpiSolver::Gamg;
    else if (word == "--hypre")
      wishes.options.solver = MpiSolver::Hypre;
    else
      wishes.decks.push_back(word);
  }
  return wishes;
}

int CompareAll(Team& team, const Wishes& wishes) {
  int compared = 0, faults = 0;
  for (const std::string& deck : wishes.decks) {
    MpiOptions options = wishes.options;
    options.deck = deck;
    const int status = RunProgram("compare_decks", "", [&] {
      try {
        return RunOnAll(team, options, [&](const Project&, const Results& results, OutputFiles&) {
          faults += Compare(deck, results);
          ++compared;
        });
      } catch (const ToldElsewhere&) {
        return kDone;
      } catch (const FatalError& refusal) {
        PrintRefusal(deck, refusal);
        return kFailed;
      }
    });
    if (status != kDone) ++faults;
  }
  if (team.IsFirst()) std::printf("%d decks compared, %d faults\n", compared, faults);
  return faults == 0 && (compared > 0 || !team.IsFirst()) ? 0 : 1;
}

}  // namespace

}  // namespace kestol

int main(int argc, char** argv) {
  kestol::Team team(&argc, &argv);
  const int status = kestol::CompareAll(team, kestol::WishesOf(argc, argv));
  // Every process came to the end: the status is no reason to stop the others.
  return team.Any(status != 0) ? 1 : 0;
}
