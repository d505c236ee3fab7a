#pragma once

#include "input/SourceMap.h"
#include "input/TextInput.h"

namespace kestol {

class Project;

// The words of a deck that the reader searches for, found as they were meant: what it takes by
// mistake is noted in the map.

/// Finds "problem" and "type" and goes behind the type of the problem, which it sets.
void ReadMappedHeading(Project& project, TextInput& input, SourceMap& map);

}  // namespace kestol
