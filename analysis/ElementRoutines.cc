#include "analysis/ElementRoutines.h"

#include "analysis/BeamElement.h"
#include "analysis/ShellTriangle.h"
#include "analysis/Solid.h"
#include "input/Project.h"
#include "main/ErrorChannel.h"

namespace kestol {

namespace {

constexpr ElementRoutines kRoutines[] = {
    {Linear,     AddBeamStiffness,  AddBeamLoads,  BeamStrengths  },
    {Triangle,   AddShellStiffness, AddShellLoads, ShellResultants},
    {Tetrahedra, AddSolidStiffness, AddSolidLoads, SolidStresses  },
};

}  // namespace

const ElementRoutines& RoutinesFor(const Mesh& mesh) {
  for (const ElementRoutines& routines : kRoutines)
    if (routines.elemType == mesh.elemType) return routines;
  Fatal("error: elemtype unknown\n");
}

}  // namespace kestol
