// Stiffness and stresses of tetrahedra against the products of their matrices, written out.
#include <algorithm>
#include <array>
#include <cmath>

#include "analysis/ElementRoutines.h"
#include "analysis/Solid.h"
#include "analysis/Tet10.h"
#include "model/EulerAngles.h"
#include "tests/support/ElementStiffness.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/MeshDeck.h"

namespace kestol {

namespace {

/// One element; the edges of the ten-noded one are curved.
TestMesh Skew(bool ten) {
  TestMesh mesh{
      "Tetrahedra", {{0.1, 0.2, 0},  {2, 0, 0.3}, {0.2, 1.5, 0}, {0, 0.4, 1.2}},
       {{1, 2, 3, 4}}
  };
  if (!ten) return mesh;
  ToTen(mesh);
  CurveEdges(mesh, 4);
  return mesh;
}

const char* const kMaterial = "materials\n1 E=10 nu=0.25\nend materials\n";

using Stress = std::array<double, 6>;  // xx, yy, zz, xy, xz, yz

/// E = 10, nu = 1/4: Lame's constants are both 4.
Stress StressOf(const Stress& e) {
  const double volume = e[0] + e[1] + e[2];
  return {4 * volume + 8 * e[0],
          4 * volume + 8 * e[1],
          4 * volume + 8 * e[2],
          4 * e[3],
          4 * e[4],
          4 * e[5]};
}

/// Strains by node degrees at one point, and its volume.
struct PointStrain {
  std::vector<Stress> column;
  double volume;
};

PointStrain StrainOf(const std::vector<Vector3>& gradients, double volume) {
  PointStrain B{{}, volume};
  for (const auto& [x, y, z] : gradients) {
    B.column.push_back({x, 0, 0, y, z, 0});
    B.column.push_back({0, y, 0, x, 0, z});
    B.column.push_back({0, 0, z, 0, x, y});
  }
  return B;
}

/// Gradients from derivatives along r, s, t, and the jacobian determinant.
std::vector<Vector3> GradientsOf(const TestMesh& mesh, const std::vector<Vector3>& dN,
                                 double& det) {
  Vector3 r{}, s{}, t{};
  for (std::size_t k = 0; k < dN.size(); ++k) {
    r = Plus(r, Times(mesh.nodes[k], dN[k][0]));
    s = Plus(s, Times(mesh.nodes[k], dN[k][1]));
    t = Plus(t, Times(mesh.nodes[k], dN[k][2]));
  }
  det = Dot(Cross(r, s), t);
  std::vector<Vector3> gradients;
  for (const Vector3& d : dN)  // the vectors reciprocal to r, s, t
    gradients.push_back(Times(
        Plus(Plus(Times(Cross(s, t), d[0]), Times(Cross(t, r), d[1])), Times(Cross(r, s), d[2])),
        1 / det));
  return gradients;
}

std::vector<PointStrain> Points(const TestMesh& mesh) {
  std::vector<PointStrain> points;
  double det = 0;
  if (mesh.nodes.size() == 4) {
    const auto gradients = GradientsOf(mesh,
                                       {
                                           {-1, -1, -1},
                                           {1,  0,  0 },
                                           {0,  1,  0 },
                                           {0,  0,  1 }
    },
                                       det);
    points.push_back(StrainOf(gradients, det / 6));
    return points;
  }
  constexpr double n = 0.5854102, o = 0.1381966;
  for (const Vector3& p : {
           Vector3{o, o, o},
           {n, o, o},
           {o, n, o},
           {o, o, n}
  }) {
    const auto d = tet10::ShapeDerivatives(p);
    std::vector<Vector3> dN;
    for (int k = 0; k < 10; ++k) dN.push_back({d.r[k], d.s[k], d.t[k]});
    const auto gradients = GradientsOf(mesh, dN, det);
    points.push_back(StrainOf(gradients, det / 24));
  }
  return points;
}

/// The sum over the points of B^T D B times the volume.
Matriu ExpectedStiffness(const TestMesh& mesh) {
  const int n = 3 * static_cast<int>(mesh.nodes.size());
  Matriu K(n, n);
  for (const PointStrain& B : Points(mesh))
    for (int c = 0; c < n; ++c) {
      const Stress DB = StressOf(B.column[c]);
      for (int r = 0; r < n; ++r)
        for (int s = 0; s < 6; ++s) K(r + 1, c + 1) += B.column[r][s] * DB[s] * B.volume;
    }
  return K;
}

void ExpectEqual(const Matriu& K, const Matriu& expected) {
  ASSERT_EQ(K.nrows, expected.nrows);
  for (int r = 1; r <= K.nrows; ++r)
    for (int c = 1; c <= K.ncols; ++c) EXPECT_NEAR(K(r, c), expected(r, c), 1e-12) << r << " " << c;
}

class SolidStiffness : public testing::TestWithParam<bool> {};  // ten nodes?
INSTANTIATE_TEST_SUITE_P(FourAndTenNodes, SolidStiffness, testing::Bool());

TEST_P(SolidStiffness, IsTheProductOfItsMatrices) {
  const TestMesh mesh = Skew(GetParam());
  ExpectEqual(StiffnessOfDeck(DeckOf(mesh, "", kMaterial)), ExpectedStiffness(mesh));
}

TEST_P(SolidStiffness, StandsAtTheIndicesOfItsNodesWhateverTheirOrder) {
  TestMesh mesh = Skew(GetParam());
  const Matriu expected = ExpectedStiffness(mesh);
  const int nodes = static_cast<int>(mesh.nodes.size());
  std::reverse(mesh.nodes.begin(), mesh.nodes.end());
  for (int k = 0; k < nodes; ++k) mesh.elems[0][k] = nodes - k;
  const Matriu K = StiffnessOfDeck(DeckOf(mesh, "", kMaterial));
  const auto at = [=](int i) { return 3 * (nodes - 1 - i / 3) + i % 3 + 1; };
  for (int r = 0; r < K.nrows; ++r)
    for (int c = 0; c < K.ncols; ++c)
      EXPECT_NEAR(K(at(r), at(c)), expected(r + 1, c + 1), 1e-12) << r << " " << c;
}

TEST_P(SolidStiffness, BlocksOfInclinedSupportsAreTurnedFromBothSides) {
  const TestMesh mesh = Skew(GetParam());
  const std::string deck =
      DeckOf(mesh, "",
             kMaterial + Section("constraints",
                                 "1 111 0 0 0 Euler1=0.3 Euler3=0.7\n2 100 0 0 0\n"
                                 "3 111 0 0 0 Euler2=-0.4\n"));
  Matriu expected = ExpectedStiffness(mesh);
  ExpectEqual(GlobalStiffness(*ReadDeck(deck)), expected);
  TurnNode(expected, 1, 3, EulerRotation(0.3, 0, 0.7));
  TurnNode(expected, 3, 3, EulerRotation(0, -0.4, 0));
  ExpectEqual(GlobalStiffness(*ReadDeck(deck), BlockAxes::Support), expected);
}

TEST_P(SolidStiffness, IgnoresEulerAnglesOfTheMaterial) {
  const TestMesh mesh = Skew(GetParam());
  ExpectEqual(
      StiffnessOfDeck(DeckOf(mesh, "", "materials\n1 E=10 nu=0.25 Euler1=1 Euler3=0.5\nend\n")),
      ExpectedStiffness(mesh));
}

TEST_P(SolidStiffness, StressesAreElasticityTimesStrainAtEachPointInTurn) {
  const TestMesh mesh = Skew(GetParam());
  const auto project = ReadDeck(DeckOf(mesh, "", kMaterial));
  const int n = 3 * static_cast<int>(mesh.nodes.size());
  ReaVecT u(n);
  for (int i = 0; i < n; ++i) u(i + 1) = std::sin(1.0 + 2.0 * i);
  const auto points = Points(mesh);
  ReaVecT values(6 * static_cast<int>(points.size()));
  values.Fill(99.0);  // what stood there is no part of the sum
  RoutinesFor(*project->meshes[0]).values(*project, *project->meshes[0], u, values);
  for (std::size_t p = 0; p < points.size(); ++p) {
    Stress strain{};
    for (int i = 0; i < n; ++i)
      for (int s = 0; s < 6; ++s) strain[s] += points[p].column[i][s] * std::sin(1.0 + 2.0 * i);
    const Stress expected = StressOf(strain);
    for (int s = 0; s < 6; ++s) EXPECT_NEAR(values.data[6 * p + s], expected[s], 1e-12) << p << s;
  }
}

}  // namespace

}  // namespace kestol
