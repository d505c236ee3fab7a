#pragma once

#include <string>
#include <string_view>

#include "input/SourceMap.h"
#include "kestol/findings/Inspection.h"

namespace kestol {

// Rules about what the reader noted while it read on.

/// The word that was refused, or the record.
Place At(const SourceMap::Refusal& refusal);
std::string WithoutLineEnd(std::string text);

/// An error in words of the solver: its first line, and the others behind it.
Finding& AddLines(Inspection& deck, std::string_view code, const Place& place,
                  const std::string& text);

/// Everything that it refused, as the kind that names it best, else as `syntax`.
void FindRefusals(Inspection& deck);

void FindDuplicateNumbers(Inspection& deck);  // duplicate-number
void FindNumberGaps(Inspection& deck);        // number-gap
void FindUnknownNodes(Inspection& deck);      // unknown-node
void FindUnknownElements(Inspection& deck);   // unknown-element
void FindUnknownMaterials(Inspection& deck);  // unknown-material

}  // namespace kestol
