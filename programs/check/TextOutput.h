#pragma once

#include <cstdio>
#include <string>

#include "kestol/Check.h"

namespace kestol {

/// The findings on standard error, in the order of the deck, and how many there are; with `quiet`
/// the errors alone.
void PrintFindings(const std::string& deck, const Findings& findings, bool quiet);

/// All codes with their severities and explanations on standard output.
void PrintCodes();

/// What the page of the codes says of one, on standard output.
void PrintExplanation(const std::string& code);

}  // namespace kestol
