#pragma once

#include <memory>

#include "algebra/StiffnessMatrix.h"

namespace kestol {

/// The matrix of the sparse direct solver for n equations; a refusal where that is not built.
std::unique_ptr<StiffnessMatrix> NewDirectMatrix(int n);

}  // namespace kestol
