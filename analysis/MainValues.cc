#include "analysis/MainValues.h"

#include <algorithm>
#include <cmath>

#include "algebra/FixedMatrix.h"
#include "algebra/Matriu.h"
#include "algebra/Tolerances.h"
#include "analysis/PointLayout.h"
#include "analysis/Results.h"
#include "input/Project.h"
#include "model/EulerAngles.h"
#include "model/Mesh.h"

namespace kestol {

namespace {

constexpr double kQuarterPi = 0.7853981633974483;

/// The angle by which the axes are turned, in (-pi/4, pi/4].
// Deliberate: the denominator is y - x and the arctangent a plain one.
double MainAngle(double x, double y, double xy) {
  if (std::abs(xy) < kZero) return 0.0;
  if (std::abs(x - y) < kZero) return kQuarterPi;
  return 0.5 * std::atan(2 * xy / (y - x));
}

/// Turns (x, y, xy) by theta into (main 1, main 2, 0).
void TurnTensor(const double* local, double theta, double* main) {
  const double mean = (local[0] + local[1]) / 2, half = (local[0] - local[1]) / 2;
  const double turned = std::cos(2 * theta) * half - std::sin(2 * theta) * local[2];
  main[0] = mean + turned;
  main[1] = mean - turned;
  main[2] = 0.0;
}

/// Angles of the element axes T turned by theta about their z: axis 1 = x cos - y sin, axis 2 =
/// x sin + y cos, the directions on which the main values act.
void TurnedAngles(const Matriu& T, double theta, double* angles) {
  const double c = std::cos(theta), s = std::sin(theta);
  FixedMatrix<3, 3> frame;
  for (int r = 1; r <= 3; ++r) {
    frame(r, 1) = T(r, 1) * c - T(r, 2) * s;
    frame(r, 2) = T(r, 1) * s + T(r, 2) * c;
    frame(r, 3) = T(r, 3);
  }
  const ReaVec3 a = FrameToAngles(frame);
  std::copy_n(a.data, 3, angles);
}

}  // namespace

void MainValues(const ReaVecT& values, int firstValue, int points, ReaVecT& directions,
                int firstDirection, const Matriu& T, ReaVecT& target) {
  for (int p = 0; p < points; ++p) {
    double local[8];
    std::copy_n(values.begin() + firstValue - 1 + 8 * p, 8, local);
    double* main = &target(firstValue + 8 * p);
    double* angles = &directions(firstDirection + 6 * p);

    const double theta = MainAngle(local[0], local[1], local[2]);
    TurnTensor(local, theta, main);
    TurnedAngles(T, theta, angles);

    const double thetaM = MainAngle(local[3], local[4], local[5]);
    TurnTensor(local + 3, thetaM, main + 3);
    TurnedAngles(T, thetaM, angles + 3);

    // Deliberate: the shears turn by +theta of the moments, not with the axes above.
    main[6] = local[6] * std::cos(thetaM) + local[7] * std::sin(thetaM);
    main[7] = local[7] * std::cos(thetaM) - local[6] * std::sin(thetaM);
  }
}

void MainValuesOfMesh(const Project& project, const Mesh& mesh, PointValues& values) {
  if (project.stressOption == LocalStresses) return;
  const PointLayout layout = PointLayoutOf(project, mesh);
  values.main = ReaVecT(values.local.n);
  values.angles = ReaVecT(values.local.n / layout.values * kAnglesPerPoint);
  Matriu T(3, 3), T6(6, 6);
  int point = 0;
  for (auto [number, elem] : mesh.elems) {
    elem->ShellAxes(T, T6, elem->GetMaterial(project.materials));
    MainValues(values.local, layout.values * point + 1, layout.points, values.angles,
               kAnglesPerPoint * point + 1, T, values.main);
    point += layout.points;
  }
}

}  // namespace kestol
