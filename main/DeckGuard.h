#pragma once

namespace kestol {

struct RunOptions;

/// Ends the run with "can't open file NAME\n" when one of its outputs is the deck itself, by
/// whatever name: the deck would be emptied before it is read. Call it before any output is opened.
void RefuseToOverwriteDeck(const RunOptions& options);

}  // namespace kestol
