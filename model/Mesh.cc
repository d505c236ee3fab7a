#include "model/Mesh.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "main/ErrorChannel.h"

namespace kestol {

namespace {

constexpr int kNumbersPerBlock = 100;

using Edge = std::array<int, 2>;
constexpr Edge kLineEdges[] = {
    {0, 1}
};
constexpr Edge kTriangleEdges[] = {
    {0, 1},
    {1, 2},
    {2, 0}
};
constexpr Edge kQuadrilateralEdges[] = {
    {0, 1},
    {1, 2},
    {2, 3},
    {3, 0}
};
constexpr Edge kTetrahedraEdges[] = {
    {0, 1},
    {1, 2},
    {2, 0},
    {0, 3},
    {1, 3},
    {2, 3}
};
// Bottom, top, between them.
constexpr Edge kHexahedraEdges[] = {
    {0, 1},
    {1, 2},
    {2, 3},
    {3, 0},
    {4, 5},
    {5, 6},
    {6, 7},
    {7, 4},
    {0, 4},
    {1, 5},
    {2, 6},
    {3, 7}
};

struct FemviewRow {
  ElemType type;
  int nnode;
  int femviewType;
};

constexpr FemviewRow kFemviewRows[] = {
    {Linear,        2,  11},
    {Triangle,      3,  7 },
    {Triangle,      6,  8 },
    {Quadrilateral, 4,  9 },
    {Quadrilateral, 8,  10},
    {Tetrahedra,    4,  3 },
    {Tetrahedra,    10, 6 },
    {Hexahedra,     8,  1 },
    {Hexahedra,     20, 4 },
};

int NumberOf(const Node* node) {
  return node == nullptr ? 0 : node->number;
}

/// `elem` with room for n nodes: the old ones, then null.
void GrowNodes(Elem& elem, int n) {
  auto grown = std::make_unique<Node*[]>(n);
  std::copy_n(elem.nodes.get(), elem.nnode, grown.get());
  elem.nodes = std::move(grown);
}

}  // namespace

Mesh::Mesh()
    : nodes(std::make_shared<Plex<Node>>(kNumbersPerBlock)),
      elems(kNumbersPerBlock),
      renumberMap(std::make_shared<std::vector<int>>()) {}

Mesh::Mesh(const Mesh& first)
    : nodes(first.nodes),
      elems(kNumbersPerBlock),
      sharesNodes(true),
      renumberMap(first.renumberMap) {}

Mesh::~Mesh() = default;

int Mesh::ParseElemType(std::string_view word) {
  const auto letter = [word](std::size_t i) {
    return i < word.size() ? std::tolower(static_cast<unsigned char>(word[i])) : 0;
  };
  // Deliberate: only these letters count, so "Lin", "quad" and "tetra" are types too.
  switch (letter(0)) {
    case 'l':
      return Linear;
    case 'q':
      return Quadrilateral;
    case 'h':
      return Hexahedra;
    case 't':
      if (letter(1) == 'r') return Triangle;
      if (letter(1) == 'e') return Tetrahedra;
      break;
    default:
      break;
  }
  Fatal("ElemType must be: Linear,Triangle,Quadrilateral, Tetrahedra or Hexahedra\n");
}

const char* Mesh::NameOfElemType(int elemType) {
  constexpr const char* kNames[] = {"Linear", "Triangle", "Quadrilateral", "Tetrahedra",
                                    "Hexahedra"};
  return elemType >= Linear && elemType <= Hexahedra ? kNames[elemType - 1] : "";
}

void Mesh::SetFemviewType() {
  for (const FemviewRow& row : kFemviewRows)
    if (row.type == elemType && row.nnode == nnode) {
      femviewType = row.femviewType;
      return;
    }
  Fatal("Unknown Femview type\n");
}

void Mesh::SetNnode(int n) {
  if (n == nnode) return;
  for (auto [number, elem] : elems) {
    if (n > elem->nnode) GrowNodes(*elem, n);
    elem->nnode = n;
  }
  nnode = n;
  cached = ReaVecT();
  SetFemviewType();
}

int Mesh::ExternalNumber(const Node* node) const {
  return node == nullptr ? 0 : ExternalNumber(node->number);
}

int Mesh::ExternalNumber(int index) const {
  if (index < 1 || index > static_cast<int>(renumberMap->size())) return index;
  const int number = (*renumberMap)[index - 1];
  return number == 0 ? index : number;
}

std::span<const Edge> EdgesOf(int elemType) {
  switch (elemType) {
    case Linear:
      return kLineEdges;
    case Triangle:
      return kTriangleEdges;
    case Quadrilateral:
      return kQuadrilateralEdges;
    case Tetrahedra:
      return kTetrahedraEdges;
    case Hexahedra:
      return kHexahedraEdges;
    default:
      return {};
  }
}

std::vector<std::pair<int, int>> Mesh::CalcEdges() const {
  const std::span<const Edge> edgesOfOne = EdgesOf(elemType);
  if (edgesOfOne.empty()) Fatal("error in Mesh::CalcEdges. Mesh not correctly defined\n");
  std::vector<std::pair<int, int>> edges;
  for (auto [number, elem] : elems)
    for (const auto& [p, q] : edgesOfOne)
      edges.push_back(std::minmax({NumberOf(elem->nodes[p]), NumberOf(elem->nodes[q])}));
  std::sort(edges.begin(), edges.end());
  return edges;
}

}  // namespace kestol
