#pragma once

#include <cstdint>
#include <vector>

namespace kestol {

class Elem;

/// The faces of tetrahedra that belong to one element only, as 4 x place of the element + face
/// (0..3: corners 1 2 3, 2 3 4, 3 4 1, 4 1 2), rising: what of a solid can be seen.
std::vector<std::uint32_t> OuterFaces(const std::vector<const Elem*>& elems);

}  // namespace kestol
