#pragma once

#include <string_view>

#include "input/SourceMap.h"

namespace kestol {

class TextInput;

// A keyword that is no keyword, or whose value is refused: what was meant, and where reading goes
// on.

/// The row of the keyword that was meant; -1 when it cannot be told. What is no keyword is noted in
/// the map as of `record`.
int MeantKeyword(std::string_view word, const SourceMap::Record& record, SourceMap& map);

/// Whether what is glued to a keyword makes it another word: letters, with the value behind them.
bool IsLongerWord(TextInput& input, std::string_view glued);

/// Goes to the next line whose first word is a keyword, or one letter away from one.
void SkipToKeyword(TextInput& input);

/// Goes on behind a keyword whose value is refused: at the next line that does not look like the
/// rest of the value.
void SkipValue(TextInput& input);

}  // namespace kestol
