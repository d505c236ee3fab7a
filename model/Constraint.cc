#include "model/Constraint.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "algebra/FixedMatrix.h"
#include "algebra/Matriu.h"
#include "algebra/Tolerances.h"
#include "algebra/Vector3.h"
#include "main/ErrorChannel.h"
#include "model/EulerAngles.h"

namespace kestol {

namespace {

using Rotation = FixedMatrix<3, 3>;

/// Rotations whose axial vector is not longer than this are by 0 or by pi.
constexpr double kNoAxialVector = 1e-12;

/// Whether the third row and column are those of the identity.
bool KeepsZ(const Rotation& R) {
  return std::abs(R(3, 1)) <= kZero && std::abs(R(3, 2)) <= kZero && std::abs(R(1, 3)) <= kZero &&
         std::abs(R(2, 3)) <= kZero && std::abs(R(3, 3) - 1.0) <= kZero;
}

Rotation Identity() {
  return {
      {1.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 1.0}
  };
}

/// Turn by `angle` about the unit vector k: I + sin [k]x + (1 - cos) [k]x^2.
Rotation TurnAbout(const Vector3& k, double angle) {
  const Rotation K{
      {0.0, -k[2], k[1], k[2], 0.0, -k[0], -k[1], k[0], 0.0}
  };
  Rotation first = K, second = K * K, turn = Identity();
  first *= std::sin(angle);
  second *= 1.0 - std::cos(angle);
  turn += first;
  turn += second;
  return turn;
}

/// The axis k, in one of its two senses, of a turn by more than a right angle with this cosine. The
/// symmetric part of Q is cos I + (1 - cos) k k^T: less cos I, its column with the largest diagonal
/// entry is k but for its length.
Vector3 AxisOfLargeTurn(const Rotation& Q, double cosine) {
  const Vector3 diagonal{Q(1, 1), Q(2, 2), Q(3, 3)};
  const int j =
      static_cast<int>(std::max_element(diagonal.begin(), diagonal.end()) - diagonal.begin()) + 1;
  Vector3 k{Q(1, j) + Q(j, 1), Q(2, j) + Q(j, 2), Q(3, j) + Q(j, 3)};
  k[j - 1] -= 2.0 * cosine;
  return Unit(k);
}

/// H with H H = Q, the short way round.
Rotation HalfOf(const Rotation& Q) {
  const double cosine = (Q(1, 1) + Q(2, 2) + Q(3, 3) - 1.0) / 2.0;
  const Vector3 w{Q(3, 2) - Q(2, 3), Q(1, 3) - Q(3, 1), Q(2, 1) - Q(1, 2)};  // 2 sin(phi) k
  if (Norm(w) <= kNoAxialVector)
    return cosine > 0.0 ? Identity() : TurnAbout(AxisOfLargeTurn(Q, -1.0), std::numbers::pi / 2.0);
  Vector3 k = Unit(w);
  if (cosine < 0.0) {  // w vanishes towards a half turn and loses its digits, but not its sense
    k = AxisOfLargeTurn(Q, cosine);
    if (Dot(k, w) < 0.0) k = Times(k, -1.0);
  }
  return TurnAbout(k, std::atan2(Norm(w) / 2.0, cosine) / 2.0);
}

void MergeAxes(const Constraint& a, const Constraint& b, Constraint& merged) {
  if (!a.hasLocalAxes && !b.hasLocalAxes) return;
  merged.hasLocalAxes = true;
  ReaVec3 angles(a.Euler1, a.Euler2, a.Euler3);
  if (a.Euler1 != b.Euler1 || a.Euler2 != b.Euler2 || a.Euler3 != b.Euler3) {
    const Rotation Ra = AxesOf(a);
    angles = FrameToAngles(Ra * HalfOf(TransposeTimes(Ra, AxesOf(b))));
  }
  merged.Euler1 = angles(1);
  merged.Euler2 = angles(2);
  merged.Euler3 = angles(3);
}

}  // namespace

FixedMatrix<3, 3> AxesOf(const Constraint& inclined) {
  return EulerRotation(inclined.Euler1, inclined.Euler2, inclined.Euler3);
}

void CheckKeepsZ(const FixedMatrix<3, 3>& axes, int externalNumber) {
  if (!KeepsZ(axes))
    Fatal("error: Local z axe must be (0,0,1) for 2D problems.Node: ", externalNumber, "\n");
}

int NodeAxesMatrix(const Constraint& constraint, int externalNumber, Matriu& T, int dofsPerNode,
                   int check) {
  if (!constraint.hasLocalAxes) return 1;
  const Rotation R = AxesOf(constraint);
  if (dofsPerNode == 3 && check != 0) CheckKeepsZ(R, externalNumber);
  T.Redimension(dofsPerNode, dofsPerNode);
  T.Fill(0.0);
  for (int first = 1; first < dofsPerNode; first += 3) SetBlock(R, first, first, T);
  return 0;
}

std::unique_ptr<Constraint> MergeTwoConstraints(const Constraint* a, const Constraint* b) {
  if (a == nullptr || b == nullptr) return nullptr;
  auto merged = std::make_unique<Constraint>(std::min(a->dofs, b->dofs));
  bool supports = false;
  for (int d = 0; d < merged->dofs; ++d) {
    if (a->codes[d] != Prescribed || b->codes[d] != Prescribed) continue;
    merged->codes[d] = Prescribed;
    merged->values[d] = (a->values[d] + b->values[d]) / 2.0;
    supports = true;
  }
  if (!supports) return nullptr;
  MergeAxes(*a, *b, *merged);
  return merged;
}

}  // namespace kestol
