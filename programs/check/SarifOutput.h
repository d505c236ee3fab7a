#pragma once

#include <string>

#include "kestol/Check.h"
#include "programs/common/OutputBuffer.h"

namespace kestol {

/// The findings as SARIF 2.1.0, for editors and services that show them in the text.
void WriteSarif(OutputBuffer& output, const std::string& deck, const Findings& findings,
                bool quiet);

/// The run in which the deck could not be read at all, and why.
void WriteFailedSarif(OutputBuffer& output, const std::string& deck, const std::string& why);

}  // namespace kestol
