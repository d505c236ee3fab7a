#pragma once

namespace kestol {

class Project;
class ReaVec3;

/// Averages the values at integration points over the elements around each node: shells in place,
/// per orientation; solids into project.nodalStresses. Beams are left alone.
void SmoothGaussVariables(Project& project);

/// Smooths the shell values of mesh `m` (from 0) in place: around each node, elements whose
/// orientations match within smoothingAngle are averaged; at most three orientations are kept.
void SmoothShell(Project& project, int m);

/// Whether two sets of angles agree within `tolerance`, the first and third across 2 pi.
bool OrientationsMatch(const ReaVec3& a, const ReaVec3& b, double tolerance);

/// Fills project.nodalStresses from the stresses of the tetrahedra of mesh `m` (from 0). Ends the
/// run with "error: node N has no elements around\n" for a node outside every element.
void AverageSolidStresses(Project& project, int m);

}  // namespace kestol
