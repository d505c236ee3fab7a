#pragma once

#include <memory>

class ReaVec3;
class ReaVecT;

/// Dense matrix of doubles on the heap, row by row; entry (i, j) counted from 1 lies at
/// (i-1)*ncols + (j-1) of `data`.
class Matriu {
public:
  Matriu() = default;
  Matriu(int rows, int columns);

  Matriu(const Matriu& other);
  Matriu& operator=(const Matriu& other);
  Matriu(Matriu&& other) noexcept;
  Matriu& operator=(Matriu&& other) noexcept;

  double& operator()(int i, int j) { return data[(i - 1) * ncols + (j - 1)]; }
  double operator()(int i, int j) const { return data[(i - 1) * ncols + (j - 1)]; }

  /// New shape; the buffer is kept when the number of entries is the same. Contents are neither
  /// kept nor cleared.
  void Redimension(int rows, int columns);
  void Fill(double value);

  int nrows = 0;
  int ncols = 0;
  unsigned size = 0;
  std::unique_ptr<double[]> data;
};
