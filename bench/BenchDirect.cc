// Whole runs of decks with the sparse direct solver and with the skyline, one after the other in
// one process:
//
//     bench_direct [-n TIMES] DECK...
//
// Reading, solution (with strengths and reactions) and the result file, in seconds of the
// processor; the best of the runs. The ratio is that of the totals.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>

#include "kestol/LinearSystem.h"
#include "kestol/ReadDeck.h"
#include "main/ErrorChannel.h"
#include "output/OutputText.h"
#include "output/VemoFiles.h"

namespace kestol {

namespace {

/// Seconds of the processor that this process had so far.
double Now() {
  return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

struct Seconds {
  double reading, solution, writing;
  double Total() const { return reading + solution + writing; }
};

Seconds RunOnce(const char* deck, SolverName solver) {
  const double start = Now();
  Project project = ReadDeck(deck);
  const double isRead = Now();
  SolveOptions options;
  options.solver = solver;
  const Results results = SolveOnce(project, options);
  const double isSolved = Now();
  OutputText text(std::string("/dev/null"));
  WriteVemoFiles(project, results, text, nullptr);
  text.Close();
  return {isRead - start, isSolved - isRead, Now() - isSolved};
}

Seconds Best(const char* deck, SolverName solver, int times) {
  Seconds best = RunOnce(deck, solver);
  for (int i = 1; i < times; ++i) {
    const Seconds next = RunOnce(deck, solver);
    if (next.Total() < best.Total()) best = next;
  }
  return best;
}

void Print(const char* name, const Seconds& s) {
  std::printf("  %-8s reading %.3f  solution %.3f  writing %.3f  total %.3f\n", name, s.reading,
              s.solution, s.writing, s.Total());
}

void Compare(const char* deck, int times) {
  std::printf("%s\n", deck);
  const Seconds direct = Best(deck, SolverName::Direct, times);
  Print("Direct", direct);
  const Seconds skyline = Best(deck, SolverName::SkyLine, times);
  Print("SkyLine", skyline);
  std::printf("  ratio    %.2f\n", direct.Total() / skyline.Total());
}

}  // namespace

}  // namespace kestol

int main(int argc, char** argv) {
  try {
    const bool counts = argc > 2 && std::strcmp(argv[1], "-n") == 0;
    const int times = counts ? std::atoi(argv[2]) : 1;
    for (int i = counts ? 3 : 1; i < argc; ++i) kestol::Compare(argv[i], times);
  } catch (const kestol::FatalError& refusal) {
    kestol::ErrorExit(refusal);
  }
}
