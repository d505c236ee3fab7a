#pragma once

#include "analysis/Results.h"
#include "programs/common/OutputFiles.h"
#include "programs/mpi/Options.h"

namespace kestol {

class Project;

/// Refuses, before any work is done, outputs of this process that cannot be written, that are the
/// deck, or that are one file. The first process writes everything but the pieces of others.
void CheckOutputs(const MpiOptions& options, int rank);

/// The report and the files for the post-processor, by the solver's own writers. They are complete,
/// and named when `files` are.
void WriteOutputs(const MpiOptions& options, const Project& project, const Results& results,
                  OutputFiles& files);

}  // namespace kestol
