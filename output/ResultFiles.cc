#include "output/ResultFiles.h"

#include "output/OutputText.h"
#include "output/VemoFiles.h"

namespace kestol {

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
