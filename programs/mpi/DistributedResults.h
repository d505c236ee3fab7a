#pragma once

#include "analysis/Results.h"
#include "programs/mpi/Partition.h"
#include "programs/mpi/Team.h"

namespace kestol {

class Project;

/// Who holds the values at integration points once they are known.
enum class Holder { First, Everyone };

/// Strengths, reactions and smoothed values for results that hold loads and displacements: every
/// process computes those of its own elements, and the holder gets all. On every process
/// results.internalForces holds K u at nodes with supports, 0 elsewhere. Refuses what the elements
/// refuse: only the processes that meet it.
void ComputeDistributed(const Project& project, const Partition& partition, Team& team,
                        Holder holder, Results& results);

}  // namespace kestol
