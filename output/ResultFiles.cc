#include "output/ResultFiles.h"

#include <utility>

#include "output/OutputText.h"
#include "output/VemoFiles.h"

namespace kestol {

// Deliberate: a '.' of a folder's name counts when the file's own name has none.
std::string ResultFileName(std::string_view inputFile, std::string_view extension) {
  return std::string(inputFile.substr(0, inputFile.rfind('.'))) + std::string(extension);
}

namespace {

void WriteReport(const Project& project, const Results& results, OutputText&& report) {
  project.WriteResults(results, report);
  report.Close();
}

void WriteResult(const Project& project, const Results& results, OutputText&& file,
                 const std::string* meshFileName) {
  WriteVemoFiles(project, results, file, meshFileName);
  file.Close();
}

}  // namespace

void WriteReportFile(const Project& project, const Results& results, const std::string& name) {
  WriteReport(project, results, OutputText(name));
}

void WriteResultFile(const Project& project, const Results& results, const std::string& name,
                     const std::string* meshFileName) {
  WriteResult(project, results, OutputText(name), meshFileName);
}

void WriteReportText(const Project& project, const Results& results, TextTaker taker) {
  WriteReport(project, results, OutputText(std::move(taker)));
}

void WriteResultText(const Project& project, const Results& results, TextTaker taker,
                     const std::string* meshFileName) {
  WriteResult(project, results, OutputText(std::move(taker)), meshFileName);
}

}  // namespace kestol
