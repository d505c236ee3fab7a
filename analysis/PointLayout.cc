#include "analysis/PointLayout.h"

#include "analysis/ElementTable.h"
#include "input/Project.h"

namespace kestol {

PointLayout PointLayoutOf(const Project& project, const Mesh& mesh) {
  const ElementKind* const kind = FindElementKind(mesh.elemType, mesh.nnode);
  if (kind == nullptr) return {};
  const int values = kind->valuesPerPoint == 0 ? project.dofsPerNode : kind->valuesPerPoint;
  return {static_cast<int>(kind->points.size()), values};
}

}  // namespace kestol
