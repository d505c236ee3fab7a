#include "analysis/Strengths.h"

#include "algebra/StiffnessMatrix.h"
#include "analysis/Assembly.h"
#include "analysis/Counts.h"
#include "analysis/ElementRoutines.h"
#include "analysis/MainValues.h"
#include "analysis/MeshPart.h"
#include "analysis/PointLayout.h"
#include "analysis/Reactions.h"
#include "analysis/Results.h"
#include "analysis/Smoothing.h"
#include "input/Project.h"
#include "output/InfoFile.h"

namespace kestol {

ReaVecT ValuesAtPoints(const Project& project, const MeshPart& part, const ReaVecT& displacements) {
  const ElementRoutines& routines = RoutinesFor(part.mesh);
  std::int64_t elements = 0;
  for (auto it = part.elems.begin(); it != part.elems.end(); ++it) ++elements;
  if (elements == 0) return {};
  ReaVecT values(VectorLength(elements, PointLayoutOf(project, part.mesh).PerElement()));
  routines.values(project, part, displacements, values);
  return values;
}

void ComputePointValues(const Project& project, Results& results) {
  results.meshes.assign(project.meshes.size(), {});
  for (std::size_t m = 0; m < project.meshes.size(); ++m) {
    const Mesh& mesh = *project.meshes[m];
    results.meshes[m].local = ValuesAtPoints(project, mesh, results.displacements);
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
  if (project.DoSmoothing) {
    Progress(info, "Beginning smooth of the gaussian variables\n");
    SmoothPointValues(project, results);
  }
}

}  // namespace kestol
