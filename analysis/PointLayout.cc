#include "analysis/PointLayout.h"

#include "input/Project.h"

namespace kestol {

PointLayout PointLayoutOf(const Project& project, const Mesh& mesh) {
  switch (mesh.elemType) {
    case Linear:
      return {2, project.dofsPerNode};
    case Triangle:
      return {mesh.nnode == 3 ? 1 : 3, 8};
    case Tetrahedra:
      return {mesh.nnode == 4 ? 1 : 4, 6};
    default:
      return {};
  }
}

}  // namespace kestol
