#include "analysis/DistributedLoads.h"

#include <cmath>

#include "algebra/Tolerances.h"
#include "main/ErrorChannel.h"

namespace kestol {

void NodalForces::Add(const Node& node, int first, const Vector3& load, double factor) {
  double* const entries = &f(FirstEquation(node.number, dofsPerNode)) + first;
  for (int d = 0; d < 3; ++d) entries[d] += load[d] * factor;
}

Vector3 SurfaceLoad(LoadKind kind, const Vector3& q, const Frame& axes) {
  if (kind == LocalPressure) return axes.ToGlobal(q);
  if (kind != GlobalProjected) return q;
  const double size = Norm(q);
  if (!(size > kZero)) return {};
  return Times(q, std::abs(Dot(q, axes.z)) / size);
}

double OwnWeight(const Project& project, const Material& material, double size) {
  if (!HasGravity(project)) return 0.0;
  return material.Weight > 0.0 && size > 0.0 ? size * material.Weight : 0.0;
}

Vector3 WeightAlongGravity(const Project& project, double w) {
  const ReaVec3& g = project.gravity;
  if (project.problemType == Plane) {
    // Deliberate: only a positive z is refused; a negative one is ignored.
    if (g(3) > kZero) Fatal("error: for 2D problems GravityDirection_Z must be 0.0\n");
    return {g(1) * w, g(2) * w, 0.0};
  }
  return {g(1) * w, g(2) * w, g(3) * w};
}

}  // namespace kestol
