#pragma once

#include <vector>

#include "algebra/ReaVecT.h"
#include "input/Project.h"

namespace kestol {

struct ElementEnergy {
  int number;  ///< of the element
  double energy;
};

/// z . K_e z of every element; z by equation, global axes.
std::vector<ElementEnergy> ElementEnergiesOf(const Project& project, const ReaVecT& z);

}  // namespace kestol
