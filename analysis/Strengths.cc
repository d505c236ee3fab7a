#include "analysis/Strengths.h"

#include "algebra/StiffnessMatrix.h"
#include "analysis/Assembly.h"
#include "analysis/ElementRoutines.h"
#include "analysis/MainValues.h"
#include "analysis/PointLayout.h"
#include "analysis/Reactions.h"
#include "analysis/Results.h"
#include "analysis/Sizes.h"
#include "analysis/Smoothing.h"
#include "input/Project.h"
#include "output/InfoFile.h"

namespace kestol {

namespace {

/// Values at the integration points of one mesh; none for a mesh without elements.
ReaVecT ValuesOfMesh(const Project& project, const Mesh& mesh, const ReaVecT& u) {
  const ElementRoutines& routines = RoutinesFor(mesh);
  const std::int64_t elements = ElementCount(mesh);
  if (elements == 0) return {};
  ReaVecT values(VectorLength(elements, PointLayoutOf(project, mesh).PerElement()));
  routines.values(project, mesh, u, values);
  return values;
}

}  // namespace

void ComputePointValues(const Project& project, Results& results) {
  results.meshes.assign(project.meshes.size(), {});
  for (std::size_t m = 0; m < project.meshes.size(); ++m) {
    const Mesh& mesh = *project.meshes[m];
    results.meshes[m].local = ValuesOfMesh(project, mesh, results.displacements);
    if (mesh.elemType == Triangle) MainValuesOfMesh(project, mesh, results.meshes[m]);
  }
}

void ComputeStrengths(const Project& project, std::unique_ptr<StiffnessMatrix> K, Results& results,
                      std::ostream* info, Forces forces) {
  ComputePointValues(project, results);
  K->SetZero();
  AddStiffnessOfAllMeshes(project, *K, BlockAxes::Global);
  results.reactions = ReactionsOf(project, *K, results.displacements);
  if (forces == Forces::OfAllNodes) {
    results.internalForces = ReaVecT(results.displacements.n);
    K->Times(results.displacements, results.internalForces);
  }
  K.reset();
  if (project.DoSmoothing != 0) {
    Progress(info, "Beginning smooth of the gaussian variables\n");
    SmoothPointValues(project, results);
  }
}

}  // namespace kestol
