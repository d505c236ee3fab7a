#include "analysis/Solid.h"

#include "algebra/Matriu.h"
#include "analysis/MaterialOf.h"
#include "analysis/MeshPart.h"
#include "analysis/SolidPoints.h"
#include "input/Project.h"

namespace kestol {

namespace {

/// The isotropic elasticity matrix by its three different entries.
struct Elasticity {
  double normal;  ///< xx, yy, zz
  double cross;   ///< between two normal strains
  double shear;   ///< xy, xz, yz
};

/// The elasticity of an element; D is work space.
Elasticity ElasticityOf(const Project& project, const Elem& elem, Matriu& D) {
  MaterialOf(project, elem).SolidMatrix(elem.number, D);
  return {D(1, 1), D(1, 2), D(4, 4)};
}

/// K += w B_i^T D B_j for the gradients g of node i and h of node j, with the zeros of B and D left
/// out; K is 3x3 row by row.
inline void AddNodeStiffness(const Vector3& g, const Vector3& h, const Elasticity& D, double w,
                             double* K) {
  const double shear = w * D.shear, cross = w * D.cross, normal = w * D.normal;
  const double xx = g[0] * h[0], yy = g[1] * h[1], zz = g[2] * h[2];
  K[0] += normal * xx + shear * (yy + zz);
  K[1] += cross * g[0] * h[1] + shear * g[1] * h[0];
  K[2] += cross * g[0] * h[2] + shear * g[2] * h[0];
  K[3] += cross * g[1] * h[0] + shear * g[0] * h[1];
  K[4] += normal * yy + shear * (xx + zz);
  K[5] += cross * g[1] * h[2] + shear * g[2] * h[1];
  K[6] += cross * g[2] * h[0] + shear * g[0] * h[2];
  K[7] += cross * g[2] * h[1] + shear * g[1] * h[2];
  K[8] += normal * zz + shear * (xx + yy);
}

}  // namespace

/// K_ij = sum over the points of B_i^T D B_j w for every node pair of every element.
template <int N, int P>
void AddSolidStiffness(const Project& project, const MeshPart& mesh, NodeBlocks& blocks) {
  SolidPoints<N, P> points;
  Matriu D(6, 6), K(3, 3);
  for (auto [number, elem] : mesh.elems) {
    const Elasticity elasticity = ElasticityOf(project, *elem, D);
    Evaluate(*elem, points);
    for (int i = 0; i < N; ++i)
      for (int j = i; j < N; ++j) {
        K.Fill(0.0);
        for (int p = 0; p < P; ++p)
          AddNodeStiffness(points.gradient[p][i], points.gradient[p][j], elasticity,
                           points.weight[p], K.data.get());
        blocks.Add(*elem->nodes[i], *elem->nodes[j], K);
      }
  }
}

/// D times the sum over the nodes of B_i u_i, at every point of every element.
template <int N, int P>
void SolidStresses(const Project& project, const MeshPart& mesh, const ReaVecT& displacements,
                   ReaVecT& values) {
  SolidPoints<N, P> points;
  Matriu D(6, 6);
  double* stress = values.data.get();
  for (auto [number, elem] : mesh.elems) {
    const Elasticity elasticity = ElasticityOf(project, *elem, D);
    Evaluate(*elem, points);
    for (int p = 0; p < P; ++p, stress += 6) {
      FixedMatrix<6, 1> strain;
      for (int i = 0; i < N; ++i) {
        const int first = FirstEquation(elem->nodes[i]->number, project.dofsPerNode);
        const FixedMatrix<3, 1> u{
            {displacements(first), displacements(first + 1), displacements(first + 2)}
        };
        strain += SolidStrainMatrix(points.gradient[p][i]) * u;
      }
      const auto& e = strain.entries;
      stress[0] = elasticity.normal * e[0] + elasticity.cross * (e[1] + e[2]);
      stress[1] = elasticity.normal * e[1] + elasticity.cross * (e[0] + e[2]);
      stress[2] = elasticity.normal * e[2] + elasticity.cross * (e[0] + e[1]);
      for (int k = 3; k < 6; ++k) stress[k] = elasticity.shear * e[k];
    }
  }
}

template void AddSolidStiffness<4, 1>(const Project&, const MeshPart&, NodeBlocks&);
template void AddSolidStiffness<10, 4>(const Project&, const MeshPart&, NodeBlocks&);
template void SolidStresses<4, 1>(const Project&, const MeshPart&, const ReaVecT&, ReaVecT&);
template void SolidStresses<10, 4>(const Project&, const MeshPart&, const ReaVecT&, ReaVecT&);

}  // namespace kestol
