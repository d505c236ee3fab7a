#pragma once

#include <string>

#include "kestol/Check.h"
#include "programs/common/OutputBuffer.h"

namespace kestol {

/// Everything that was found as one document, schema kestol-check/1; with `quiet` of the findings
/// the errors alone.
void WriteJson(OutputBuffer& output, const std::string& deck, const Project& project,
               const Findings& findings, bool quiet);

}  // namespace kestol
