#include "analysis/Strengths.h"

#include "analysis/ElementRoutines.h"
#include "analysis/MainValues.h"
#include "analysis/Reactions.h"
#include "analysis/Smoothing.h"
#include "input/Project.h"
#include "output/InfoFile.h"

void ComputeStrengths(Project& project, std::ostream* info) {
  const int meshCount = static_cast<int>(project.meshes.size());
  for (int m = 0; m < meshCount; ++m) {
    const Mesh& mesh = *project.meshes[m];
    RoutinesFor(mesh).values(project, mesh, project.gaussVariables[m]);
    if (mesh.elemType == Triangle) MainValuesOfMesh(project, m);
  }
  ComputeReactions(project);
  if (project.DoSmoothing != 0) {
    Progress(info, "Beginning smooth of the gaussian variables\n");
    SmoothGaussVariables(project);
  }
}
