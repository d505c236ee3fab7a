// Whole runs of decks with the sparse direct solver and with the skyline, one after the other in
// one process:
//
//     bench_direct [-n TIMES] DECK...
//
// Reading, solution, strengths and the result file, in seconds of the processor; the best of the
// runs. The ratio is that of the totals.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>
#include <string>

#include "algebra/SkyLine.h"
#include "analysis/Assembly.h"
#include "analysis/Hinges.h"
#include "analysis/ShellMesh.h"
#include "analysis/Sizes.h"
#include "analysis/SolveDriver.h"
#include "analysis/Strengths.h"
#include "direct/DirectSolver.h"
#include "input/Project.h"
#include "input/ProjectReader.h"
#include "input/TextInput.h"
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
  double reading, solution, strengths, writing;
  double Total() const { return reading + solution + strengths + writing; }
};

void SolveDirectly(Project& project) {
  if (project.hasRotules) PrepareHinges(project);
  CheckNormals(project);
  project.solver = std::make_unique<DirectSolver>(EquationCount(project));
  project.global.Resize(EquationCount(project), 0.0);
  AssembleAndSolve(project, nullptr);
}

Seconds RunOnce(const char* deck, bool direct) {
  const double start = Now();
  std::FILE* const file = std::fopen(deck, "r");
  if (file == nullptr) Fatal("can't open file ", deck, "\n");
  TextInput input(file);
  Project project(100);
  ReadProject(project, input);
  const double isRead = Now();
  if (direct) {
    SolveDirectly(project);
  } else {
    project.solverChoice = SolveSkyLine;
    SolveProject(project, 1, nullptr);
  }
  const double isSolved = Now();
  ComputeStrengths(project, nullptr);
  const double hasStrengths = Now();
  OutputText results(std::string("/dev/null"));
  WriteVemoFiles(project, results, nullptr);
  results.Close();
  return {isRead - start, isSolved - isRead, hasStrengths - isSolved, Now() - hasStrengths};
}

Seconds Best(const char* deck, bool direct, int times) {
  Seconds best = RunOnce(deck, direct);
  for (int i = 1; i < times; ++i) {
    const Seconds next = RunOnce(deck, direct);
    if (next.Total() < best.Total()) best = next;
  }
  return best;
}

void Print(const char* name, const Seconds& s) {
  std::printf("  %-8s read %.3f  solution %.3f  strengths %.3f  writing %.3f  total %.3f\n", name,
              s.reading, s.solution, s.strengths, s.writing, s.Total());
}

void Compare(const char* deck, int times) {
  std::printf("%s\n", deck);
  const Seconds direct = Best(deck, true, times);
  Print("direct", direct);
  const Seconds skyline = Best(deck, false, times);
  Print("SkyLine", skyline);
  std::printf("  ratio    %.2f\n", direct.Total() / skyline.Total());
}

}  // namespace

}  // namespace kestol

int main(int argc, char** argv) {
  try {
    int first = 1;
    int times = 1;
    if (argc > 2 && std::strcmp(argv[1], "-n") == 0) {
      times = std::atoi(argv[2]);
      first = 3;
    }
    for (int i = first; i < argc; ++i) kestol::Compare(argv[i], times);
  } catch (const kestol::FatalError& refusal) {
    kestol::ErrorExit(refusal);
  }
}
