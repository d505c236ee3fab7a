#pragma once

namespace kestol {

class Project;

/// Derives the release codes (EndCode) of all elements into project.rotuleCodes. At every node with
/// a hinge the first beam met, over the meshes in order, keeps its rigid connection and every later
/// one is released; elements of other than 2 nodes are rigid at both ends and hold no node.
void PrepareHinges(Project& project);

}  // namespace kestol
