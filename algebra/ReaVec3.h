#pragma once

/// Vector of at most three doubles held in place: coordinates, directions, normals, angles.
/// Positions are counted from 1.
class ReaVec3 {
public:
  ReaVec3() = default;
  explicit ReaVec3(int length);
  ReaVec3(double x, double y, double z) : n(3), data{x, y, z} {}

  double& operator()(int i) { return data[i - 1]; }
  double operator()(int i) const { return data[i - 1]; }

  int n = 0;
  double data[3] = {0.0, 0.0, 0.0};
};
