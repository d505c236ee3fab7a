#pragma once

#include <functional>

#include "analysis/Results.h"
#include "programs/common/OutputFiles.h"
#include "programs/mpi/Options.h"
#include "programs/mpi/Team.h"

namespace kestol {

class Project;

/// Takes the model and its complete results, on the first process, and writes what it will into the
/// files of the run.
using Receiver = std::function<void(const Project&, const Results&, OutputFiles&)>;

/// The whole run, on every process: from the deck to the receiver, which writes the files, and to
/// the pieces for ParaView. Gives the exit status; throws what RunProgram tells, on one process,
/// and ToldElsewhere on the others.
int RunOnAll(Team& team, const MpiOptions& options, const Receiver& receiver);

}  // namespace kestol
