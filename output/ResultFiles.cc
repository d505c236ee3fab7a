#include "output/ResultFiles.h"

#include "output/OutputText.h"
#include "output/VemoFiles.h"

namespace kestol {

// Deliberate: a '.' of a folder's name counts when the file's own name has none.
std::string ResultFileName(std::string_view inputFile, std::string_view extension) {
  return std::string(inputFile.substr(0, inputFile.rfind('.'))) + std::string(extension);
}

void WriteReportFile(const Project& project, const Results& results, const std::string& name) {
  OutputText report(name);
  project.WriteResults(results, report);
  report.Close();
}

void WriteResultFile(const Project& project, const Results& results, const std::string& name,
                     const std::string* meshFileName) {
  OutputText file(name);
  WriteVemoFiles(project, results, file, meshFileName);
  file.Close();
}

}  // namespace kestol
