#include <chrono>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include "analysis/SolveDriver.h"
#include "analysis/Strengths.h"
#include "input/Project.h"
#include "input/ProjectReader.h"
#include "input/TextInput.h"
#include "main/CommandLine.h"
#include "main/DeckGuard.h"
#include "main/ErrorChannel.h"
#include "output/InfoFile.h"
#include "output/ResultFiles.h"

namespace kestol {

namespace {

using Clock = std::chrono::steady_clock;

/// Numbers per block of the project's containers.
constexpr int kCapacity = 100;

std::FILE* OpenFile(const char* name, const char* mode) {
  std::FILE* const file = std::fopen(name, mode);
  if (file == nullptr) Fatal("can't open file ", name, "\n");
  return file;
}

/// The information stream: null, standard output, or `file` when it is opened.
std::ostream* OpenInfo(const char* name, std::ofstream& file) {
  if (name == nullptr) return nullptr;
  if (IsStandardOutput(name)) return &std::cout;
  file.open(name);
  if (!file) Fatal("can't open file ", name, "\n");
  return &file;
}

void OpenErrorFile(const char* name) {
  if (name == nullptr) return;
  error.file = IsStandardOutput(name) ? stdout : OpenFile(name, "w");
}

void WritePostProcessorFiles(const Project& project, const Results& results,
                             const RunOptions& options) {
  const std::string meshFileName = ResultFileName(options.inputFile, kMeshExtension);
  WriteResultFile(project, results, ResultFileName(options.inputFile, kResultsExtension),
                  options.writeMesh ? &meshFileName : nullptr);
}

void ReportTotalTime(Clock::time_point start, std::ostream* info) {
  const auto elapsed =
      std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count();
  const double seconds = static_cast<double>(elapsed) * 0.001;
  Progress(info, "Total time = %.2g min. = %.2g seg.\n", seconds * (1.0 / 60.0), seconds);
}

void Run(const RunOptions& options) {
  const Clock::time_point start = Clock::now();
  TextInput input(OpenFile(options.inputFile, "r"));
  RefuseToOverwriteDeck(options);
  Project project(kCapacity);
  std::ofstream infoFile;
  std::ostream* const info = OpenInfo(options.infoFile, infoFile);
  OpenErrorFile(options.errorFile);

  ReadProject(project, input);
  Solution solution = SolveProject(project, {.renumber = options.renumber, .info = info});
  Progress(info, "Beginning calc strengths and reactions\n");
  ComputeStrengths(project, std::move(solution.matrix), solution.results, info);
  Progress(info, "End of calc strengths and reactions\n");
  Progress(info, "Transfering results\n");
  if (options.outputFile != nullptr) WriteReportFile(project, solution.results, options.outputFile);
  WritePostProcessorFiles(project, solution.results, options);
  ReportTotalTime(start, info);
}

int RunProgram(int argc, char** argv) {
  const std::optional<RunOptions> options = ScanCommandLine(argc, argv);
  if (!options) {
    std::fputs(UsageText(argc > 0 ? argv[0] : "").c_str(), stdout);
    return kRefused;
  }
  Run(*options);
  return 0;
}

}  // namespace

}  // namespace kestol

/// The only place where a run ends early.
int main(int argc, char** argv) {
  try {
    return kestol::RunProgram(argc, argv);
  } catch (const kestol::FatalError& refusal) {
    kestol::ErrorExit(refusal);
  } catch (const std::bad_alloc&) {
    kestol::HeapExit();
  } catch (const std::length_error&) {
    kestol::HeapExit();
  }
}
