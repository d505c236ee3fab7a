#include "kestol/combine/Values.h"

#include <algorithm>

#include "results/BeamResults.h"
#include "results/NodeResults.h"
#include "results/ShellResults.h"
#include "results/SolidResults.h"

namespace kestol {

namespace {

using Action = std::function<void(const ValuePlace&, const double*)>;
using Six = std::array<double, 6>;

Six Joined(const Vector3& a, const Vector3& b) {
  return {a[0], a[1], a[2], b[0], b[1], b[2]};
}

void NodeValues(const Project& project, const Results& results, const Action& action) {
  ForEachNode(project, [&](int number, const Node& node) {
    const NodeDisplacement displacement = DisplacementOf(project, results, node);
    action({ValueKind::NodeDisplacement, number},
           Joined(displacement.u, displacement.rotation).data());
  });
}

void BeamValues(const Project& project, const Results& results, const Action& action) {
  const BeamTable table = TableOfBeams(project, results, DeckStations(project));
  for (int b = 0; b < table.Count(); ++b)
    for (int s = 0; s < table.stations; ++s) {
      const std::size_t place = table.Place(b, s);
      Six forces;
      for (std::size_t v = 0; v < forces.size(); ++v) forces[v] = table.values[v][place];
      const int number = table.beams[static_cast<std::size_t>(b)]->number;
      action({ValueKind::StationForces, number, s}, forces.data());
      action({ValueKind::StationDisplacement, number, s}, table.displacements[place].data());
    }
}

void ShellValues(const Project& project, const Results& results, const Action& action) {
  ForEachShell(project, &results, [&](const ShellView& shell) {
    for (int p = 0; p < shell.pointCount; ++p) {
      const ShellForces& f = shell.points[static_cast<std::size_t>(p)].forces;
      const double forces[] = {f.n[0], f.n[1], f.n[2], f.m[0], f.m[1], f.m[2], f.q[0], f.q[1]};
      const int number = shell.elem->number;
      action({ValueKind::ShellForces, number, p}, forces);
      action({ValueKind::ShellTop, number, p},
             FaceStress(f, shell.thickness, ShellFace::Top, shell.axes).data());
      action({ValueKind::ShellBottom, number, p},
             FaceStress(f, shell.thickness, ShellFace::Bottom, shell.axes).data());
    }
  });
}

void SolidValues(const Project& project, const Results& results, const Action& action) {
  ForEachSolid(project, results, [&](const SolidView& solid) {
    for (int p = 0; p < solid.pointCount; ++p)
      action({ValueKind::SolidStress, solid.elem->number, p},
             solid.points[static_cast<std::size_t>(p)].stress.data());
  });
  const NodalStresses stresses(project, results);
  if (!stresses.Exist()) return;
  ForEachNode(project, [&](int number, const Node& node) {
    action({ValueKind::NodalStress, number}, stresses.Of(node.number).data());
  });
}

void ReactionValues(const Project& project, const Results& results, const Action& action) {
  for (const SupportedNode& support : SupportedNodes(project)) {
    const NodeForces forces = SupportForce(project, results, *support.node);
    action({ValueKind::Reaction, support.number, 0, support.between},
           Joined(forces.force, forces.moment).data());
    if (!IsInclined(*support.node)) continue;
    const NodeForces turned = SupportForceInItsAxes(project, results, *support.node);
    action({ValueKind::ReactionInSupportAxes, support.number, 0, support.between},
           Joined(turned.force, turned.moment).data());
  }
}

}  // namespace

const ValueNames& NamesOf(ValueKind kind) {
  static const ValueNames kNames[] = {
      {6, {"ux", "uy", "uz", "rx", "ry", "rz"}                                    },
      {6, {"N", "Vy", "Vz", "T", "My", "Mz"}                                      },
      {3, {"ux", "uy", "uz"}                                                      },
      {8, {"nx", "ny", "nxy", "mx", "my", "mxy", "qx", "qy"}                      },
      {6, {"topXX", "topYY", "topZZ", "topXY", "topYZ", "topXZ"}                  },
      {6, {"bottomXX", "bottomYY", "bottomZZ", "bottomXY", "bottomYZ", "bottomXZ"}},
      {6, {"XX", "YY", "ZZ", "XY", "YZ", "XZ"}                                    },
      {6, {"XX", "YY", "ZZ", "XY", "YZ", "XZ", "vonMises"}                        },
      {6, {"Fx", "Fy", "Fz", "Mx", "My", "Mz"}                                    },
      {6, {"Fx", "Fy", "Fz", "Mx", "My", "Mz"}                                    },
  };
  return kNames[static_cast<std::size_t>(kind)];
}

void AddDerived(ValueKind kind, double* values) {
  if (kind != ValueKind::NodalStress) return;
  StressTensor stress;
  std::copy_n(values, stress.size(), stress.begin());
  values[stress.size()] = VonMises(stress);
}

void ForEachValue(const Project& project, const Results& results, const Action& action) {
  NodeValues(project, results, action);
  BeamValues(project, results, action);
  ShellValues(project, results, action);
  SolidValues(project, results, action);
  ReactionValues(project, results, action);
}

}  // namespace kestol
