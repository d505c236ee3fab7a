#pragma once

namespace kestol {

class Project;

/// Checks a model that was read completely, in this order: there is a mesh; element numbers are
/// unique over all meshes; tetrahedra stand alone. A model of tetrahedra gets smoothing and three
/// degrees of freedom per node.
void CheckProject(Project& project);

}  // namespace kestol
