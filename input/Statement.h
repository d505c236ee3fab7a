#pragma once

#include <string>
#include <string_view>

#include "input/SourceMap.h"

namespace kestol {

class Project;
class TextInput;

/// One keyword of the deck on its way to its reader.
struct Statement {
  Project& project;
  TextInput& input;          ///< behind the keyword and its value
  std::string_view keyword;  ///< as written in the table
  std::string value;         ///< empty for keywords without one
  SourceMap* map;            ///< null: the first mistake ends the reading
  SourceMap::Record record{RecordKind::Keyword, -1, 0};  ///< of what is refused; with a map
};

}  // namespace kestol
