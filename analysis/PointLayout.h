#pragma once

namespace kestol {

class Mesh;
class Project;

/// How the values at integration points of one mesh are laid out: element after element, point
/// after point.
///
///     family          points              values a point
///     beam            its two ends        3 in the plane, 6 in space (forces on the end)
///     3-noded shell   1 at the centroid   8 (Nx Ny Nxy Mx My Mxy Qx Qy)
///     6-noded shell   3 at mid-sides      8
///     4-noded solid   1                   6 (xx yy zz xy xz yz)
///     10-noded solid  4                   6
struct PointLayout {
  int points = 0;  ///< per element
  int values = 0;  ///< per point
  int PerElement() const { return points * values; }
};

/// The angles of the main axes at a shell point: three of the membrane forces, three of the
/// moments.
constexpr int kAnglesPerPoint = 6;

/// The layout of a mesh of beams, triangles or tetrahedra; no points for any other.
PointLayout PointLayoutOf(const Project& project, const Mesh& mesh);

}  // namespace kestol
