#include "analysis/Smoothing.h"

#include "analysis/Results.h"
#include "input/Project.h"

namespace kestol {

void SmoothPointValues(const Project& project, Results& results) {
  for (std::size_t m = 0; m < project.meshes.size(); ++m) {
    const Mesh& mesh = *project.meshes[m];
    if (mesh.elemType == Triangle) SmoothShell(project, mesh, results.meshes[m]);
    if (mesh.elemType == Tetrahedra)
      results.nodalStresses = AverageSolidStresses(project, mesh, results.meshes[m].local);
  }
}

}  // namespace kestol
