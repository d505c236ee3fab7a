#include "model/EulerAngles.h"

#include <cmath>
#include <numbers>

#include "algebra/Matriu.h"
#include "algebra/Tolerances.h"
#include "main/ErrorChannel.h"

namespace kestol {

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kTurn = 2.0 * kPi;

/// Angles this close to 0 are the rounding of the frame they come from, in radians.
constexpr double kSameAngle = 1e-12;

/// `angle` in [0, 2 pi).
double IntoTurn(double angle) {
  if (angle < 0.0) angle += kTurn;
  if (angle >= kTurn) angle -= kTurn;
  return angle;
}

/// `angle` of atan2 in [0, 2 pi), the rounding about 0 taken away.
double CleanTurn(double angle) {
  if (angle < 0.0) angle += kTurn;
  return std::abs(angle) < kSameAngle || kTurn - angle < kSameAngle ? 0.0 : angle;
}

/// (weight a + b) / (weight + 1) the short way round.
double MeanTurn(double a, double weight, double b) {
  if (a - b > kPi) b += kTurn;
  if (b - a > kPi) a += kTurn;
  return IntoTurn((weight * a + b) / (weight + 1.0));
}

}  // namespace

FixedMatrix<3, 3> EulerRotation(double Euler1, double Euler2, double Euler3) {
  const double c1 = std::cos(Euler1), s1 = std::sin(Euler1);
  const double c2 = std::cos(Euler2), s2 = std::sin(Euler2);
  const double c3 = std::cos(Euler3), s3 = std::sin(Euler3);
  return {
      {c3 * c2, c3 * s2 * s1 - s3 * c1, c3 * s2 * c1 + s3 * s1, //
       s3 * c2, s3 * s2 * s1 + c3 * c1, s3 * s2 * c1 - c3 * s1, //
       -s2, c2 * s1, c2 * c1}
  };
}

void EulerRotation(double Euler1, double Euler2, double Euler3, Matriu& R) {
  R.Redimension(3, 3);
  SetBlock(EulerRotation(Euler1, Euler2, Euler3), 1, 1, R);
}

ReaVec3 FrameToAngles(const FixedMatrix<3, 3>& R) {
  const double horizontal = std::hypot(R(1, 1), R(2, 1));
  double Euler1 = 0.0, Euler3 = 0.0;
  const double Euler2 = std::atan2(-R(3, 1), horizontal);
  if (horizontal > kZero) {
    Euler3 = std::atan2(R(2, 1), R(1, 1));
    // The angle is atan2(R32, R33) too, but those two vanish with `horizontal` and lose their
    // digits when x is nearly vertical. Turned back about z, columns 2 and 3 keep them.
    const double c3 = std::cos(Euler3), s3 = std::sin(Euler3);
    Euler1 = std::atan2(s3 * R(1, 3) - c3 * R(2, 3), c3 * R(2, 2) - s3 * R(1, 2));
  } else {
    Euler3 = std::atan2(-R(1, 2), R(2, 2));
  }
  return {CleanTurn(Euler1), std::abs(Euler2) < kSameAngle ? 0.0 : Euler2, CleanTurn(Euler3)};
}

ReaVec3 FrameToAngles(const Matriu& R) {
  return FrameToAngles(BlockOf<3, 3>(R, 1, 1));
}

ReaVec3 MeanAngles(const ReaVec3& a, const ReaVec3& b) {
  return {MeanTurn(a(1), 1.0, b(1)), (a(2) + b(2)) / 2.0, MeanTurn(a(3), 1.0, b(3))};
}

ReaVec3 MeanAngles(const ReaVec3& a, const ReaVec3& b, const ReaVec3& c) {
  const ReaVec3 m = MeanAngles(a, b);
  return {MeanTurn(m(1), 2.0, c(1)), (a(2) + b(2) + c(2)) / 3.0, MeanTurn(m(3), 2.0, c(3))};
}

int WhichEulerAngle(std::string_view key) {
  const char digit = key.size() > 5 ? key[5] : '\0';
  if (digit < '1' || digit > '3') Fatal("error: Euler angles must be: Euler1,Euler2 or Euler3\n");
  return digit - '1';
}

}  // namespace kestol
