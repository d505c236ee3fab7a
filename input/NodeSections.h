#pragma once

namespace kestol {

class Project;
class TextInput;
struct Node;

// What the sections of the deck that go node by node share.

/// The node with this number in the input; null when there is none, or no mesh yet.
Node* FindNode(const Project& project, int nodeNumber);

/// Takes the word that closes a section, one that contains "end", and the rest of its line.
void ReadEndOfSection(TextInput& input);

}  // namespace kestol
