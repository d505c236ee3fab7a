#pragma once

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

}  // namespace kestol
