#pragma once

#include <vector>

#include "kestol/LinearSystem.h"
#include "kestol/mechanisms/ScaledSystem.h"

namespace kestol {

/// The condition number of the scaled stiffness A in the one-norm, by the estimates of Hager and
/// Higham with the system's own factor: at most six products with A and its inverse each.
double EstimateCondition(LinearSystem& system, const ScaledSystem& A);

/// The elements that hold most of the energy of the softest motion of A: where bad conditioning
/// comes from. At most `most` numbers, the first with most energy.
std::vector<int> SoftestElements(LinearSystem& system, const ScaledSystem& A, std::size_t most);

}  // namespace kestol
