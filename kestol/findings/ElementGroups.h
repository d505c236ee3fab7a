#pragma once

#include <vector>

#include "input/Project.h"

namespace kestol {

using Group = std::vector<const Elem*>;

/// Groups of elements that hang together by nodes, in the order of their first elements.
std::vector<Group> GroupsOf(const Group& elements);

/// Their numbers in order.
std::vector<int> NumbersOf(const Group& elements);

}  // namespace kestol
