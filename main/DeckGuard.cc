#include "main/DeckGuard.h"

#include <sys/stat.h>

#include "main/CommandLine.h"
#include "main/ErrorChannel.h"
#include "output/ResultFiles.h"

namespace kestol {

namespace {

/// Whether both names lead to one file on disk. Devices are left alone: a terminal may well be the
/// deck and the report.
bool AreOneFile(const char* name, const char* other) {
  struct stat a, b;
  return ::stat(name, &a) == 0 && ::stat(other, &b) == 0 && S_ISREG(a.st_mode) &&
         a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

}  // namespace

void RefuseToOverwriteDeck(const RunOptions& options) {
  const auto refuse = [&options](const char* name) {
    if (AreOneFile(name, options.inputFile)) Fatal("can't open file ", name, "\n");
  };
  // In the order in which the run opens them.
  for (const char* const name : {options.infoFile, options.errorFile})
    if (name != nullptr && !IsStandardOutput(name)) refuse(name);
  if (options.outputFile != nullptr) refuse(options.outputFile);
  refuse(ResultFileName(options.inputFile, kResultsExtension).c_str());
  if (options.writeMesh) refuse(ResultFileName(options.inputFile, kMeshExtension).c_str());
}

}  // namespace kestol
