#pragma once

#include <memory>

class Matriu;
class ReaVec3;

/// Vector of `n` doubles on the heap: right-hand sides, solutions, result arrays.
/// Positions are counted from 1.
class ReaVecT {
public:
  ReaVecT() = default;
  explicit ReaVecT(int length);

  ReaVecT(const ReaVecT& other);
  ReaVecT& operator=(const ReaVecT& other);
  ReaVecT(ReaVecT&& other) noexcept;
  ReaVecT& operator=(ReaVecT&& other) noexcept;

  double& operator()(int i) { return data[i - 1]; }
  double operator()(int i) const { return data[i - 1]; }
  double* begin() { return data.get(); }
  double* end() { return data.get() + n; }
  const double* begin() const { return data.get(); }
  const double* end() const { return data.get() + n; }

  void Resize(int newLength, double value);
  void Fill(double value);

  int n = 0;
  std::unique_ptr<double[]> data;
};
