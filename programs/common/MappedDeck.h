#pragma once

#include <string>

#include "input/Project.h"
#include "input/SourceMap.h"

namespace kestol {

/// Reads the deck with a map. What is no text, or empty, cannot be checked: ProgramError. A pipe is
/// read into memory, since the text is looked at more than once.
Project ReadMappedDeck(const std::string& deck, SourceMap& map);

}  // namespace kestol
