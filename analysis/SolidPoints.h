#pragma once

#include <array>

#include "algebra/FixedMatrix.h"
#include "algebra/Vector3.h"

namespace kestol {

class Elem;

/// What a solid element of N nodes knows at its P integration points: shape functions, their
/// derivatives in global axes, and the volume that each point stands for.
template <int N, int P>
struct SolidPoints {
  std::array<double, P> weight;                    ///< volume of each point
  std::array<std::array<double, N>, P> shape;      ///< shape functions
  std::array<std::array<Vector3, N>, P> gradient;  ///< N,x N,y N,z
};

/// The four-noded tetrahedron: constant gradients, one point with the whole volume. Ends the run
/// with "error: element N has jacobian <=0\n" when 6V is not positive: the order of the nodes fixes
/// its sign.
void EvaluateTetra4(const Elem& elem, SolidPoints<4, 1>& points);

/// The ten-noded tetrahedron at its four points. Ends the run with
/// "error: element N has jacobian 0\n" at the first point whose jacobian is not positive.
void EvaluateTetra10(const Elem& elem, SolidPoints<10, 4>& points);

inline void Evaluate(const Elem& elem, SolidPoints<4, 1>& points) {
  EvaluateTetra4(elem, points);
}
inline void Evaluate(const Elem& elem, SolidPoints<10, 4>& points) {
  EvaluateTetra10(elem, points);
}

/// Strain matrix of node i (from 1) of the four-noded tetrahedron, rows xx, yy, zz, xy, xz, yz:
/// 1/6V times the cofactors b, c, d.
FixedMatrix<6, 3> TetraStrainMatrix(int i, const std::array<double, 4>& b,
                                    const std::array<double, 4>& c, const std::array<double, 4>& d,
                                    double sixV);

/// Strain matrix of a node with the gradient g = (N,x, N,y, N,z).
FixedMatrix<6, 3> SolidStrainMatrix(const Vector3& g);

}  // namespace kestol
