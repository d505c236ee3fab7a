#pragma once

namespace kestol {

class Mesh;
class Project;
class ReaVec3;
class ReaVecT;
struct PointValues;
struct Results;

/// Averages the values at integration points over the elements around each node: shells per
/// orientation, solids into results.nodalStresses. Beams are left alone.
void SmoothPointValues(const Project& project, Results& results);

/// Smooths what is reported of a shell mesh, the main values in place, the local ones into
/// `values.smoothed`: around each node, elements whose orientations match within smoothingAngle are
/// averaged; at most three orientations are kept.
void SmoothShell(const Project& project, const Mesh& mesh, PointValues& values);

/// Whether two sets of angles agree within `tolerance`, the first and third across 2 pi.
bool OrientationsMatch(const ReaVec3& a, const ReaVec3& b, double tolerance);

/// The mean stresses at the nodes, 6 each by index, of those at the points of tetrahedra. Ends the
/// run with "error: node N has no elements around\n" for a node outside every element.
ReaVecT AverageSolidStresses(const Project& project, const Mesh& mesh, const ReaVecT& stresses);

}  // namespace kestol
