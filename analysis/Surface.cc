#include "analysis/Surface.h"

#include <cmath>

#include "algebra/Zero.h"
#include "main/ErrorChannel.h"

SurfaceAxes AxesFromNormal(const Vector3& n) {
  constexpr double kNearVertical = 0.015625;  // 1/64
  const bool steep = std::abs(n[0]) >= kNearVertical || std::abs(n[1]) >= kNearVertical;
  const Vector3 reference = steep ? Vector3{0, 0, 1} : Vector3{0, 1, 0};
  Vector3 x = Cross(reference, n);
  x = Times(x, 1.0 / Norm(x));
  return {x, Cross(n, x), n};
}

Vector3 ProjectedLoad(const Vector3& q, const Vector3& n) {
  const double size = Norm(q);
  if (!(size > kZero)) return {};
  return Times(q, std::abs(Dot(q, n)) / size);
}

Vector3 SurfaceLoad(int kind, const Vector3& q, const Vector3& n) {
  if (kind == GlobalProjected) return ProjectedLoad(q, n);
  if (kind != LocalPressure) return q;
  const SurfaceAxes axes = AxesFromNormal(n);
  Vector3 p;
  for (int a = 0; a < 3; ++a) p[a] = axes.x[a] * q[0] + axes.y[a] * q[1] + axes.n[a] * q[2];
  return p;
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
