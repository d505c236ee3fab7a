#pragma once

#include <cstdint>
#include <iterator>
#include <limits>
#include <new>

#include "input/Project.h"
#include "main/ErrorChannel.h"

namespace kestol {

/// Length of a vector of `count` items of `perItem` values; one that does not fit an int cannot be
/// stored.
inline int VectorLength(std::int64_t count, int perItem) {
  const std::int64_t length = count * perItem;
  if (length > std::numeric_limits<int>::max()) throw std::bad_alloc();
  return static_cast<int>(length);
}

/// Number of equations of the model as it stands.
inline int EquationCount(const Project& project) {
  return VectorLength(project.numNodes, project.dofsPerNode);
}

/// Number of elements of the mesh.
inline std::int64_t ElementCount(const Mesh& mesh) {
  std::int64_t count = 0;
  for (auto it = mesh.elems.begin(); it != mesh.elems.end(); ++it) ++count;
  return count;
}

}  // namespace kestol
