#pragma once

namespace kestol {

class Project;
struct Node;

// What the sections of the deck that go node by node share.

/// The node with this number in the input; null when there is none, or no mesh yet.
Node* FindNode(const Project& project, int nodeNumber);

}  // namespace kestol
