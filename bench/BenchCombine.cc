// Many load cases on one model against one run and as many substitutions:
//
//     bench/make_frame.py 40 9 9 > frame.dat
//     bench_combine frame.dat 100 skyline
#include <sys/resource.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>
#include <utility>
#include <vector>

#include "algebra/StiffnessMatrix.h"
#include "kestol/ReadDeck.h"
#include "kestol/combine/CaseReader.h"
#include "kestol/combine/Superposition.h"
#include "main/ErrorChannel.h"

namespace kestol {
namespace {

/// Processor time: other processes do not count.
double Now() {
  return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

double PeakMegabytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

/// Case k loads a hundred nodes, each its own way.
std::string CaseText(int k, int nodes, int dofs) {
  std::string text = "nodal_point_loads\n";
  for (int i = 0; i < 100; ++i) {
    text += std::to_string(1 + (17 * k + 41 * i) % nodes);
    for (int d = 0; d < dofs; ++d) text += ' ' + std::to_string(((k + i + d) % 7 - 3) * 100);
    text += '\n';
  }
  return text + "end\n";
}

/// Reading, one solution by the same solver with all that the program computes; then substitutions
/// alone.
std::pair<double, double> OneRun(const std::string& deck, const SolveOptions& options, int count) {
  const double start = Now();
  Project project = ReadDeck(deck);
  LinearSystem system(project, options);
  system.SolveDeck();
  const double run = Now() - start;
  ReaVecT f = system.DeckLoads();
  const double begin = Now();
  for (int k = 0; k < count; ++k) system.Factor().Substitute(f, nullptr);
  return {run, Now() - begin};
}

double AllCases(const std::string& deck, const SolveOptions& options, int count) {
  const double start = Now();
  Project project = ReadDeck(deck);
  std::vector<CaseLoads> cases;
  cases.push_back(TakeLoads(project));
  for (int k = 1; k < count; ++k)
    cases.push_back(
        ReadCaseText(project, CaseText(k, project.numNodes, project.dofsPerNode), "case"));
  Superposition sums(project, std::move(cases), options);
  sums.Solve();
  return Now() - start;
}

int Bench(const std::string& deck, int count, const SolveOptions& options) {
  const double cases = AllCases(deck, options, count);
  const double peak = PeakMegabytes();
  const auto [run, substitutions] = OneRun(deck, options, count);
  std::printf(
      "%d cases %.3f s, peak %.0f MB; one run %.3f s, %d substitutions %.3f s; ratio %.2f\n", count,
      cases, peak, run, count, substitutions, cases / (run + substitutions));
  return 0;
}

}  // namespace
}  // namespace kestol

int main(int argc, char** argv) {
  if (argc < 3) return std::fputs("bench_combine DECK CASES [skyline|direct|deck]\n", stderr), 2;
  kestol::SolveOptions options;
  if (argc > 3 && std::strcmp(argv[3], "skyline") == 0)
    options.solver = kestol::SolverName::SkyLine;
  if (argc > 3 && std::strcmp(argv[3], "direct") == 0) options.solver = kestol::SolverName::Direct;
  try {
    return kestol::Bench(argv[1], std::atoi(argv[2]), options);
  } catch (const kestol::FatalError& refusal) {
    std::fputs(refusal.what(), stderr);
    return 2;
  }
}
