#include "programs/mpi/OwnPart.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "analysis/PointLayout.h"
#include "input/Project.h"

namespace kestol {

namespace {

/// The entries of the kept ones: `perItem` values for each item of `kept` (places from 0).
ReaVecT Restricted(const ReaVecT& values, const std::vector<int>& kept, int perItem) {
  if (values.n == 0) return {};
  ReaVecT part(static_cast<int>(kept.size()) * perItem);
  double* to = part.begin();
  for (const int item : kept)
    to = std::copy_n(values.begin() + std::ptrdiff_t{item} * perItem, perItem, to);
  return part;
}

/// Takes the elements of others out of the mesh; gives the places of those that stay.
std::vector<int> KeepOwnElements(const Partition& partition, int rank, Mesh& mesh) {
  std::vector<int> kept, foreign;
  int place = 0;
  for (const auto [number, elem] : mesh.elems) {
    const bool own = partition.OwnerOf(elem->nodes[0]->number - 1) == rank;
    (own ? kept : foreign).push_back(own ? place : number);
    ++place;
  }
  for (const int number : foreign) mesh.elems.Take(number);
  return kept;
}

void RestrictPoints(const Project& project, const Mesh& mesh, const std::vector<int>& kept,
                    PointValues& values) {
  const PointLayout layout = PointLayoutOf(project, mesh);
  for (ReaVecT* const array : {&values.local, &values.smoothed, &values.main})
    *array = Restricted(*array, kept, layout.PerElement());
  values.angles = Restricted(values.angles, kept, kAnglesPerPoint * layout.points);
}

/// Places (internal index less one) of the nodes that elements use, ascending.
std::vector<int> UsedNodes(const Project& project) {
  std::vector<bool> used(static_cast<std::size_t>(project.numNodes), false);
  for (const auto& mesh : project.meshes)
    for (const auto [number, elem] : mesh->elems)
      for (int k = 0; k < elem->nnode; ++k)
        used[static_cast<std::size_t>(elem->nodes[k]->number - 1)] = true;
  std::vector<int> places;
  for (std::size_t place = 0; place < used.size(); ++place)
    if (used[place]) places.push_back(static_cast<int>(place));
  return places;
}

/// Takes the nodes that are not in `kept` away and numbers the others by their place in it.
void KeepNodes(Project& project, const std::vector<int>& kept) {
  std::vector<int> newIndex(static_cast<std::size_t>(project.numNodes), 0), inputNumbers;
  for (const int place : kept) {
    inputNumbers.push_back(project.ExternalNumber(place + 1));
    newIndex[static_cast<std::size_t>(place)] = static_cast<int>(inputNumbers.size());
  }
  Plex<Node>& nodes = *project.meshes[0]->nodes;
  std::vector<int> dropped;
  for (const auto [key, node] : nodes) {
    node->number = newIndex[static_cast<std::size_t>(node->number - 1)];
    if (node->number == 0) dropped.push_back(key);
  }
  for (const int key : dropped) nodes.Take(key);
  *project.meshes[0]->renumberMap = std::move(inputNumbers);
  project.numNodes = static_cast<int>(kept.size());
  project.coplanar.clear();
}

void RestrictReactions(const std::vector<int>& kept, std::vector<Reaction>& reactions) {
  std::vector<Reaction> part;
  for (Reaction& reaction : reactions) {
    const auto place = std::lower_bound(kept.begin(), kept.end(), reaction.nodeIndex - 1);
    if (place == kept.end() || *place != reaction.nodeIndex - 1) continue;
    reaction.nodeIndex = static_cast<int>(place - kept.begin()) + 1;
    part.push_back(reaction);
  }
  reactions = std::move(part);
}

}  // namespace

void KeepOwnPart(const Partition& partition, int rank, Project& project, Results& results) {
  for (std::size_t m = 0; m < project.meshes.size(); ++m) {
    const std::vector<int> kept = KeepOwnElements(partition, rank, *project.meshes[m]);
    RestrictPoints(project, *project.meshes[m], kept, results.meshes[m]);
  }
  const std::vector<int> nodes = UsedNodes(project);
  for (ReaVecT* const vector : {&results.loads, &results.displacements, &results.internalForces})
    *vector = Restricted(*vector, nodes, project.dofsPerNode);
  results.nodalStresses = Restricted(results.nodalStresses, nodes, 6);
  RestrictReactions(nodes, results.reactions);
  KeepNodes(project, nodes);
}

}  // namespace kestol
