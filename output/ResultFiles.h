#pragma once

#include <string>

#include "analysis/Results.h"
#include "input/Project.h"

namespace kestol {

/// Writes the program's text report. Refuses a file that cannot be opened, and a full disk.
void WriteReportFile(const Project& project, const Results& results, const std::string& name);

/// Writes the post-processor's result file and, with a name, its mesh file. Refuses like
/// WriteReportFile.
void WriteResultFile(const Project& project, const Results& results, const std::string& name,
                     const std::string* meshFileName = nullptr);

}  // namespace kestol
