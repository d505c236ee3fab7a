#pragma once

#include "analysis/Results.h"
#include "input/Project.h"
#include "programs/common/OutputBuffer.h"

namespace kestol {

/// What every support gives to the structure, K u - F, in global axes and in those of turned
/// supports.
void WriteReactions(OutputBuffer& output, const Project& project, const Results& results);

/// Loads and reactions summed up about the origin, and what they differ by.
void WriteEquilibrium(OutputBuffer& output, const Project& project, const Results& results);

}  // namespace kestol
