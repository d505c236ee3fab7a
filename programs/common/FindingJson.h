#pragma once

#include <string>
#include <vector>

#include "kestol/Mechanisms.h"
#include "kestol/findings/Finding.h"

namespace kestol {

class JsonWriter;

/// The text of a finding with its further lines.
std::string WholeText(const Finding& finding);

/// The member "findings". `file` is the name of the deck.
void WriteFindings(JsonWriter& json, const std::string& file, const std::vector<Finding>& findings,
                   bool errorsOnly = false);

/// The members "modes" and "mechanisms"; of a model without any, or that was not looked at, null.
void WriteMechanisms(JsonWriter& json, const Mechanisms* mechanisms);

}  // namespace kestol
