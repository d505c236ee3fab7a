#include "model/Elem.h"

#include <cassert>

#include "algebra/Vector3.h"
#include "main/ErrorChannel.h"
#include "model/Mesh.h"
#include "model/Node.h"

namespace kestol {

namespace {

/// What a crossing must keep from the border of a triangle, in barycentric coordinates.
constexpr double kInside = 1e-15;

Vector3 PositionOf(const ReaVec3& point) {
  return {point.data[0], point.data[1], point.n > 2 ? point.data[2] : 0.0};
}

/// A face belongs to no mesh; its type shows in the node count.
int TypeOf(const Elem& elem) {
  if (elem.mesh != nullptr) return elem.mesh->elemType;
  return elem.nnode == 2 ? Linear : Triangle;
}

/// Nodes of each face of `el`, once the face is known to exist.
int FaceNodes(const Elem& el, int face) {
  const int type = TypeOf(el);
  if (type == Linear) Fatal("error in Elem::Elem(Elem* el,int face). Linear has no faces\n");
  const bool cornersOnly = (type == Triangle && el.nnode == 3) ||  //
                           (type == Tetrahedra && el.nnode == 4);
  if (!cornersOnly)
    Fatal("error in Elem::Elem(Elem* el,int face). Only Triang. and Tetr. implemented\n");
  if (face < 0 || face >= el.nnode)
    Fatal("error: face ", face, " does not exist in element ", el.number, "\n");
  return el.nnode - 1;
}

/// P + s d = A + t e in the plane.
bool SegmentsCross(const Vector3& P, const Vector3& d, const Vector3& A, const Vector3& e) {
  const double det = d[0] * e[1] - d[1] * e[0];
  if (det == 0.0) return false;
  const Vector3 g = Minus(A, P);
  const double s = (g[0] * e[1] - g[1] * e[0]) / det;
  const double t = (g[0] * d[1] - g[1] * d[0]) / det;
  return s >= 0.0 && s <= 1.0 && t >= 0.0 && t <= 1.0;
}

/// P + s d = A + b e + c f in space.
bool SegmentCrossesTriangle(const Vector3& P, const Vector3& d, const Vector3& A, const Vector3& e,
                            const Vector3& f) {
  const double det = TripleProduct(d, e, f);
  if (det == 0.0) return false;
  const Vector3 g = Minus(A, P);
  const double s = TripleProduct(g, e, f) / det;
  const double b = TripleProduct(g, d, f) / det;
  const double c = -TripleProduct(g, d, e) / det;
  return s >= 0.0 && s <= 1.0 && b >= kInside && c >= kInside && 1.0 - b - c >= kInside;
}

/// Whether all nodes are there and use `dim` coordinates.
bool AllIn(const Elem& elem, int dim) {
  for (int i = 0; i < elem.nnode; ++i)
    if (elem.nodes[i] == nullptr || elem.nodes[i]->dim != dim) return false;
  return true;
}

}  // namespace

Elem::Elem(Mesh* owner, int nodeCount)
    : nodes(std::make_unique<Node*[]>(nodeCount)), mesh(owner), nnode(nodeCount) {}

Elem::Elem(Elem* el, int face) : Elem(static_cast<Mesh*>(nullptr), FaceNodes(*el, face)) {
  for (int i = 0; i < nnode; ++i) nodes[i] = el->nodes[(i + face) % el->nnode];
}

const Material* Elem::GetMaterial(const Plex<Material>& materials) const {
  if (material) return material.get();
  return materials.Get(materialNumber);
}

bool Elem::IsCutted(const ReaVec3& p, const ReaVec3& s) const {
  const bool segment = nnode == 2 && AllIn(*this, 2);
  const bool triangle = nnode == 3 && AllIn(*this, 3);
  if (!segment && !triangle) Fatal("in Elem::IsCutted only 2D implemented\n");
  const Vector3 P = PositionOf(p), d = Minus(PositionOf(s), P), A = PositionOf(*nodes[0]);
  const Vector3 e = Minus(PositionOf(*nodes[1]), A);
  if (segment) return SegmentsCross(P, d, A, e);
  return SegmentCrossesTriangle(P, d, A, e, Minus(PositionOf(*nodes[2]), A));
}

double Elem::Length() const {
  assert(nnode >= 2 && nodes[0] != nullptr && nodes[1] != nullptr);
  return Norm(Minus(PositionOf(*nodes[1]), PositionOf(*nodes[0])));
}

}  // namespace kestol
