#pragma once

#include <vector>

#include "programs/view/PageModel.h"

namespace kestol {

/// The numbers of one case as blocks whose names begin with "rN.".
std::vector<PageBlock> ResultBlocks(const PageModel& model, const Results& results, int number);

}  // namespace kestol
