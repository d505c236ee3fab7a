#include "analysis/ShellPoints.h"

#include "algebra/Tolerances.h"
#include "analysis/MaterialOf.h"
#include "analysis/Tri6.h"
#include "input/Project.h"
#include "main/ErrorChannel.h"
#include "model/Elem.h"

namespace kestol {

void ShellElement::SetElem(const Elem& next) {
  elem = &next;
  material = &MaterialOf(project_, next);
  next.ShellAxes(T, T6, material);
  material->ShellMatrices(next.number, Dm, Db, Ds);
}

/// Coordinates x and y in the plane of the element, from its first corner: the shift changes no
/// derivative and saves digits.
template <int N>
std::array<Vector3, N> ShellElement::LocalCoordinates() const {
  const Vector3 origin = PositionOf(*elem->nodes[0]);
  std::array<Vector3, N> X;
  for (int k = 0; k < N; ++k) {
    const Vector3 d = Minus(PositionOf(*elem->nodes[k]), origin);
    X[k] = {T(1, 1) * d[0] + T(2, 1) * d[1] + T(3, 1) * d[2],
            T(1, 2) * d[0] + T(2, 2) * d[1] + T(3, 2) * d[2], 0.0};
  }
  return X;
}

void ShellElement::Evaluate(ShellPoints<3, 1>& points) const {
  constexpr double kThird = 1.0 / 3.0;
  const auto [X1, X2, X3] = LocalCoordinates<3>();
  const double x[3] = {X1[0], X2[0], X3[0]}, y[3] = {X1[1], X2[1], X3[1]};
  const double J = (x[1] - x[0]) * (y[2] - y[0]) - (x[2] - x[0]) * (y[1] - y[0]);
  if (!(J >= kZero)) Fatal("error: element ", elem->number, " has jacobian <=0\n");
  const double xc = (x[0] + x[1] + x[2]) * kThird, yc = (y[0] + y[1] + y[2]) * kThird;
  for (int i = 0; i < 3; ++i) {
    const int j = (i + 1) % 3, k = (i + 2) % 3;
    const double a = x[j] * y[k] - x[k] * y[j], b = y[j] - y[k], c = x[k] - x[j];
    points.dx[0][i] = b / J;
    points.dy[0][i] = c / J;
    points.shape[0][i] = (a + b * xc + c * yc) / J;
  }
  points.weight[0] = J * 0.5;
}

void ShellElement::Evaluate(ShellPoints<6, 3>& points) const {
  const std::array<Vector3, 6> X = LocalCoordinates<6>();
  for (int p = 0; p < 3; ++p) {
    const tri6::Derivatives& dN = tri6::kDerivatives[p];
    const auto [xs, ys, zs] = WeightedSum(dN.s, X);  // rows of the jacobian matrix
    const auto [xt, yt, zt] = WeightedSum(dN.t, X);
    const double det = xs * yt - ys * xt;
    if (!(det >= kZero)) Fatal("error: element ", elem->number, " has jacobian 0\n");
    for (int k = 0; k < 6; ++k) {
      points.dx[p][k] = (yt * dN.s[k] - ys * dN.t[k]) / det;   // N,x = (y,t N,s - y,s N,t) / det
      points.dy[p][k] = (-xt * dN.s[k] + xs * dN.t[k]) / det;  // N,y = (x,s N,t - x,t N,s) / det
    }
    points.shape[p] = tri6::Shape(tri6::kPoints[p]);
    points.weight[p] = det * tri6::kWeight;
  }
}

FixedMatrix<6, 1> ShellElement::ToLocal(const double* global) const {
  FixedMatrix<6, 1> local;
  for (int k = 1; k <= 6; ++k)
    for (int r = 1; r <= 6; ++r) local(k, 1) += T6(r, k) * global[r - 1];
  return local;
}

ShellStrain ShellStrainMatrices(double Nx, double Ny, double N) {
  return {{{Nx, 0, 0, 0, 0,  //
            0, Ny, 0, 0, 0,  //
            Ny, Nx, 0, 0, 0}},
          {{0, 0, 0, -Nx, 0,  //
            0, 0, 0, 0, -Ny,  //
            0, 0, 0, -Ny, -Nx}},
          {{0, 0, Nx, -N, 0,  //
            0, 0, Ny, 0, -N}}};
}

}  // namespace kestol
