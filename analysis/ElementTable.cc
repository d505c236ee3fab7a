#include "analysis/ElementTable.h"

#include <algorithm>

#include "analysis/Tet10.h"
#include "analysis/Tri6.h"

namespace kestol {

namespace {

// A beam has its values at its two ends; its stiffness and loads are closed forms, so that the
// weight, of the trapezoidal rule, serves nothing but the description.
constexpr Vector3 kLineNodes[] = {
    {0, 0, 0},
    {1, 0, 0}
};

void LineShape(const Vector3& place, double* N) {
  N[0] = 1.0 - place[0];
  N[1] = place[0];
}

constexpr Vector3 kTriangleCentroid[] = {
    {1.0 / 3.0, 1.0 / 3.0, 0}
};

void Tri3Shape(const Vector3& place, double* N) {
  N[0] = 1.0 - place[0] - place[1];
  N[1] = place[0];
  N[2] = place[1];
}

void Tri6Shape(const Vector3& place, double* N) {
  std::ranges::copy(tri6::Shape(place), N);
}

constexpr Vector3 kTetrahedronCentroid[] = {
    {0.25, 0.25, 0.25}
};

void Tet4Shape(const Vector3& place, double* N) {
  N[0] = 1.0 - place[0] - place[1] - place[2];
  std::ranges::copy(place, N + 1);
}

void Tet10Shape(const Vector3& place, double* N) {
  std::ranges::copy(tet10::Shape(place), N);
}

/// The corners come first in both orders.
constexpr std::span<const Vector3> kTri3Nodes{tri6::kNodes.data(), 3};
constexpr std::span<const Vector3> kTet4Nodes{tet10::kNodes.data(), 4};

constexpr int kResultants = 8;  // Nx Ny Nxy Mx My Mxy Qx Qy
constexpr int kStresses = 6;    // xx yy zz xy xz yz

// clang-format off
constexpr ElementKind kKinds[] = {
    {Linear,     2,  1, kLineNodes,    LineShape,  kLineNodes,           0.5,            1, 0          },
    {Triangle,   3,  2, kTri3Nodes,    Tri3Shape,  kTriangleCentroid,    0.5,            1, kResultants},
    {Triangle,   6,  2, tri6::kNodes,  Tri6Shape,  tri6::kPoints,        tri6::kWeight,  2, kResultants},
    {Tetrahedra, 4,  3, kTet4Nodes,    Tet4Shape,  kTetrahedronCentroid, 1.0 / 6.0,      1, kStresses  },
    {Tetrahedra, 10, 3, tet10::kNodes, Tet10Shape, tet10::kPoints,       tet10::kWeight, 2, kStresses  },
};
// clang-format on

}  // namespace

std::span<const ElementKind> AnalysedElements() {
  return kKinds;
}

const ElementKind* FindElementKind(int elemType, int nnode) {
  const auto* const row = std::ranges::find_if(kKinds, [&](const ElementKind& kind) {
    return kind.type == elemType && kind.nnode == nnode;
  });
  return row == std::end(kKinds) ? nullptr : row;
}

}  // namespace kestol
