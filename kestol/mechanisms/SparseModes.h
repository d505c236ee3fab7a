#pragma once

#include <vector>

#include "algebra/ReaVecT.h"

namespace kestol {

/// Vectors that together with `rigid` span what `modes` and `rigid` span, each with as few entries
/// as can be found: a motion of one joint becomes one vector. Entries that are rounding become 0.
std::vector<ReaVecT> SparseModes(const std::vector<ReaVecT>& modes,
                                 const std::vector<ReaVecT>& rigid);

}  // namespace kestol
