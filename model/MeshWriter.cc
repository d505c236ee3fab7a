#include <iomanip>

#include "model/Mesh.h"

namespace kestol {

namespace {

constexpr int kNumberWidth = 5;
constexpr int kCoordinateWidth = 15;

void WriteMaterial(std::ostream& stream, const Elem& elem, bool compact) {
  if (elem.material && compact) {
    stream << " 0\n";
  } else if (elem.material) {
    stream << "  Mat: ";
    elem.material->Print(stream);  // ends its line
  } else if (elem.materialNumber == 0) {
    stream << "\n";
  } else {
    stream << (compact ? " " : "  Mat: ") << elem.materialNumber << "\n";
  }
}

}  // namespace

void Mesh::WriteMesh(std::ostream& stream, bool externalNumbers, bool compact) const {
  const auto numberOf = [this, externalNumbers](const Node* node) {
    if (externalNumbers) return ExternalNumber(node);
    return node == nullptr ? 0 : node->number;
  };

  stream << "MESH    dimension = " << dimension << " ElemType " << NameOfElemType(elemType)
         << "  Nnode = " << nnode << "\n";
  stream << "Coordinates\n";
  for (auto [key, node] : *nodes) {
    stream << std::setw(kNumberWidth) << numberOf(node);
    stream << std::setw(kCoordinateWidth) << node->x << std::setw(kCoordinateWidth) << node->y;
    if (dimension == 3) stream << std::setw(kCoordinateWidth) << node->z;
    stream << "\n";
  }
  stream << "end coordinates\n\nElements\n";
  for (auto [number, elem] : elems) {
    stream << std::setw(kNumberWidth) << number << "   ";
    for (int i = 0; i < nnode; ++i) stream << std::setw(kNumberWidth) << numberOf(elem->nodes[i]);
    WriteMaterial(stream, *elem, compact);
  }
  stream << "end elements\n";
}

}  // namespace kestol
