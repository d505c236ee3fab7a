#pragma once

#include <string>
#include <vector>

#include "kestol/combine/CaseLoads.h"
#include "programs/combine/CombinationFile.h"

namespace kestol {

class Project;

/// The loads of the cases of a combination file: taken off the model, which keeps none, or read
/// from their files. Refuses, with the file and the line, what does not belong into the loads of a
/// case.
std::vector<CaseLoads> ReadCases(Project& project, const CombinationFile& file);

/// What the combination file `path` and its contents make a program read.
std::vector<std::string> InputsOf(const std::string& path, const CombinationFile& file);

}  // namespace kestol
