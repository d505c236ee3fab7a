#include "analysis/ElementRoutines.h"

#include "analysis/BeamElement.h"
#include "analysis/ShellTriangle.h"
#include "analysis/Solid.h"
#include "input/Project.h"
#include "main/ErrorChannel.h"

namespace kestol {

namespace {

constexpr ElementRoutines kRoutines[] = {
    {Linear, 2,             AddBeamStiffness, AddBeamLoads,      BeamStrengths},
    { Triangle,   3,  AddShellStiffness<3,                1>, AddShellLoads<3,            1>, ShellResultants<3, 1>},
    { Triangle,   6,  AddShellStiffness<6,                3>, AddShellLoads<6,            3>, ShellResultants<6, 3>},
    { Tetrahedra, 4,  AddSolidStiffness<4,                1>,   AddSolidLoads<4,            1>, SolidStresses<4, 1>},
    { Tetrahedra, 10, AddSolidStiffness<10,               4>,  AddSolidLoads<10,            4>, SolidStresses<10, 4>},
};

}  // namespace

const ElementRoutines& RoutinesFor(const Mesh& mesh) {
  for (const ElementRoutines& routines : kRoutines)
    if (routines.elemType == mesh.elemType && routines.nnode == mesh.nnode) return routines;
  Fatal("error: elemtype unknown\n");
}

}  // namespace kestol
