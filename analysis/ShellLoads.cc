#include "algebra/Zero.h"
#include "analysis/MaterialOf.h"
#include "analysis/MeshPart.h"
#include "analysis/ShellPoints.h"
#include "analysis/ShellTriangle.h"
#include "analysis/Surface.h"
#include "input/Project.h"

namespace kestol {

namespace {

/// Spreads a load per unit area over the nodes that carry it: the corners of a three-noded
/// triangle; the mid-sides of a six-noded one, each with its own point's area.
template <int N, int P>
void AddPerArea(NodalForces& forces, const Elem& elem, const ShellPoints<N, P>& points, int first,
                const Vector3& load) {
  constexpr int kCarrier = N == 3 ? 0 : 3;
  for (int k = 0; k < 3; ++k) {
    const double area = N == 3 ? points.weight[0] / 3 : points.weight[N == 3 ? 0 : k];
    forces.Add(*elem.nodes[k + kCarrier], first, load, area);
  }
}

/// A load per unit length on the edge from corner `face` to the next: halves for two nodes, one,
/// four and one sixths for three.
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
    // Both factors must be given: two marks of "not given" multiply to 1.
    const bool isGiven = hasGravity && material.Weight > 0 && material.t > 0;
    const double weight = isGiven ? material.t * material.Weight : 0;
    if (!(weight > kZero) && first == nullptr) continue;
    shell.Take(*elem);
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

}  // namespace

void AddShellLoads(const Project& project, const MeshPart& mesh, ReaVecT& f) {
  if (mesh.nnode == 3)
    AddLoads<3, 1>(project, mesh, f);
  else
    AddLoads<6, 3>(project, mesh, f);
}

}  // namespace kestol
