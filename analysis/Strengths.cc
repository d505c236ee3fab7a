#include "analysis/Strengths.h"

#include "analysis/ElementRoutines.h"
#include "analysis/MainValues.h"
#include "analysis/Reactions.h"
#include "analysis/Sizes.h"
#include "analysis/Smoothing.h"
#include "input/Project.h"
#include "output/InfoFile.h"

namespace kestol {

namespace {

/// Values at the integration points of one mesh; none for a mesh without elements.
void ValuesOfMesh(Project& project, int m) {
  const Mesh& mesh = *project.meshes[m];
  const ElementRoutines& routines = RoutinesFor(mesh);
  const std::int64_t elements = ElementCount(mesh);
  if (elements == 0) return;
  ReaVecT& values = project.gaussVariables[m];
  values = ReaVecT(VectorLength(elements, routines.valuesPerElement(project, mesh)));
  routines.values(project, mesh, values);
}

}  // namespace

void ComputeStrengths(Project& project, std::ostream* info) {
  const int meshCount = static_cast<int>(project.meshes.size());
  for (int m = 0; m < meshCount; ++m) {
    ValuesOfMesh(project, m);
    if (project.meshes[m]->elemType == Triangle) MainValuesOfMesh(project, m);
  }
  ComputeReactions(project);
  if (project.DoSmoothing != 0) {
    Progress(info, "Beginning smooth of the gaussian variables\n");
    SmoothGaussVariables(project);
  }
}

}  // namespace kestol
