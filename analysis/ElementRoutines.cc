#include "analysis/ElementRoutines.h"

#include "analysis/BeamElement.h"
#include "analysis/ShellTriangle.h"
#include "analysis/Solid.h"
#include "input/Project.h"
#include "main/ErrorChannel.h"

namespace kestol {

namespace {

// Values per point times points.
int BeamValues(const Project& project, const Mesh& /*mesh*/) {
  return project.dofsPerNode * 2;
}
int ShellValues(const Project& /*project*/, const Mesh& mesh) {
  return 8 * (mesh.nnode == 3 ? 1 : 3);
}
int SolidValues(const Project& /*project*/, const Mesh& mesh) {
  return 6 * (mesh.nnode == 4 ? 1 : 4);
}

constexpr ElementRoutines kRoutines[] = {
    {Linear,     AddBeamStiffness,  AddBeamLoads,  BeamValues,  BeamStrengths  },
    {Triangle,   AddShellStiffness, AddShellLoads, ShellValues, ShellResultants},
    {Tetrahedra, AddSolidStiffness, AddSolidLoads, SolidValues, SolidStresses  },
};

}  // namespace

const ElementRoutines& RoutinesFor(const Mesh& mesh) {
  for (const ElementRoutines& routines : kRoutines)
    if (routines.elemType == mesh.elemType) return routines;
  Fatal("error: elemtype unknown\n");
}

}  // namespace kestol
