#pragma once

#include <cassert>

#include "algebra/VectorOperations.h"

namespace kestol {

/// Vector of at most three doubles held in place: coordinates, directions, normals, angles.
/// Positions are counted from 1. Arithmetic, products, reductions and text: VectorOperations.h;
/// matrix times vector: Matriu.h.
class ReaVec3 {
public:
  ReaVec3() = default;

  /// `length` zeros; refuses lengths outside 0..3.
  explicit ReaVec3(int length) : n(length) {
    if (length < 0 || length > 3) RefuseVectorSize(length);
  }
  ReaVec3(double x, double y, double z) : n(3), data{x, y, z} {}

  /// Copies the entries; refuses more than three.
  explicit ReaVec3(const ReaVecT& v);

  double& operator()(int i) {
    assert(1 <= i && i <= 3);
    return data[i - 1];
  }
  double operator()(int i) const {
    assert(1 <= i && i <= 3);
    return data[i - 1];
  }
  double* begin() { return data; }
  double* end() { return data + n; }
  const double* begin() const { return data; }
  const double* end() const { return data + n; }

  /// Sets every entry; refuses an empty vector.
  void Fill(double value) { FillEntries(data, n, value); }

  int n = 0;                         ///< 0 to 3
  double data[3] = {0.0, 0.0, 0.0};  ///< those beyond n carry no meaning
};

/// Sum over the entries of (a_i - b_i)^2; refuses different lengths.
double DistanceSquared(const ReaVec3& a, const ReaVec3& b);

}  // namespace kestol
