#pragma once

#include <functional>

#include "analysis/Results.h"
#include "programs/mpi/Options.h"
#include "programs/mpi/Team.h"

namespace kestol {

class Project;

/// Takes the model and its complete results, on the first process.
using Receiver = std::function<void(const Project&, const Results&)>;

/// The whole run, on every process: from the deck to the receiver, which writes the files, and to
/// the pieces for ParaView. Gives the exit status; throws what RunProgram tells, on one process,
/// and ToldElsewhere on the others.
int RunOnAll(Team& team, const MpiOptions& options, const Receiver& receiver);

}  // namespace kestol
