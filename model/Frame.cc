#include "model/Frame.h"

#include <cmath>

Frame ArbitraryFrame(const Vector3& n) {
  constexpr double kNearlyVertical = 0.015625;  // 1/64
  const bool leans = std::abs(n[0]) >= kNearlyVertical || std::abs(n[1]) >= kNearlyVertical;
  const Vector3 reference = leans ? Vector3{0.0, 0.0, 1.0} : Vector3{0.0, 1.0, 0.0};
  const Vector3 x = Unit(Cross(reference, n));
  return {x, Cross(n, x), n};
}
