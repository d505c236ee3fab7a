#include "algebra/Tolerances.h"
#include "analysis/DistributedLoads.h"
#include "analysis/MaterialOf.h"
#include "analysis/MeshPart.h"
#include "analysis/ShellPoints.h"
#include "analysis/ShellTriangle.h"
#include "input/Project.h"

namespace kestol {

namespace {

/// The integral over the element of the shape function of its node k + N - 3. With three nodes L_k
/// has a third of the area. With six, a corner's L (2L - 1) has none and a mid-side's 4 L L' a
/// third: taken at the points of the element, which are the mid-sides, each has the area of its
/// own.
double AreaOfCarrier(const ShellPoints<3, 1>& points, int /*k*/) {
  return points.weight[0] / 3;
}
double AreaOfCarrier(const ShellPoints<6, 3>& points, int k) {
  return points.weight[k];
}

/// The consistent nodal forces of a load per unit area: q times the integrals of the shape
/// functions, hence on the corners of three nodes and on the mid-sides alone of six.
template <int N, int P>
void AddPerArea(NodalForces& forces, const Elem& elem, const ShellPoints<N, P>& points, int first,
                const Vector3& load) {
  for (int k = 0; k < 3; ++k)
    forces.Add(*elem.nodes[k + N - 3], first, load, AreaOfCarrier(points, k));
}

/// A load per unit length on the edge from corner `face` to the next, again by the integrals of the
/// shape functions along it: halves for two nodes; a sixth, a sixth and four sixths for three.
void AddEdgeLoad(NodalForces& forces, const Elem& elem, int face, const Vector3& q) {
  const Node &a = *elem.nodes[face], &b = *elem.nodes[(face + 1) % 3];
  const double l = Norm(Minus(PositionOf(b), PositionOf(a)));
  const double corner = elem.nnode == 3 ? l / 2 : l / 6;
  forces.Add(a, 0, q, corner);
  forces.Add(b, 0, q, corner);
  if (elem.nnode == 6) forces.Add(*elem.nodes[face + 3], 0, q, 2 * l / 3);
}

}  // namespace

template <int N, int P>
void AddShellLoads(const Project& project, const MeshPart& mesh, ReaVecT& f) {
  NodalForces forces{f, project.dofsPerNode};
  ShellElement shell(project);
  ShellPoints<N, P> points;
  for (auto [number, elem] : mesh.elems) {
    const Material& material = MaterialOf(project, *elem);
    const PreassureLT* first = project.loads.Get(number);
    const double weight = OwnWeight(project, material, material.t);
    if (!(weight > kZero) && first == nullptr) continue;
    shell.SetElem(*elem);
    shell.Evaluate(points);
    if (weight > kZero) AddPerArea(forces, *elem, points, 0, WeightAlongGravity(project, weight));
    const Frame axes = FrameOf(shell.T);
    for (const PreassureLT* load = first; load != nullptr; load = load->next.get()) {
      const Vector3 q = ValuesOf(*load);
      if (load->face != PreassureLT::kNoFace) {
        AddEdgeLoad(forces, *elem, load->face, q);
        continue;
      }
      AddPerArea(forces, *elem, points, 0, SurfaceLoad(load->kind, q, axes));
      const double couple = load->kind == LocalPressure ? load->values(4) : 0.0;
      if (couple != 0.0) AddPerArea(forces, *elem, points, 3, Times(axes.x, couple));
    }
  }
}

template void AddShellLoads<3, 1>(const Project&, const MeshPart&, ReaVecT&);
template void AddShellLoads<6, 3>(const Project&, const MeshPart&, ReaVecT&);

}  // namespace kestol
