#pragma once

#include "kestol/combine/Combination.h"
#include "programs/common/OutputBuffer.h"

namespace kestol {

/// The combinations as a table: name, factor of each case, formula.
void WriteListing(OutputBuffer& output, const std::vector<Combination>& combinations,
                  const std::vector<std::string>& cases);

}  // namespace kestol
