#pragma once

namespace kestol {

class Mesh;
class Project;

/// Gives every 3-noded triangle mesh its mid-side nodes and raises project.numNodes. True when at
/// least one mesh was converted.
bool ConvertMeshesTo6Nodes(Project& project);

/// Converts one mesh; ends the run with
/// "error: trying to convert to 6 nodes a mesh that is not 3-noded triangles\n" for any other.
///
/// Each edge gets one node half-way, shared by the elements around it, with the support that both
/// of its corners have in common. An edge that already has a mid-side node in another triangle mesh
/// takes that one: two nodes on one edge would be a crack.
void ConvertTo6Nodes(Project& project, Mesh& mesh);

}  // namespace kestol
