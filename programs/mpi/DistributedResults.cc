#include "programs/mpi/DistributedResults.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "analysis/Assembly.h"
#include "analysis/Counts.h"
#include "analysis/MainValues.h"
#include "analysis/PointLayout.h"
#include "analysis/Reactions.h"
#include "analysis/Smoothing.h"
#include "analysis/Strengths.h"
#include "input/Project.h"
#include "programs/mpi/DistributedMatrix.h"
#include "programs/mpi/DistributedSystem.h"
#include "programs/mpi/ElementShare.h"

namespace kestol {

namespace {

/// K u at own supports, 0 at the other own nodes.
std::vector<double> OwnSupportForces(const Project& project, const Partition& partition,
                                     const ReaVecT& u) {
  ProductSink product(u);
  const ElementShare share = ElementsOnOwnSupports(project, partition);
  AddStiffness(project, share.Parts(), product, BlockAxes::Global);
  ReaVecT forces(u.n);
  for (const auto [number, node] : *project.meshes[0]->nodes) {
    if (!node->constraint) continue;
    const int first = FirstEquation(node->number, project.dofsPerNode);
    std::copy_n(&product.Product().data[first - 1], project.dofsPerNode, &forces(first));
  }
  return OwnEntries(project, partition, forces);
}

/// Puts the values of all processes, one behind the other, in the order of the mesh's elements.
ReaVecT InElementOrder(const Mesh& mesh, const Partition& partition, int perElement,
                       const std::vector<double>& gathered) {
  const auto perStep = static_cast<std::size_t>(perElement);
  std::vector<int> owners;
  std::vector<std::size_t> next(partition.starts.size(), 0);  // by rank, one more at the end
  for (const auto [number, elem] : mesh.elems) {
    owners.push_back(partition.OwnerOf(elem->nodes[0]->number - 1));
    next[static_cast<std::size_t>(owners.back()) + 1] += perStep;
  }
  for (std::size_t rank = 1; rank < next.size(); ++rank) next[rank] += next[rank - 1];
  ReaVecT values(static_cast<int>(gathered.size()));
  double* to = values.begin();
  for (const int owner : owners) {
    std::size_t& from = next[static_cast<std::size_t>(owner)];
    to = std::copy_n(gathered.begin() + static_cast<std::ptrdiff_t>(from), perElement, to);
    from += perStep;
  }
  return values;
}

}  // namespace

void ComputeDistributed(const Project& project, const Partition& partition, Team& team,
                        Holder holder, Results& results) {
  std::vector<double> supportForces;
  std::vector<ReaVecT> own;
  team.Together([&] {
    supportForces = OwnSupportForces(project, partition, results.displacements);
    const ElementShare share = ElementsOf(project, partition, team.Rank());
    for (const MeshPart& part : share.Parts())
      own.push_back(ValuesAtPoints(project, part, results.displacements));
  });
  results.internalForces = GatherByEquation(project, partition, team, supportForces);

  std::vector<std::vector<double>> gathered;
  for (const ReaVecT& values : own) {
    const std::span<const double> mine(values.begin(), static_cast<std::size_t>(values.n));
    gathered.push_back(holder == Holder::First ? team.GatherToFirst(mine) : team.GatherAll(mine));
  }
  own.clear();
  team.Together([&] {
    if (holder == Holder::First && !team.IsFirst()) return;
    results.reactions = ReactionsOf(project, results.internalForces);
    results.meshes.assign(project.meshes.size(), {});
    for (std::size_t m = 0; m < project.meshes.size(); ++m) {
      const Mesh& mesh = *project.meshes[m];
      const int perElement = PointLayoutOf(project, mesh).PerElement();
      results.meshes[m].local = InElementOrder(mesh, partition, perElement, gathered[m]);
      gathered[m] = {};
      if (mesh.elemType == Triangle) MainValuesOfMesh(project, mesh, results.meshes[m]);
    }
    if (project.DoSmoothing != 0) SmoothPointValues(project, results);
  });
}

}  // namespace kestol
