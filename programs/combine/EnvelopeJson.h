#pragma once

#include <string>
#include <vector>

#include "kestol/combine/Envelopes.h"
#include "programs/common/JsonWriter.h"

namespace kestol {

/// The envelopes as one object: the tree of the results with
/// {"min", "minBy", "minWith", "max", "maxBy", "maxWith"} in place of each number.
void WriteEnvelopes(JsonWriter& json, const Project& project, Envelopes& envelopes,
                    const std::vector<Combination>& combinations);

}  // namespace kestol
