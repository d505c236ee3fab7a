// One whole run on arbitrary text: read, solve, strengths, all reports into memory. Built as a
// libFuzzer target by script/fuzz, and as a program that replays files for the tests.
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>
#include <utility>

#include "analysis/SolveDriver.h"
#include "analysis/Strengths.h"
#include "input/Project.h"
#include "input/ProjectReader.h"
#include "input/TextInput.h"
#include "output/OutputText.h"
#include "output/PrintProject.h"
#include "output/VemoFiles.h"
#include "tests/fuzz/AsksForMuch.h"
#include "tests/support/ExpectFatal.h"

namespace kestol {

namespace {

void RunAll(const std::string& text) {
  Project project(100);
  TextInput input(text);
  ReadProject(project, input);
  std::ostringstream info, dump;
  PrintProject(project, dump);
  Solution solution = SolveProject(project, {.renumber = text.size() % 2 == 0, .info = &info});
  ComputeStrengths(project, std::move(solution.matrix), solution.results, &info);
  OutputText report, file;
  project.WriteResults(solution.results, report);
  WriteVemoFiles(project, solution.results, file, nullptr);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  if (AsksForMuch(text)) return 0;
  error.Clear();
  try {
    RunAll(text);
  } catch (const FatalError&) {
    // A refusal is a good answer.
  }
  return 0;
}

}  // namespace kestol
