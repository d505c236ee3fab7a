#pragma once

#include "analysis/Results.h"
#include "programs/mpi/Partition.h"

namespace kestol {

class Project;

/// Leaves of the model and its results what belongs to one process: its elements and their nodes,
/// numbered anew. What is known by the numbers of the input stays known by them.
void KeepOwnPart(const Partition& partition, int rank, Project& project, Results& results);

}  // namespace kestol
