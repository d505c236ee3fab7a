#pragma once

#include <algorithm>
#include <initializer_list>
#include <vector>

#include "algebra/Matriu.h"
#include "algebra/ReaVecT.h"
#include "algebra/SkyLine.h"

namespace kestol {

// Small matrices in the skyline solver, and their entries to compare.

/// Springs of stiffness 1 in a row, both ends held: 2 on the diagonal, -1 beside it.
inline SkyLine Chain(int n) {
  SkyLine K(n);
  for (int i = 1; i < n; ++i) K.AddDegreePair(i, i + 1);
  K.Allocate(1);
  for (int i = 1; i <= n; ++i) K.Entry(i, i) = 2.0;
  for (int i = 1; i < n; ++i) K.Entry(i, i + 1) = -1.0;
  return K;
}

/// All n x n entries stored, the given upper triangle row by row.
inline SkyLine Full(int n, std::initializer_list<double> upperRows) {
  SkyLine K(n);
  K.AddDegreePair(1, n);
  for (int j = 2; j < n; ++j) K.AddDegreePair(1, j);
  K.Allocate(1);
  const double* next = upperRows.begin();
  for (int i = 1; i <= n; ++i)
    for (int j = i; j <= n; ++j) K.Entry(i, j) = *next++;
  return K;
}

inline ReaVecT Vector(std::initializer_list<double> values) {
  ReaVecT v(static_cast<int>(values.size()));
  std::copy(values.begin(), values.end(), v.begin());
  return v;
}

inline std::vector<double> Entries(const ReaVecT& v) {
  return {v.begin(), v.end()};
}

inline std::vector<double> Entries(const SkyLine& K) {
  Matriu dense;
  K.CopyFromYouToMat(dense);
  return {dense.data.get(), dense.data.get() + dense.size};
}

}  // namespace kestol
