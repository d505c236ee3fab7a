// What kestol-combine reads: arbitrary text as a combination file with the combinations that it
// asks for, and as the loads of a case of a portal.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "kestol/ReadDeck.h"
#include "kestol/combine/CaseReader.h"
#include "main/ErrorChannel.h"
#include "programs/combine/CombinationFile.h"

namespace kestol {

namespace {

constexpr const char* kPortal =
    "PROBLEM portal\nTYPE 2d\nunits_names\n kN-m kN m kPa 1000 1\nend\nunits_mesh=m\n"
    "units_mat_and_load=kN-m\nunits_res=kN-m\n"
    "mesh dimension = 2 elemtype Linear nnode = 2\ncoordinates\n1 0 0\n2 0 4\n3 6 4\n"
    "end coordinates\nelements\n1 1 2 1\n2 2 3 1\nend elements\n"
    "materials\n1 E=2e8 A=1e-2 Iz=1e-4\nend materials\n"
    "constraints\n1 111 0 0 0\n3 121 0 50 0\nend constraints\n";

void ReadAsCombinations(const std::string& text) {
  std::vector<FileMistake> mistakes;
  const CombinationFile file = ReadCombinationText(text, "", mistakes);
  for (const FileMistake& mistake : mistakes)
    if (mistake.text.empty() || mistake.code.empty()) __builtin_trap();
  if (mistakes.empty()) file.AllCombinations();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  try {
    ReadAsCombinations(text);
  } catch (const FatalError&) {
    // A refusal is a good answer.
  }
  try {
    Project project = ReadDeckText(kPortal, "portal");
    TakeLoads(project);
    ReadCaseText(project, text, "case");
  } catch (const FatalError&) {
    // A refusal is a good answer.
  }
  return 0;
}

}  // namespace kestol
