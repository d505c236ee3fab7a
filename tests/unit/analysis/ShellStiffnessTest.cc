// Stiffness and resultants of shell triangles against the products of their matrices, written out.
#include <algorithm>
#include <array>
#include <cmath>

#include "analysis/ElementRoutines.h"
#include "analysis/ShellTriangle.h"
#include "analysis/Tri6.h"
#include "model/EulerAngles.h"
#include "tests/support/ElementStiffness.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/MeshDeck.h"

namespace kestol {

namespace {

constexpr Vector3 kX = {0, 1, 0}, kY = {-0.8, 0, 0.6}, kZ = {0.6, 0, 0.8};  // local axes

/// Local coordinates of corners and mid-sides; edge 2-3 is curved.
constexpr std::array<double, 6> kLocalX = {0, 3, 1, 1.5, 2.1, 0.5}, kLocalY = {0, 0, 2, 0, 1.2, 1};

TestMesh Leaning(bool six) {
  TestMesh mesh{"Triangle", {}, {}};
  mesh.elems.emplace_back();
  for (int k = 0; k < (six ? 6 : 3); ++k) {
    mesh.nodes.push_back(Plus({1, 2, 3}, Plus(Times(kX, kLocalX[k]), Times(kY, kLocalY[k]))));
    mesh.elems[0].push_back(k + 1);
  }
  return mesh;
}

// Orthotropic: 8 * 0.1 = 2 * 0.4.
const char* const kMaterial =
    "materials\n1 Ex=8 Ey=2 nuXY=0.1 nuYX=0.4 Gxy=3 Gxz=4 Gyz=5 t=0.5\nend materials\n";

std::string Deck(bool six, const std::string& sections = "") {
  return DeckOf(Leaning(six), "", kMaterial + sections);
}

/// Resultants (N, M, Q: 8) from strains of the material above.
std::array<double, 8> Resultants(const std::array<double, 8>& e) {
  const double k = 0.5 / (1 - 0.04), b = 0.25 / 12, s = 0.5 * 5 / 6;
  const auto plane = [&](double x, double y, double xy, double f) {
    return std::array<double, 3>{f * k * (8 * x + 0.8 * y), f * k * (0.8 * x + 2 * y),
                                 f * 0.5 * 3 * xy};
  };
  const auto n = plane(e[0], e[1], e[2], 1), m = plane(e[3], e[4], e[5], b);
  return {n[0], n[1], n[2], m[0], m[1], m[2], 4 * s * e[6], 5 * s * e[7]};
}

/// Strains (8) by local node degrees u, v, w, beta1, beta2, drilling at one point, and its area.
struct PointStrain {
  std::vector<std::array<double, 8>> column;
  double area;
};

PointStrain StrainOf(const std::vector<double>& shape, const std::vector<double>& dx,
                     const std::vector<double>& dy, double area) {
  PointStrain B{{}, area};
  for (std::size_t i = 0; i < shape.size(); ++i) {
    const double x = dx[i], y = dy[i], N = shape[i];
    B.column.push_back({x, 0, y, 0, 0, 0, 0, 0});
    B.column.push_back({0, y, x, 0, 0, 0, 0, 0});
    B.column.push_back({0, 0, 0, 0, 0, 0, x, y});
    B.column.push_back({0, 0, 0, -x, 0, -y, -N, 0});
    B.column.push_back({0, 0, 0, 0, -y, -x, 0, -N});
    B.column.push_back({});
  }
  return B;
}

std::vector<PointStrain> Points(bool six) {
  const auto &x = kLocalX, &y = kLocalY;
  std::vector<PointStrain> points;
  if (!six) {
    const double J = (x[1] - x[0]) * (y[2] - y[0]) - (x[2] - x[0]) * (y[1] - y[0]);
    std::vector<double> dx, dy;
    for (int i = 0; i < 3; ++i) {
      const int j = (i + 1) % 3, k = (i + 2) % 3;
      dx.push_back((y[j] - y[k]) / J);
      dy.push_back((x[k] - x[j]) / J);
    }
    points.push_back(StrainOf({1. / 3, 1. / 3, 1. / 3}, dx, dy, J / 2));
    return points;
  }
  for (const Vector3& p : {
           Vector3{.5, 0 },
           {.5, .5},
           {0,  .5}
  }) {
    const auto d = tri6::ShapeDerivatives(p);
    const auto N = tri6::Shape(p);
    double xs = 0, xt = 0, ys = 0, yt = 0;
    for (int i = 0; i < 6; ++i) {
      xs += d.s[i] * x[i];
      xt += d.t[i] * x[i];
      ys += d.s[i] * y[i];
      yt += d.t[i] * y[i];
    }
    const double det = xs * yt - xt * ys;
    std::vector<double> dx, dy;
    for (int i = 0; i < 6; ++i) {  // Cramer's rule for N,s = x,s N,x + y,s N,y and N,t alike
      dx.push_back((d.s[i] * yt - d.t[i] * ys) / det);
      dy.push_back((xs * d.t[i] - xt * d.s[i]) / det);
    }
    points.push_back(StrainOf({N.begin(), N.end()}, dx, dy, det / 6));
  }
  return points;
}

/// Global components of the local node degrees: displacements along x, y, z, rotations about -y, x
/// and z.
std::array<std::array<double, 6>, 6> NodeAxes() {
  std::array<std::array<double, 6>, 6> T{};
  const Vector3 minusY = Times(kY, -1);
  for (int r = 0; r < 3; ++r) {
    T[r] = {kX[r], kY[r], kZ[r], 0, 0, 0};
    T[r + 3] = {0, 0, 0, minusY[r], kX[r], kZ[r]};
  }
  return T;
}

/// The sum over the points of T B^T D B T^T times the area.
Matriu ExpectedStiffness(bool six) {
  const int n = six ? 36 : 18;
  const auto T = NodeAxes();
  Matriu K(n, n);
  for (const PointStrain& B : Points(six)) {
    // columns of B T^T, by global degrees
    std::vector<std::array<double, 8>> turned(n);
    for (int g = 0; g < n; ++g)
      for (int l = 0; l < 6; ++l)
        for (int s = 0; s < 8; ++s) turned[g][s] += T[g % 6][l] * B.column[g / 6 * 6 + l][s];
    for (int c = 0; c < n; ++c) {
      const auto DB = Resultants(turned[c]);
      for (int r = 0; r < n; ++r)
        for (int s = 0; s < 8; ++s) K(r + 1, c + 1) += turned[r][s] * DB[s] * B.area;
    }
  }
  return K;
}

void ExpectEqual(const Matriu& K, const Matriu& expected, double tolerance) {
  ASSERT_EQ(K.nrows, expected.nrows);
  for (int r = 1; r <= K.nrows; ++r)
    for (int c = 1; c <= K.ncols; ++c) EXPECT_NEAR(K(r, c), expected(r, c), tolerance) << r << c;
}

class ShellStiffness : public testing::TestWithParam<bool> {};
INSTANTIATE_TEST_SUITE_P(ThreeAndSixNodes, ShellStiffness, testing::Bool());

TEST_P(ShellStiffness, IsTheProductOfItsMatricesTurnedToGlobalAxes) {
  ExpectEqual(StiffnessOfDeck(Deck(GetParam())), ExpectedStiffness(GetParam()), 1e-12);
}

TEST_P(ShellStiffness, StandsAtTheIndicesOfItsNodesWhateverTheirOrder) {
  // The numbers run against the corners: every block of the element is handed over transposed.
  TestMesh mesh = Leaning(GetParam());
  const int nodes = static_cast<int>(mesh.nodes.size());
  std::reverse(mesh.nodes.begin(), mesh.nodes.end());
  std::reverse(mesh.elems[0].begin(), mesh.elems[0].end());
  const Matriu K = StiffnessOfDeck(DeckOf(mesh, "", kMaterial));
  const Matriu expected = ExpectedStiffness(GetParam());
  const auto at = [=](int i) { return 6 * (nodes - 1 - i / 6) + i % 6 + 1; };
  for (int r = 0; r < K.nrows; ++r)
    for (int c = 0; c < K.ncols; ++c)
      EXPECT_NEAR(K(at(r), at(c)), expected(r + 1, c + 1), 1e-12) << r << " " << c;
}

TEST_P(ShellStiffness, DrillingIsAMillionthOfTheShearStiffnessAtFlaggedNodesAlone) {
  const int nodes = GetParam() ? 6 : 3;
  const auto project = ReadDeck(Deck(GetParam()));
  const Matriu without = GlobalStiffness(*project);
  project->coplanar.assign(nodes, 1);
  project->coplanar[1] = 0;
  const Matriu with = GlobalStiffness(*project);
  double area = 0.0;
  for (const PointStrain& B : Points(GetParam())) area += B.area;
  const double k = 1e-6 * 0.5 * 3 * area;  // t Gxy
  Matriu drilling(6 * nodes, 6 * nodes);
  for (int node = 0; node < nodes; ++node)
    for (int r = 0; r < 3; ++r)
      for (int c = 0; c < 3; ++c)
        if (node != 1) drilling(6 * node + r + 4, 6 * node + c + 4) = k * kZ[r] * kZ[c];
  for (int r = 1; r <= with.nrows; ++r)
    for (int c = 1; c <= with.ncols; ++c)
      EXPECT_NEAR(with(r, c) - without(r, c), drilling(r, c), 1e-9 * k + 1e-14) << r << " " << c;
}

TEST_P(ShellStiffness, BlocksOfInclinedSupportsAreTurnedFromBothSides) {
  const std::string sections =
      Section("constraints",
              "1 111000 0 0 0 0 0 0 Euler1=0.3 Euler3=0.7\n2 100000 0 0 0 0 0 0\n"
              "3 111000 0 0 0 0 0 0 Euler2=-0.4\n");
  const std::string deck = Deck(GetParam(), sections);
  Matriu expected = ExpectedStiffness(GetParam());
  TurnNode(expected, 1, 6, EulerRotation(0.3, 0, 0.7));
  TurnNode(expected, 3, 6, EulerRotation(0, -0.4, 0));
  ExpectEqual(GlobalStiffness(*ReadDeck(deck), BlockAxes::Support), expected, 1e-12);
  ExpectEqual(GlobalStiffness(*ReadDeck(deck)), ExpectedStiffness(GetParam()), 1e-12);
}

TEST_P(ShellStiffness, ResultantsAreElasticityTimesStrainAtEachPointInTurn) {
  const auto project = ReadDeck(Deck(GetParam()));
  const int n = GetParam() ? 36 : 18;
  ReaVecT u(n);
  for (int i = 0; i < n; ++i) u(i + 1) = std::sin(1.0 + 2.0 * i);
  const auto T = NodeAxes();
  const auto points = Points(GetParam());
  ReaVecT values(8 * static_cast<int>(points.size()));
  values.Fill(99.0);  // what stood there is no part of the sum
  RoutinesFor(*project->meshes[0]).values(*project, *project->meshes[0], u, values);
  for (std::size_t p = 0; p < points.size(); ++p) {
    std::array<double, 8> strain{};
    for (int i = 0; i < n; ++i) {
      double local = 0;  // degree i in the axes of the node
      for (int g = 0; g < 6; ++g) local += T[g][i % 6] * std::sin(1.0 + 2.0 * (i / 6 * 6 + g));
      for (int s = 0; s < 8; ++s) strain[s] += points[p].column[i][s] * local;
    }
    const auto expected = Resultants(strain);
    for (int s = 0; s < 8; ++s) EXPECT_NEAR(values.data[8 * p + s], expected[s], 1e-12) << p << s;
  }
}

}  // namespace

}  // namespace kestol
