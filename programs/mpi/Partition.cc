#include "programs/mpi/Partition.h"

#include <algorithm>
#include <numeric>
#include <span>

#include "input/Project.h"
#include "programs/mpi/PetscObjects.h"

namespace kestol {

namespace {

using PetscPartitioning = PetscHandle<MatPartitioning, MatPartitioningDestroy>;
using PetscIndices = PetscHandle<IS, ISDestroy>;

std::vector<int> Range(int first, int end) {
  std::vector<int> range(static_cast<std::size_t>(end - first));
  std::iota(range.begin(), range.end(), first);
  return range;
}

/// The node where the block of process `rank` begins when all blocks are of one length.
int BlockStart(int nodeCount, int rank, int size) {
  return static_cast<int>(static_cast<long long>(nodeCount) * rank / size);
}

/// PETSc's array with a copy of the numbers; its matrix releases it.
PetscInt* CopyFor(std::span<const int> numbers) {
  PetscInt* copy = nullptr;
  Check(PetscMalloc1(numbers.size(), &copy));
  std::copy(numbers.begin(), numbers.end(), copy);
  return copy;
}

/// The process of every node, as PT-Scotch divides the graph.
std::vector<int> PartsByScotch(const Project& project, const Team& team) {
  const int n = project.numNodes;
  const std::vector<int> rows =
      Range(BlockStart(n, team.Rank(), team.Size()), BlockStart(n, team.Rank() + 1, team.Size()));
  const NodeGraph graph = GraphOf(project, rows);
  PetscMatrix adjacency;
  Check(MatCreateMPIAdj(PETSC_COMM_WORLD, static_cast<PetscInt>(rows.size()), n,
                        CopyFor(graph.start), CopyFor(graph.neighbours), nullptr,
                        adjacency.Place()));
  PetscPartitioning partitioning;
  Check(MatPartitioningCreate(PETSC_COMM_WORLD, partitioning.Place()));
  Check(MatPartitioningSetAdjacency(partitioning, adjacency));
  Check(MatPartitioningSetType(partitioning, MATPARTITIONINGPTSCOTCH));
  Check(MatPartitioningSetFromOptions(partitioning));
  PetscIndices mine;
  Check(MatPartitioningApply(partitioning, mine.Place()));
  const PetscInt* parts = nullptr;
  Check(ISGetIndices(mine, &parts));
  std::vector<int> all = team.GatherAll(std::span<const int>(parts, rows.size()));
  Check(ISRestoreIndices(mine, &parts));
  return all;
}

/// Blocks of one length: for one process, and for models that are too small to be divided well.
std::vector<int> PartsInBlocks(int nodeCount, int size) {
  std::vector<int> parts(static_cast<std::size_t>(nodeCount));
  for (int rank = 0; rank < size; ++rank)
    std::fill(parts.begin() + BlockStart(nodeCount, rank, size),
              parts.begin() + BlockStart(nodeCount, rank + 1, size), rank);
  return parts;
}

std::vector<int> NodesOf(int rank, const std::vector<int>& parts) {
  std::vector<int> nodes;
  for (std::size_t node = 0; node < parts.size(); ++node)
    if (parts[node] == rank) nodes.push_back(static_cast<int>(node));
  return nodes;
}

}  // namespace

int Partition::OwnerOf(int node) const {
  const int place = placeOf[static_cast<std::size_t>(node)];
  const auto behind = std::upper_bound(starts.begin(), starts.end(), place);
  return static_cast<int>(behind - starts.begin()) - 1;
}

Partition DivideNodes(const Project& project, const Team& team) {
  constexpr int kFewest = 8;  // nodes of a process
  const int n = project.numNodes;
  const bool divides = team.Size() > 1 && n / team.Size() >= kFewest;
  const std::vector<int> parts =
      divides ? PartsByScotch(project, team) : PartsInBlocks(n, team.Size());

  std::vector<int> nodes = NodesOf(team.Rank(), parts);
  std::vector<int> ordered;
  for (const int place : NearOrder(GraphOf(project, nodes), nodes, n))
    ordered.push_back(nodes[static_cast<std::size_t>(place)]);

  Partition partition;
  partition.rank = team.Rank();
  partition.nodeAt = team.GatherAll(std::span<const int>(ordered));
  partition.placeOf.resize(partition.nodeAt.size());
  for (std::size_t place = 0; place < partition.nodeAt.size(); ++place)
    partition.placeOf[static_cast<std::size_t>(partition.nodeAt[place])] = static_cast<int>(place);
  partition.starts.assign(static_cast<std::size_t>(team.Size()) + 1, 0);
  for (const int part : parts) ++partition.starts[static_cast<std::size_t>(part) + 1];
  std::partial_sum(partition.starts.begin(), partition.starts.end(), partition.starts.begin());
  return partition;
}

NodeGraph OwnGraph(const Project& project, const Partition& partition) {
  const std::span<const int> own(partition.nodeAt.data() + partition.First(),
                                 static_cast<std::size_t>(partition.OwnCount()));
  return GraphOf(project, own);
}

}  // namespace kestol
