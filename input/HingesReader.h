#pragma once

namespace kestol {

class Project;
class SourceMap;
class TextInput;

/// Reads the rotules section (the deck's word for hinges), one node number per line, up to and with
/// the line that ends it: marks nodes where beams meet through a hinge, and the project as having
/// such nodes.
void ReadHinges(Project& project, TextInput& input, SourceMap* map = nullptr);

}  // namespace kestol
