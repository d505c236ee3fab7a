#pragma once

#include <array>
#include <cmath>
#include <vector>

#include "model/EulerAngles.h"
#include "tests/support/MeshModel.h"
#include "tests/support/Resultant.h"

namespace kestol {

// The resultants of loads on straight triangles and tetrahedra, from their corners alone.

/// A triangle in space.
struct Face {
  Vector3 a, b, c;

  /// The normal, as long as the area.
  Vector3 AreaVector() const { return Times(Cross(Minus(b, a), Minus(c, a)), 0.5); }
  double Area() const { return Norm(AreaVector()); }
  Vector3 Normal() const { return Unit(AreaVector()); }
  Vector3 Centroid() const { return Times(Plus(a, Plus(b, c)), 1.0 / 3.0); }
};

inline Face FaceOf(const MeshModel& model, const MeshModel::Element& shell) {
  return {model.At(shell.nodes[0]), model.At(shell.nodes[1]), model.At(shell.nodes[2])};
}

inline Vector3 CentroidOf(const MeshModel& model, const MeshModel::Element& solid) {
  Vector3 sum{};
  for (int i = 0; i < 4; ++i) sum = Plus(sum, model.At(solid.nodes[i]));
  return Times(sum, 0.25);
}

/// Face 0 to 3 of a tetrahedron, its corners in the order that makes the normal point outwards.
inline Face FaceOf(const MeshModel& model, const MeshModel::Element& solid, int face) {
  const auto corner = [&](int i) { return model.At(solid.nodes[(face + i) % 4]); };
  Face outward{corner(0), corner(1), corner(2)};
  if (Dot(outward.AreaVector(), Minus(outward.a, CentroidOf(model, solid))) < 0)
    std::swap(outward.b, outward.c);
  return outward;
}

inline double VolumeOf(const MeshModel& model, const MeshModel::Element& solid) {
  const Vector3& o = model.At(solid.nodes[0]);
  const auto edge = [&](int i) { return Minus(model.At(solid.nodes[i]), o); };
  return TripleProduct(edge(1), edge(2), edge(3)) / 6.0;
}

/// Local axes of a face in global components: z along the normal n; x the projection of the given
/// x, else horizontal, along (0,0,1) x n or, for a normal within 1/64 of vertical, (0,1,0) x n.
inline std::array<Vector3, 3> AxesOf(const Face& face, const std::optional<Vector3>& angles) {
  const Vector3 n = face.Normal();
  Vector3 x;
  if (angles) {
    const Rotation R = EulerRotation((*angles)[0], (*angles)[1], (*angles)[2]);
    const Vector3 given = Turn(R, {1, 0, 0});
    x = Minus(given, Times(n, Dot(given, n)));
  } else {
    const bool vertical = std::abs(n[0]) < 1.0 / 64 && std::abs(n[1]) < 1.0 / 64;
    x = Cross(vertical ? Vector3{0, 1, 0} : Vector3{0, 0, 1}, n);
  }
  x = Unit(x);
  return {x, Cross(n, x), n};
}

/// How a section of loads means its components.
enum class Along { Global, Projected, Local };

inline Vector3 IntensityOn(const Face& face, Along along, const Vector3& q,
                           const std::optional<Vector3>& angles) {
  if (along == Along::Global) return q;
  if (along == Along::Projected) return Times(q, std::abs(Dot(face.Normal(), Unit(q))));
  const auto axes = AxesOf(face, angles);
  return Plus(Times(axes[0], q[0]), Plus(Times(axes[1], q[1]), Times(axes[2], q[2])));
}

/// Uniform load per area.
inline Resultant OnFace(const Face& face, const Vector3& p) {
  Resultant sum;
  sum.AddForce(face.Centroid(), Times(p, face.Area()));
  return sum;
}

}  // namespace kestol
