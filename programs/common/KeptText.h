#pragma once

#include <string>

#include "input/Project.h"
#include "input/SourceMap.h"

namespace kestol {

// A pipe gives its text once, but a program that explains what is wrong with a deck reads it again:
// for the line of a message, for a search with another answer.

/// Keeps the text of `path` for as long as the program runs, unless that is a regular file or a
/// folder; ProgramError when it cannot be read.
void KeepText(const std::string& path);

/// The kept text; null where there is none.
const std::string* KeptText(const std::string& path);

/// The kept text, or that of the file; ProgramError when it cannot be read.
std::string KeptOrWhole(const std::string& path);

/// ReadDeck, of the kept text where there is one.
Project ReadKeptDeck(const std::string& deck, SourceMap* map = nullptr);

}  // namespace kestol
