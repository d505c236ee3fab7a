#include "analysis/ShellTriangle.h"

#include "analysis/MeshPart.h"
#include "analysis/ShellPoints.h"
#include "input/Project.h"

namespace kestol {

namespace {

/// Drilling stiffness per unit area over t Gxy. It grounds the rotation about the normal, so it
/// only keeps the pivot alive: t Gxy itself would clamp beams that lie in the plate.
constexpr double kDrilling = 1e-6;

/// The local stiffness of a node pair has a membrane part (u, v), a plate part (w, beta1, beta2)
/// and the drilling term; nothing couples them.
struct NodePairStiffness {
  double membrane[2][2] = {};
  double plate[3][3] = {};
  double drilling = 0.0;
};

/// Material matrices as plain numbers, row by row.
struct Elasticity {
  explicit Elasticity(const ShellElement& shell)
      : m(shell.Dm.data.get()), b(shell.Db.data.get()), s(shell.Ds.data.get()) {}
  const double *m, *b, *s;
};

/// K += (Bm_i^T Dm Bm_j + Bb_i^T Db Bb_j + Bs_i^T Ds Bs_j) w, with the zeros of B and D left out:
/// D couples rows 1 and 2, row 3 stands alone; the shear matrix is diagonal.
template <int N, int P>
void AddPoint(const ShellPoints<N, P>& points, int p, int i, int j, const Elasticity& D,
              NodePairStiffness& K) {
  const double ix = points.dx[p][i], iy = points.dy[p][i], in = points.shape[p][i];
  const double jx = points.dx[p][j], jy = points.dy[p][j], jn = points.shape[p][j];
  const double w = points.weight[p];
  const auto plane = [&](const double* d, double k[2][2]) {
    k[0][0] = (ix * d[0] * jx + iy * d[8] * jy) * w;
    k[0][1] = (ix * d[1] * jy + iy * d[8] * jx) * w;
    k[1][0] = (iy * d[3] * jx + ix * d[8] * jy) * w;
    k[1][1] = (iy * d[4] * jy + ix * d[8] * jx) * w;
  };
  double k[2][2];
  plane(D.m, k);
  for (int r = 0; r < 2; ++r)
    for (int c = 0; c < 2; ++c) K.membrane[r][c] += k[r][c];
  plane(D.b, k);  // the two minus signs of the bending rows cancel
  for (int r = 0; r < 2; ++r)
    for (int c = 0; c < 2; ++c) K.plate[r + 1][c + 1] += k[r][c];
  const double sx = D.s[0] * w, sy = D.s[3] * w;
  K.plate[0][0] += ix * sx * jx + iy * sy * jy;
  K.plate[0][1] -= ix * sx * jn;
  K.plate[0][2] -= iy * sy * jn;
  K.plate[1][0] -= in * sx * jx;
  K.plate[2][0] -= in * sy * jy;
  K.plate[1][1] += in * sx * jn;
  K.plate[2][2] += in * sy * jn;
}

using Block = FixedMatrix<3, 3>;

/// T6 K T6^T with T6 = diag(T, R), in 3x3 blocks.
void TurnToGlobal(const NodePairStiffness& K, const Block& T, const Block& R, Matriu& global) {
  const auto& m = K.membrane;
  const auto& p = K.plate;
  const Block uu{
      {m[0][0], m[0][1], 0, m[1][0], m[1][1], 0, 0, 0, p[0][0]}
  };
  const Block rr{
      {p[1][1], p[1][2], 0, p[2][1], p[2][2], 0, 0, 0, K.drilling}
  };
  // w alone couples with the rotations: rank-one blocks n (p R^T) and (R p) n^T.
  Block ur, ru;
  for (int r = 1; r <= 3; ++r)
    for (int c = 1; c <= 3; ++c) {
      ur(r, c) = T(r, 3) * (p[0][1] * R(c, 1) + p[0][2] * R(c, 2));
      ru(r, c) = (R(r, 1) * p[1][0] + R(r, 2) * p[2][0]) * T(c, 3);
    }
  SetBlock(T * uu * Transpose(T), 1, 1, global);
  SetBlock(ur, 1, 4, global);
  SetBlock(ru, 4, 1, global);
  SetBlock(R * rr * Transpose(R), 4, 4, global);
}

bool IsCoplanar(const Project& project, const Node& node) {
  return !project.coplanar.empty() && project.coplanar[node.number - 1] != 0;
}

/// The drilling stiffness of each coplanar node of an element.
template <int N, int P>
double DrillingStiffness(const ShellElement& shell, const ShellPoints<N, P>& points) {
  double area = 0.0;
  for (int p = 0; p < P; ++p) area += points.weight[p];
  return area * kDrilling * shell.material->t * shell.material->Gxy;
}

/// Adds to `moment` the drilling stiffness times the rotation about the normal, at every node.
template <int N, int P>
void AddDrillingMoments(const Project& project, const Mesh& mesh, const ReaVecT& u,
                        Vector3& moment) {
  ShellElement shell(project);
  ShellPoints<N, P> points;
  for (auto [number, elem] : mesh.elems) {
    shell.SetElem(*elem);
    shell.Evaluate(points);
    const double drilling = DrillingStiffness(shell, points);
    const Vector3 normal = {shell.T(1, 3), shell.T(2, 3), shell.T(3, 3)};
    for (int i = 0; i < N; ++i) {
      if (!IsCoplanar(project, *elem->nodes[i])) continue;
      const int first = FirstEquation(elem->nodes[i]->number, project.dofsPerNode);
      const Vector3 rotation = {u(first + 3), u(first + 4), u(first + 5)};
      moment = Plus(moment, Times(normal, drilling * Dot(normal, rotation)));
    }
  }
}

}  // namespace

template <int N, int P>
void AddShellStiffness(const Project& project, const MeshPart& mesh, NodeBlocks& blocks) {
  ShellElement shell(project);
  ShellPoints<N, P> points;
  Matriu global(6, 6);
  for (auto [number, elem] : mesh.elems) {
    shell.SetElem(*elem);
    shell.Evaluate(points);
    const Elasticity D(shell);
    const Block T = BlockOf<3, 3>(shell.T6, 1, 1), R = BlockOf<3, 3>(shell.T6, 4, 4);
    const double drilling = DrillingStiffness(shell, points);
    for (int i = 0; i < N; ++i)
      for (int j = i; j < N; ++j) {
        NodePairStiffness K;
        for (int p = 0; p < P; ++p) AddPoint(points, p, i, j, D, K);
        if (i == j && IsCoplanar(project, *elem->nodes[i])) K.drilling = drilling;
        TurnToGlobal(K, T, R, global);
        blocks.Add(*elem->nodes[i], *elem->nodes[j], global);
      }
  }
}

/// N = Dm Bm u, M = Db Bb u, Q = Ds Bs u at every point.
template <int N, int P>
void ShellResultants(const Project& project, const MeshPart& mesh, const ReaVecT& displacements,
                     ReaVecT& values) {
  ShellElement shell(project);
  ShellPoints<N, P> points;
  double* value = values.data.get();
  for (auto [number, elem] : mesh.elems) {
    shell.SetElem(*elem);
    shell.Evaluate(points);
    std::array<FixedMatrix<5, 1>, N> u;
    for (int i = 0; i < N; ++i) {
      const FixedMatrix<6, 1> local = shell.ToLocal(
          &displacements.data[FirstEquation(elem->nodes[i]->number, project.dofsPerNode) - 1]);
      for (int k = 1; k <= 5; ++k) u[i](k, 1) = local(k, 1);
    }
    for (int p = 0; p < P; ++p, value += 8) {
      FixedMatrix<3, 1> membrane, bending;
      FixedMatrix<2, 1> shear;
      for (int i = 0; i < N; ++i) {
        const ShellStrain B =
            ShellStrainMatrices(points.dx[p][i], points.dy[p][i], points.shape[p][i]);
        membrane += B.membrane * u[i];
        bending += B.bending * u[i];
        shear += B.shear * u[i];
      }
      for (int r = 1; r <= 3; ++r) {
        value[r - 1] = value[r + 2] = 0.0;
        for (int c = 1; c <= 3; ++c) {
          value[r - 1] += shell.Dm(r, c) * membrane(c, 1);
          value[r + 2] += shell.Db(r, c) * bending(c, 1);
        }
      }
      for (int r = 1; r <= 2; ++r)
        value[r + 5] = shell.Ds(r, 1) * shear(1, 1) + shell.Ds(r, 2) * shear(2, 1);
    }
  }
}

template void AddShellStiffness<3, 1>(const Project&, const MeshPart&, NodeBlocks&);
template void AddShellStiffness<6, 3>(const Project&, const MeshPart&, NodeBlocks&);
template void ShellResultants<3, 1>(const Project&, const MeshPart&, const ReaVecT&, ReaVecT&);
template void ShellResultants<6, 3>(const Project&, const MeshPart&, const ReaVecT&, ReaVecT&);

Vector3 DrillingMoment(const Project& project, const ReaVecT& u) {
  Vector3 moment{};
  for (const auto& mesh : project.meshes) {
    if (mesh->elemType != Triangle) continue;
    if (mesh->nnode == 3)
      AddDrillingMoments<3, 1>(project, *mesh, u, moment);
    else
      AddDrillingMoments<6, 3>(project, *mesh, u, moment);
  }
  return moment;
}

}  // namespace kestol
