#include "main/CommandLine.h"

namespace kestol {

std::optional<RunOptions> ScanCommandLine(int argc, char* const* argv) {
  RunOptions options;
  int position = 1;
  // Deliberate: the counter counts options, not arguments, also where an option takes two of them.
  for (int option = 1; option < argc && position < argc; ++option) {
    const std::string_view argument = argv[position];
    if (argument == "-p") {
      options.writeMesh = true;
      position += 1;
    } else if (argument == "-i") {
      options.infoFile = argv[position + 1];
      position += 2;
    } else if (argument == "-e") {
      options.errorFile = argv[position + 1];
      position += 2;
    } else if (argument == "-r0") {
      options.renumber = false;
      position += 1;
    } else {
      break;
    }
  }
  const int files = argc - position;
  if (files != 1 && files != 2) return std::nullopt;
  options.inputFile = argv[position];
  if (files == 2) options.outputFile = argv[position + 1];
  return options;
}

std::string UsageText(std::string_view program) {
  return "error. usage: " + std::string(program) +
         " [-p] [-i infofile] [-r0] [-e errorfile] inputfile [outputfile]\n"
         "    -p: write mesh Vemo file\n"
         "    -i: write some information in file 'infofile'\n"
         "    -e: write error messages in file 'errorfile'\n"
         "    -r0: inhibit renumbering of the nodes\n";
}

bool IsStandardOutput(const char* name) {
  return name[0] == '-';
}

}  // namespace kestol
