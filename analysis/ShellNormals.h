#pragma once

namespace kestol {

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

}  // namespace kestol
