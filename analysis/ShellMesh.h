#pragma once

class Project;

/// Checks the normals of every triangle mesh and sets project.coplanar: a flag per node index, 1
/// where the elements around the node are coplanar within CoplanarityAngle. Leaves it empty when
/// the model has no triangles.
void CheckNormals(Project& project);

/// Gives every 3-noded triangle mesh its mid-side nodes and raises project.numNodes. True when at
/// least one mesh was converted.
bool ConvertMeshesTo6Nodes(Project& project);
