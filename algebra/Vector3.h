#pragma once

#include <array>
#include <cmath>
#include <cstddef>

namespace kestol {

/// Three components held in place, for the inner arithmetic of the geometry: no length to check,
/// everything inline. Indices from 0.
using Vector3 = std::array<double, 3>;

inline Vector3 Plus(const Vector3& a, const Vector3& b) {
  return {a[0] + b[0], a[1] + b[1], a[2] + b[2]};
}
inline Vector3 Minus(const Vector3& a, const Vector3& b) {
  return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}
inline Vector3 Times(const Vector3& a, double s) {
  return {a[0] * s, a[1] * s, a[2] * s};
}
inline double Dot(const Vector3& a, const Vector3& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}
inline double Norm(const Vector3& a) {
  return std::sqrt(Dot(a, a));
}
inline Vector3 Cross(const Vector3& a, const Vector3& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}
/// a . (b x c), the determinant of the rows a, b, c.
inline double TripleProduct(const Vector3& a, const Vector3& b, const Vector3& c) {
  return Dot(a, Cross(b, c));
}
/// a / |a|; the length must not be 0.
inline Vector3 Unit(const Vector3& a) {
  const double length = Norm(a);
  return {a[0] / length, a[1] / length, a[2] / length};
}
/// The sum of c_k v_k, from k = 0 upwards.
template <std::size_t N>
Vector3 WeightedSum(const std::array<double, N>& c, const std::array<Vector3, N>& v) {
  Vector3 sum{};
  for (std::size_t k = 0; k < N; ++k)
    for (int a = 0; a < 3; ++a) sum[a] += c[k] * v[k][a];
  return sum;
}

}  // namespace kestol
