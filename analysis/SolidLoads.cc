#include <cmath>

#include "algebra/Tolerances.h"
#include "analysis/DistributedLoads.h"
#include "analysis/MaterialOf.h"
#include "analysis/MeshPart.h"
#include "analysis/Solid.h"
#include "analysis/SolidPoints.h"
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

/// The force per area of a load on a face whose area vector is `area`; `outward` is 1 where that
/// points out of the element, else -1.
Vector3 PressureOn(const PreassureLT& load, const Vector3& area, double outward) {
  const Frame axes = ArbitraryFrame(Times(area, outward / Norm(area)));
  return SurfaceLoad(load.kind, ValuesOf(load), axes);
}

}  // namespace

// With ten nodes the corners of the face get nothing: over a triangle their shape functions
// L (2L - 1) integrate to 0, those of the mid-sides to a third of the area each.
std::array<FaceShare, 3> SharesOfFace(const Elem& elem, const PreassureLT& load) {
  const int* face = kFaces[load.face];
  const auto at = [&](int place) { return PositionOf(*elem.nodes[face[place]]); };
  const Vector3 ofCorners = Cross(Minus(at(1), at(0)), Minus(at(2), at(0)));
  const Vector3 inside = Minus(PositionOf(*elem.nodes[kOpposite[load.face]]), at(0));
  const double outward = Dot(ofCorners, inside) > 0 ? -1 : 1;
  std::array<FaceShare, 3> shares;
  if (elem.nnode == 4) {
    const Vector3 pressure = PressureOn(load, ofCorners, outward);
    for (int k = 0; k < 3; ++k) shares[k] = {elem.nodes[face[k]], pressure, Norm(ofCorners) / 6};
    return shares;
  }
  const std::array<Vector3, 6> X = {at(0), at(1), at(2), at(3), at(4), at(5)};
  for (int k = 0; k < 3; ++k) {
    const tri6::Derivatives& dN = tri6::kDerivatives[k];
    const Vector3 area = Cross(WeightedSum(dN.s, X), WeightedSum(dN.t, X));
    const double share = Norm(area) * tri6::kWeight;
    shares[k] = {elem.nodes[face[k + 3]], PressureOn(load, area, outward), share};
  }
  return shares;
}

template <int N, int P>
void AddSolidLoads(const Project& project, const MeshPart& mesh, ReaVecT& f) {
  NodalForces forces{f, project.dofsPerNode};
  const bool hasGravity = HasGravity(project);
  SolidPoints<N, P> points;
  for (auto [number, elem] : mesh.elems) {
    const double weight = hasGravity ? OwnWeight(project, MaterialOf(project, *elem), 1.0) : 0.0;
    const PreassureLT* first = project.loads.Get(number);
    if (!(weight > kZero) && first == nullptr) continue;
    Evaluate(*elem, points);
    if (weight > kZero) AddVolumeLoad(forces, *elem, points, WeightAlongGravity(project, weight));
    for (const PreassureLT* load = first; load != nullptr; load = load->next.get())
      if (load->face == PreassureLT::kNoFace)
        AddVolumeLoad(forces, *elem, points, ValuesOf(*load));
      else
        AddFaceLoad(forces, *elem, *load);
  }
}

template void AddSolidLoads<4, 1>(const Project&, const MeshPart&, ReaVecT&);
template void AddSolidLoads<10, 4>(const Project&, const MeshPart&, ReaVecT&);

}  // namespace kestol
