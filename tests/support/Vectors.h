#pragma once

#include <initializer_list>
#include <vector>

#include "algebra/Matriu.h"
#include "algebra/ReaVec3.h"
#include "algebra/ReaVecT.h"

namespace kestol {

/// Short ways to write vectors and matrices in tests and to compare their entries.

/// A vector of type V of the given entries.
template <class V = ReaVecT>
V Vec(std::initializer_list<double> entries) {
  V v(static_cast<int>(entries.size()));
  std::copy(entries.begin(), entries.end(), v.begin());
  return v;
}

/// A matrix of the given shape and entries, row by row.
inline Matriu Mat(int rows, int columns, std::initializer_list<double> entries) {
  Matriu M(rows, columns);
  std::copy(entries.begin(), entries.end(), M.begin());
  return M;
}

/// The entries of a vector or a matrix in the order of storage.
template <class Container>
std::vector<double> Entries(const Container& container) {
  return {container.begin(), container.end()};
}

}  // namespace kestol
