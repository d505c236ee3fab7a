#pragma once

namespace kestol {

class Project;

/// Derives the end codes (EndCode) of all elements into project.endCodes. At every node with a
/// hinge the first beam met, over the meshes in order, stays rigid and every later one is hinged;
/// elements of other than 2 nodes are rigid at both ends and count for no node.
void PrepareHinges(Project& project);

}  // namespace kestol
