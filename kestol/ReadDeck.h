#pragma once

#include <string>

#include "input/Project.h"
#include "input/SourceMap.h"

namespace kestol {

/// The model of the deck in the file `path`. What is refused is a FatalError with the file and,
/// where the record is known, the line. With a map a mistake of the deck ends nothing: it is noted
/// there and reading goes on; only a file that cannot be opened is refused then.
Project ReadDeck(const std::string& path, SourceMap* map = nullptr);

/// The same for a text in memory; refusals call it `name`.
Project ReadDeckText(std::string text, const std::string& name, SourceMap* map = nullptr);

}  // namespace kestol
