#pragma once

#include <cstdint>

namespace kestol {

class Project;
class SourceMap;
class TextInput;
struct Node;

// What the sections of the deck that go node by node share.

/// The node with this number in the input; null when there is none, or no mesh yet.
Node* FindNode(const Project& project, int nodeNumber);

/// Takes the word that closes a section, one that contains "end", and the rest of its line. Without
/// such a word the refusal belongs to the keyword of the section, at `sectionOffset`.
void ReadEndOfSection(TextInput& input, std::uint64_t sectionOffset);

}  // namespace kestol
