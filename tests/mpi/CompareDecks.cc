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

/// Counts what differs by more than a part of the largest value.
class Comparison {
public:
  explicit Comparison(const std::string& deck) : deck_(deck) {}

  void Compare(const char* what, const ReaVecT& expected, const ReaVecT& found, double tolerance) {
    if (expected.n != found.n) return Report(what, 0, expected.n, found.n);
    const double allowed = tolerance * LargestOf(expected);
    for (int i = 1; i <= expected.n; ++i)
      if (!(std::abs(expected(i) - found(i)) <= allowed))
        return Report(what, i, expected(i), found(i));
  }

  int Faults() const { return faults_; }

private:
  void Report(const char* what, int place, double expected, double found) {
    std::fprintf(stderr, "%s: %s, entry %d: %.12g, not %.12g\n", deck_.c_str(), what, place, found,
                 expected);
    ++faults_;
  }

  const std::string& deck_;
  int faults_ = 0;
};

/// Values of all reactions; supports stand in the same order.
ReaVecT Values(const std::vector<Reaction>& reactions) {
  ReaVecT values(static_cast<int>(reactions.size()) * 6);
  double* to = values.begin();
  for (const Reaction& reaction : reactions)
    to = std::copy(reaction.values.begin(), reaction.values.end(), to);
  return values;
}

int Compare(const std::string& deck, const Results& found) {
  constexpr double kDisplacements = 1e-7, kForces = 1e-6;
  Project project = ReadDeck(deck);
  LinearSystem system(project, {.solver = SolverName::SkyLine, .renumber = false});
  const Results expected = system.SolveDeck();
  Comparison comparison(deck);
  comparison.Compare("loads", expected.loads, found.loads, 1e-12);
  comparison.Compare("displacements", expected.displacements, found.displacements, kDisplacements);
  comparison.Compare("reactions", Values(expected.reactions), Values(found.reactions), kForces);
  for (std::size_t m = 0; m < expected.meshes.size(); ++m) {
    comparison.Compare("values", expected.meshes[m].local, found.meshes[m].local, kForces);
    comparison.Compare("smoothed values", expected.meshes[m].smoothed, found.meshes[m].smoothed,
                       kForces);
    comparison.Compare("main values", expected.meshes[m].main, found.meshes[m].main, kForces);
  }
  comparison.Compare("nodal stresses", expected.nodalStresses, found.nodalStresses, kForces);
  return comparison.Faults();
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
        return RunOnAll(team, options, [&](const Project&, const Results& results) {
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
