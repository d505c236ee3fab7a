#include "programs/view/SolidFaces.h"

#include <algorithm>
#include <array>

#include "model/Elem.h"
#include "model/Node.h"

namespace kestol {

namespace {

struct Face {
  std::array<int, 3> nodes;  ///< rising
  std::uint32_t code;
};

}  // namespace

std::vector<std::uint32_t> OuterFaces(const std::vector<const Elem*>& elems) {
  std::vector<Face> faces;
  std::uint32_t place = 0;
  for (const Elem* elem : elems) {
    for (std::uint32_t f = 0; f < 4; ++f) {
      Face face{
          {elem->nodes[f]->number, elem->nodes[(f + 1) % 4]->number,
           elem->nodes[(f + 2) % 4]->number},
          4 * place + f
      };
      std::sort(face.nodes.begin(), face.nodes.end());
      faces.push_back(face);
    }
    ++place;
  }
  std::sort(faces.begin(), faces.end(), [](const Face& a, const Face& b) {
    return a.nodes != b.nodes ? a.nodes < b.nodes : a.code < b.code;
  });
  std::vector<std::uint32_t> outer;
  for (std::size_t i = 0; i < faces.size();) {
    std::size_t end = i + 1;
    while (end < faces.size() && faces[end].nodes == faces[i].nodes) ++end;
    if (end == i + 1) outer.push_back(faces[i].code);
    i = end;
  }
  std::sort(outer.begin(), outer.end());
  return outer;
}

}  // namespace kestol
