#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kestol {

class Project;
class SourceMap;
class TextInput;

/// Reads a whole deck into the project and checks the model as a whole. With a map the reading goes
/// on after a mistake; see SourceMap.
void ReadProject(Project& project, TextInput& input, SourceMap* map = nullptr);

/// Reads what may stand below the `type` line into the project: keywords with their values and
/// sections, in any order, to the end of the text. The model as a whole is not checked.
void ReadKeywords(Project& project, TextInput& input, SourceMap* map = nullptr);

// --- the words of a deck ----------------------------------------------------------------------

/// The keywords in the order of their table; RecordKind::Keyword counts its rows from 0.
std::vector<std::string_view> KeywordNames();

/// Whether `word` would be read as a keyword, and which: the row of the table, or -1.
int KeywordOf(std::string_view word);
inline bool IsKeyword(std::string_view word) {
  return KeywordOf(word) >= 0;
}

/// Whether a keyword has a value behind it.
bool HasValue(int keyword);

/// Takes what stands behind the word "type": the type as written.
std::string TypeValue(TextInput& input);

/// Sets the type of the problem; refuses what is neither "2d" nor "3d" (in lower case).
void SetProblemType(Project& project, std::string_view type);

}  // namespace kestol
