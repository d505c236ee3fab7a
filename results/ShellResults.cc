#include "results/ShellResults.h"

#include "algebra/ReaVecT.h"
#include "analysis/MainValues.h"
#include "analysis/PointLayout.h"
#include "model/EulerAngles.h"
#include "model/Node.h"

namespace kestol {

namespace {

/// x and y of the frame that three angles stand for.
std::array<Vector3, 2> DirectionsOf(const double* angles) {
  const Frame frame = FrameOf(EulerRotation(angles[0], angles[1], angles[2]));
  return {frame.x, frame.y};
}

/// Where a point lies: the centroid, or the mid-side nodes, which are the points of six nodes.
Vector3 PlaceOf(const Elem& elem, int point) {
  if (elem.nnode == 6) return PositionOf(*elem.nodes[point + 3]);
  const auto at = [&](int k) { return PositionOf(*elem.nodes[k]); };
  return Times(Plus(Plus(at(0), at(1)), at(2)), 1.0 / 3.0);
}

}  // namespace

ShellForces ShellForcesOf(const double* v) {
  return {
      {v[0],  v[1], v[2]},
      {v[3],     v[4],      v[5]},
      {v[6], v[7]}
  };
}

StressTensor FaceStress(const ShellForces& forces, double t, ShellFace face) {
  const double side = face == ShellFace::Top ? 1.0 : -1.0;
  const auto at = [&](int i) { return forces.n[i] / t + side * 6.0 * forces.m[i] / (t * t); };
  return {at(0), at(1), 0.0, at(2), 0.0, 0.0};
}

StressTensor FaceStress(const ShellForces& forces, double t, ShellFace face, const Frame& axes) {
  const StressTensor local = FaceStress(forces, t, face);
  return SurfaceStressToGlobal(local[0], local[1], local[3], axes);
}

ShellMain ShellMainOf(const ShellForces& forces, const Frame& axes) {
  const auto& [n, m, q] = forces;
  const double local[8] = {n[0], n[1], n[2], m[0], m[1], m[2], q[0], q[1]};
  ReaVecT values(8), main(8), angles(kAnglesPerPoint);
  std::copy_n(local, 8, values.begin());
  Matriu T(3, 3);
  SetBlock(RotationOf(axes), 1, 1, T);
  MainValues(values, 1, 1, angles, 1, T, main);
  return {
      {main(1), main(2)},
      {main(4), main(5)},
      DirectionsOf(angles.begin()),
      DirectionsOf(angles.begin() + 3)
  };
}

ShellForces ShellView::Mean() const {
  if (pointCount == 1) return points[0].forces;
  ShellForces mean;
  const auto add = [&](auto& to, const auto& from) {
    for (std::size_t i = 0; i < to.size(); ++i) to[i] += from[i] / pointCount;
  };
  for (int p = 0; p < pointCount; ++p) {
    const ShellForces& forces = points[static_cast<std::size_t>(p)].forces;
    add(mean.n, forces.n);
    add(mean.m, forces.m);
    add(mean.q, forces.q);
  }
  return mean;
}

const ShellView& ShellReader::Read(const Elem& elem, const double* stored) {
  const Material* const material = elem.GetMaterial(project_.materials);
  elem.ShellAxes(T_, T6_, material);
  view_.elem = &elem;
  view_.axes = FrameOf(T_);
  view_.thickness = material != nullptr ? material->t : 0.0;
  view_.pointCount = elem.nnode == 3 ? 1 : 3;
  for (int p = 0; p < view_.pointCount; ++p) {
    ShellPoint& point = view_.points[static_cast<std::size_t>(p)];
    point.x = PlaceOf(elem, p);
    point.forces = stored != nullptr ? ShellForcesOf(stored + 8 * p) : ShellForces{};
  }
  return view_;
}

}  // namespace kestol
