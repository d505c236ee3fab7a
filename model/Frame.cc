#include "model/Frame.h"

#include <cmath>

#include "main/ErrorChannel.h"

namespace kestol {

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
