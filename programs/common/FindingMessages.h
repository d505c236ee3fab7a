#pragma once

#include <string>
#include <vector>

#include "kestol/LoadedHinges.h"
#include "kestol/findings/Finding.h"

namespace kestol {

class FatalError;

/// "error" or "warning".
const char* NameOf(Severity severity);

/// What is said about a finding of the deck: the message with its place, then its further lines.
std::string FindingText(const std::string& deck, const Finding& finding, bool colour);

/// Ends a program whose model could not be solved: says on standard error what is wrong with the
/// model, a mechanism as kestol-check explains it, and then ends with kFindings. What is no
/// mechanism is refused, in the solver's own words where no finding has them, with kFailed. Reads
/// the deck once more, for the lines of its records.
[[noreturn]] void EndUnsolved(const std::string& deck, const FatalError& refusal);

/// Of each beam, at its line of the deck, why its loads cannot be added to others.
std::vector<Finding> FindingsOf(const std::string& deck, const std::vector<LoadedHinge>& hinges);

/// Says so on standard error.
void PrintLoadedHinges(const std::string& deck, const std::vector<LoadedHinge>& hinges);

}  // namespace kestol
