#include <cmath>

#include "algebra/Zero.h"
#include "analysis/MaterialOf.h"
#include "analysis/MeshPart.h"
#include "analysis/Solid.h"
#include "analysis/SolidPoints.h"
#include "analysis/Surface.h"
#include "analysis/Tri6.h"
#include "input/Project.h"

namespace kestol {

namespace {

/// Corners of the faces 0..3 and, with ten nodes, their mid-sides in the order of the edges
/// first-second, second-third, third-first; places from 0.
constexpr int kFaces[4][6] = {
    {0, 1, 2, 4, 5, 6},
    {1, 2, 3, 5, 9, 8},
    {2, 3, 0, 9, 7, 6},
    {3, 0, 1, 7, 4, 8}
};
/// The corner opposite to each face, which tells the inside from the outside.
constexpr int kOpposite[4] = {3, 0, 1, 2};

Vector3 ValuesOf(const PreassureLT& load) {
  return {load.values(1), load.values(2), load.values(3)};
}

/// Every node receives the sum over the points of q N w.
template <int N, int P>
void AddVolumeLoad(NodalForces& forces, const Elem& elem, const SolidPoints<N, P>& points,
                   const Vector3& q) {
  for (int k = 0; k < N; ++k) {
    double share = 0.0;
    for (int p = 0; p < P; ++p) share += points.shape[p][k] * points.weight[p];
    forces.Add(*elem.nodes[k], 0, q, share);
  }
}

void AddFaceLoad(NodalForces& forces, const Elem& elem, const PreassureLT& load) {
  for (const FaceShare& share : SharesOfFace(elem, load))
    forces.Add(*share.node, 0, share.pressure, share.area);
}

template <int N, int P, class Evaluate>
void AddLoads(const Project& project, const MeshPart& mesh, ReaVecT& f, Evaluate evaluate) {
  NodalForces forces{f, project.dofsPerNode};
  const bool hasGravity = HasGravity(project);
  SolidPoints<N, P> points;
  for (auto [number, elem] : mesh.elems) {
    const double weight = hasGravity ? MaterialOf(project, *elem).Weight : 0;
    const PreassureLT* first = project.loads.Get(number);
    if (!(weight > kZero) && first == nullptr) continue;
    evaluate(*elem, points);
    if (weight > kZero) AddVolumeLoad(forces, *elem, points, WeightAlongGravity(project, weight));
    for (const PreassureLT* load = first; load != nullptr; load = load->next.get())
      if (load->face == -1)
        AddVolumeLoad(forces, *elem, points, ValuesOf(*load));
      else
        AddFaceLoad(forces, *elem, *load);
  }
}

}  // namespace

std::array<FaceShare, 3> SharesOfFace(const Elem& elem, const PreassureLT& load) {
  const int* face = kFaces[load.face];
  const Vector3 q = ValuesOf(load);
  const auto at = [&](int place) { return PositionOf(*elem.nodes[face[place]]); };
  const Vector3 inside = Minus(PositionOf(*elem.nodes[kOpposite[load.face]]), at(0));
  const double outward = Dot(Cross(Minus(at(1), at(0)), Minus(at(2), at(0))), inside) > 0 ? -1 : 1;
  std::array<FaceShare, 3> shares;
  if (elem.nnode == 4) {
    const Vector3 area = Cross(Minus(at(1), at(0)), Minus(at(2), at(0)));
    const double size = Norm(area);
    const Vector3 p = SurfaceLoad(load.kind, q, ArbitraryFrame(Times(area, outward / size)));
    for (int k = 0; k < 3; ++k) shares[k] = {elem.nodes[face[k]], p, size / 6};
    return shares;
  }
  for (int k = 0; k < 3; ++k) {
    const tri6::Derivatives dN = tri6::ShapeDerivatives(tri6::kPoints[k]);
    Vector3 Xs{}, Xt{};
    for (int i = 0; i < 6; ++i)
      for (int a = 0; a < 3; ++a) {
        Xs[a] += dN.s[i] * at(i)[a];
        Xt[a] += dN.t[i] * at(i)[a];
      }
    const Vector3 area = Cross(Xs, Xt);
    const double size = Norm(area);
    const Vector3 p = SurfaceLoad(load.kind, q, ArbitraryFrame(Times(area, outward / size)));
    shares[k] = {elem.nodes[face[k + 3]], p, size * tri6::kWeight};
  }
  return shares;
}

void AddSolidLoads(const Project& project, const MeshPart& mesh, ReaVecT& f) {
  if (mesh.nnode == 4)
    AddLoads<4, 1>(project, mesh, f, EvaluateTetra4);
  else
    AddLoads<10, 4>(project, mesh, f, EvaluateTetra10);
}

}  // namespace kestol
