#include "analysis/SolidPoints.h"

#include "algebra/Tolerances.h"
#include "analysis/Tet10.h"
#include "main/ErrorChannel.h"
#include "model/Elem.h"
#include "model/Node.h"

namespace kestol {

namespace {

/// Coordinates of the element's nodes from its first corner: the shift changes no gradient and
/// saves digits.
template <int N>
std::array<Vector3, N> CoordinatesFromFirst(const Elem& elem) {
  const Vector3 origin = PositionOf(*elem.nodes[0]);
  std::array<Vector3, N> X;
  for (int k = 0; k < N; ++k) X[k] = Minus(PositionOf(*elem.nodes[k]), origin);
  return X;
}

struct Cofactors {
  std::array<double, 4> b, c, d;
};

/// b_i = (-1)^i det[1 y z], c_i = (-1)^i det[x 1 z], d_i = (-1)^i det[x y 1] over the rows of the
/// three cyclic successors of node i; divided by 6V they are the gradient of N_i.
Cofactors CofactorsOf(const std::array<Vector3, 4>& X) {
  Cofactors cofactors;
  for (int i = 0; i < 4; ++i) {
    const Vector3 &j = X[(i + 1) % 4], &k = X[(i + 2) % 4], &l = X[(i + 3) % 4];
    const double sign = i % 2 == 0 ? -1.0 : 1.0;  // (-1)^i with i counted from 1
    cofactors.b[i] = sign * TripleProduct({1, j[1], j[2]}, {1, k[1], k[2]}, {1, l[1], l[2]});
    cofactors.c[i] = sign * TripleProduct({j[0], 1, j[2]}, {k[0], 1, k[2]}, {l[0], 1, l[2]});
    cofactors.d[i] = sign * TripleProduct({j[0], j[1], 1}, {k[0], k[1], 1}, {l[0], l[1], 1});
  }
  return cofactors;
}

}  // namespace

void EvaluateTetra4(const Elem& elem, SolidPoints<4, 1>& points) {
  const std::array<Vector3, 4> X = CoordinatesFromFirst<4>(elem);
  const double sixV = TripleProduct(X[1], X[2], X[3]);
  if (!(sixV >= kZero)) Fatal("error: element ", elem.number, " has jacobian <=0\n");
  const Cofactors cofactors = CofactorsOf(X);
  const double perSixV = 1.0 / sixV;
  for (int i = 0; i < 4; ++i) {
    points.gradient[0][i] = {cofactors.b[i] * perSixV, cofactors.c[i] * perSixV,
                             cofactors.d[i] * perSixV};
    points.shape[0][i] = 0.25;
  }
  points.weight[0] = sixV * (1.0 / 6.0);
}

void EvaluateTetra10(const Elem& elem, SolidPoints<10, 4>& points) {
  const std::array<Vector3, 10> X = CoordinatesFromFirst<10>(elem);
  for (int p = 0; p < 4; ++p) {
    const tet10::Derivatives& dN = tet10::kDerivatives[p];
    const Vector3 Xr = WeightedSum(dN.r, X), Xs = WeightedSum(dN.s, X),
                  Xt = WeightedSum(dN.t, X);  // rows of the jacobian matrix
    const double det = TripleProduct(Xr, Xs, Xt);
    if (!(det >= kZero)) Fatal("error: element ", elem.number, " has jacobian 0\n");
    // Columns of the inverse jacobian: cross products of its rows over the determinant.
    const double perDet = 1.0 / det;
    const Vector3 r = Times(Cross(Xs, Xt), perDet), s = Times(Cross(Xt, Xr), perDet),
                  t = Times(Cross(Xr, Xs), perDet);
    for (int k = 0; k < 10; ++k)
      for (int a = 0; a < 3; ++a)
        points.gradient[p][k][a] = r[a] * dN.r[k] + s[a] * dN.s[k] + t[a] * dN.t[k];  // J^-1 dN
    points.shape[p] = tet10::Shape(tet10::kPoints[p]);
    points.weight[p] = det * tet10::kWeight;
  }
}

FixedMatrix<6, 3> SolidStrainMatrix(const Vector3& g) {
  const auto [x, y, z] = g;
  return {
      {x, 0, 0, //
       0, y, 0, //
       0, 0, z, //
       y, x, 0, //
       z, 0, x, //
       0, z, y}
  };
}

FixedMatrix<6, 3> TetraStrainMatrix(int i, const std::array<double, 4>& b,
                                    const std::array<double, 4>& c, const std::array<double, 4>& d,
                                    double sixV) {
  return SolidStrainMatrix({b[i - 1] / sixV, c[i - 1] / sixV, d[i - 1] / sixV});
}

}  // namespace kestol
