#include "model/Frame.h"

#include <cmath>

#include "main/ErrorChannel.h"

namespace kestol {

Frame FrameOf(const FixedMatrix<3, 3>& R) {
  return {
      {R(1, 1), R(2, 1), R(3, 1)},
      {R(1, 2), R(2, 2), R(3, 2)},
      {R(1, 3), R(2, 3), R(3, 3)}
  };
}

FixedMatrix<3, 3> RotationOf(const Frame& frame) {
  const auto& [x, y, z] = frame;
  return {
      {x[0], y[0], z[0], //
       x[1], y[1], z[1], //
       x[2], y[2], z[2]}
  };
}

void CheckInPlane(const Frame& frame, int elementNumber) {
  constexpr double kOutOfPlane = 1e-10;
  const bool inPlane = std::abs(frame.x[2]) <= kOutOfPlane && std::abs(frame.y[2]) <= kOutOfPlane &&
                       std::abs(frame.z[0]) <= kOutOfPlane && std::abs(frame.z[1]) <= kOutOfPlane &&
                       std::abs(std::abs(frame.z[2]) - 1.0) <= kOutOfPlane;
  if (!inPlane)
    Fatal("error: Local z axe must be (0,0,1) for 2D problems.Element: ", elementNumber, "\n");
}

Frame ArbitraryFrame(const Vector3& n) {
  constexpr double kNearlyVertical = 0.015625;  // 1/64
  const bool leans = std::abs(n[0]) >= kNearlyVertical || std::abs(n[1]) >= kNearlyVertical;
  const Vector3 reference = leans ? Vector3{0.0, 0.0, 1.0} : Vector3{0.0, 1.0, 0.0};
  const Vector3 x = Unit(Cross(reference, n));
  return {x, Cross(n, x), n};
}

}  // namespace kestol
