#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kestol {

/// What a run was asked for on the command line. Texts are those of the argument vector; null when
/// not given.
struct RunOptions {
  bool writeMesh = false;            ///< -p: also write the post-processor's mesh file
  bool renumber = true;              ///< false with -r0: nodes keep the order of the input
  const char* infoFile = nullptr;    ///< -i: progress and total time go there
  const char* errorFile = nullptr;   ///< -e: the fatal message goes there
  const char* inputFile = nullptr;   ///< never null once scanned
  const char* outputFile = nullptr;  ///< the text report
};

/// Options, then the input file, then perhaps the output file. An option that is repeated counts as
/// last given; the first argument that is no option ends the options, so one behind the input file
/// is the output file. None when there is not one or two files.
std::optional<RunOptions> ScanCommandLine(int argc, char* const* argv);

/// How to call the program; `program` is its name as called.
std::string UsageText(std::string_view program);

/// Whether a file name of -i or -e stands for standard output.
bool IsStandardOutput(const char* name);

}  // namespace kestol
