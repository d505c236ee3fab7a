#include "results/Equilibrium.h"

#include <algorithm>
#include <cmath>

#include "analysis/ShellTriangle.h"

namespace kestol {

namespace {

/// Forces at nodes, their sum and the sum of their sizes.
class ForceSum {
public:
  void Add(const Node& node, const NodeForces& at) {
    const Vector3 lever = Cross(PositionOf(node), at.force);
    total.force = Plus(total.force, at.force);
    total.moment = Plus(total.moment, Plus(lever, at.moment));
    forceSize += Norm(at.force);
    momentSize += Norm(lever) + Norm(at.moment);
  }

  NodeForces total;
  double forceSize = 0.0, momentSize = 0.0;
};

/// |rest| over size, component by component. A component that is exactly balanced is 0.
Vector3 Relative(const Vector3& rest, double size) {
  if (!(size > 0.0)) return {};
  return {std::abs(rest[0]) / size, std::abs(rest[1]) / size, std::abs(rest[2]) / size};
}

}  // namespace

Equilibrium EquilibriumOf(const Project& project, const Results& results) {
  ForceSum loads, reactions;
  if (!project.meshes.empty())
    for (const auto [number, node] : *project.meshes[0]->nodes)
      loads.Add(*node, LoadOn(project, results, *node));
  for (const SupportedNode& supported : SupportedNodes(project))
    reactions.Add(*supported.node, SupportForce(project, results, *supported.node));

  Equilibrium balance;
  balance.loads = loads.total;
  balance.reactions = reactions.total;
  balance.drilling = Minus({}, DrillingMoment(project, results.displacements));
  const Vector3 force = Plus(loads.total.force, reactions.total.force);
  const Vector3 moment = Plus(Plus(loads.total.moment, reactions.total.moment), balance.drilling);
  balance.relativeErrors = {Relative(force, loads.forceSize + reactions.forceSize),
                            Relative(moment, loads.momentSize + reactions.momentSize)};
  for (const Vector3& errors : {balance.relativeErrors.force, balance.relativeErrors.moment})
    for (const double error : errors)
      balance.relativeError = std::max(balance.relativeError, error);
  return balance;
}

}  // namespace kestol
