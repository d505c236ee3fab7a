#pragma once

#include "kestol/Check.h"
#include "programs/common/OutputBuffer.h"

namespace kestol {

/// The explained modes as vectors on the model: arrays `mode1`, `mode1_rotation`, ... at its nodes.
void WriteModes(OutputBuffer& output, const Project& project, const Findings& findings);

}  // namespace kestol
