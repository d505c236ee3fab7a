#pragma once

#include <string>

#include "kestol/Check.h"
#include "programs/common/OutputBuffer.h"

namespace kestol {

/// The findings on standard error, in the order of the deck, and how many there are; with `quiet`
/// the errors alone.
void PrintFindings(const std::string& deck, const Findings& findings, bool quiet);

/// All codes with their severities and explanations.
void WriteCodes(OutputBuffer& output);

/// What the page of the codes says of one.
void WriteExplanation(OutputBuffer& output, const std::string& code);

}  // namespace kestol
