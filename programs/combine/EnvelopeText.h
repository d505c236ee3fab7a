#pragma once

#include <vector>

#include "kestol/combine/Envelopes.h"
#include "programs/common/OutputBuffer.h"

namespace kestol {

/// The envelopes for people. Of each beam the stations that hold the smallest or largest value of
/// some internal force; every reaction; of everything else the places that hold the extremes of the
/// model.
void WriteEnvelopeText(OutputBuffer& output, const Project& project, Envelopes& envelopes,
                       const std::vector<Combination>& combinations);

}  // namespace kestol
