#pragma once

#include "programs/mpi/Options.h"
#include "programs/mpi/Team.h"

namespace kestol {

/// The whole run, on every process: from the deck to the files. Gives the exit status; throws what
/// RunProgram tells, on one process, and ToldElsewhere on the others.
int RunOnAll(Team& team, const MpiOptions& options);

}  // namespace kestol
