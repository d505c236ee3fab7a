#include "analysis/Smoothing.h"

#include "input/Project.h"

namespace kestol {

void SmoothGaussVariables(Project& project) {
  for (int m = 0; m < static_cast<int>(project.meshes.size()); ++m) {
    if (project.meshes[m]->elemType == Triangle) SmoothShell(project, m);
    if (project.meshes[m]->elemType == Tetrahedra) AverageSolidStresses(project, m);
  }
}

}  // namespace kestol
