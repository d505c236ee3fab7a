#pragma once

#include <string>
#include <string_view>

#include "analysis/Results.h"
#include "input/Project.h"
#include "output/OutputText.h"

namespace kestol {

inline constexpr std::string_view kResultsExtension = ".kestol.res";
inline constexpr std::string_view kMeshExtension = ".kestol.bon";

/// `inputFile` cut at its last '.' plus `extension`.
std::string ResultFileName(std::string_view inputFile, std::string_view extension);

/// Writes the program's text report. Refuses a file that cannot be opened, and a full disk.
void WriteReportFile(const Project& project, const Results& results, const std::string& name);

/// Writes the post-processor's result file and, with a name, its mesh file. Refuses like
/// WriteReportFile.
void WriteResultFile(const Project& project, const Results& results, const std::string& name,
                     const std::string* meshFileName = nullptr);

/// The text of the report and of the result file, for a program that keeps its files by itself.
void WriteReportText(const Project& project, const Results& results, TextTaker taker);
void WriteResultText(const Project& project, const Results& results, TextTaker taker,
                     const std::string* meshFileName = nullptr);

}  // namespace kestol
