#pragma once

namespace kestol {

class Mesh;
class Project;

/// Checks the normals of every triangle mesh and sets project.coplanar: a flag per node index, 1
/// where the elements around the node are coplanar within CoplanarityAngle. Leaves it empty when
/// the model has no triangles.
///
/// Inside one mesh all normals around a node must point to the same side, else the run ends with
/// "error: Elements A and B have normals in opposite directions. It is necessary to swap
/// normals\n". Before that, elements without a normal end it with "error: element N is not
/// correct\n".
void CheckNormals(Project& project);

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
