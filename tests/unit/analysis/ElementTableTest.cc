#include <array>
#include <cmath>
#include <vector>

#include "analysis/ElementRoutines.h"
#include "analysis/ElementTable.h"
#include "tests/support/ExpectFatal.h"

namespace kestol {

namespace {

constexpr int kMostNodes = 10;
using Shapes = std::array<double, kMostNodes>;

Shapes ShapesAt(const ElementKind& kind, const Vector3& place) {
  Shapes N{};
  kind.shape(place, N.data());
  return N;
}

std::string NameOf(const ElementKind& kind) {
  return "type " + std::to_string(kind.type) + " of " + std::to_string(kind.nnode) + " nodes";
}

/// Places inside the element, where no shape function is simple.
std::vector<Vector3> InnerPlaces(int dimension) {
  std::vector<Vector3> places = {
      {0.21, 0.34, 0.17},
      {0.6,  0.1,  0.05},
      {0.05, 0.05, 0.8 }
  };
  for (Vector3& place : places)
    for (int a = dimension; a < 3; ++a) place[a] = 0.0;
  return places;
}

/// The integral of x^a y^b z^c over the reference line, triangle or tetrahedron.
double IntegralOf(const std::array<int, 3>& powers, int dimension) {
  double numerator = 1.0;
  int sum = dimension;
  for (const int power : powers) {
    numerator *= std::tgamma(power + 1);
    sum += power;
  }
  return numerator / std::tgamma(sum + 1);
}

double Monomial(const Vector3& place, const std::array<int, 3>& powers) {
  double value = 1.0;
  for (int a = 0; a < 3; ++a) value *= std::pow(place[a], powers[a]);
  return value;
}

/// The powers of all monomials up to a degree in so many coordinates.
std::vector<std::array<int, 3>> MonomialsUpTo(int degree, int dimension) {
  std::vector<std::array<int, 3>> all;
  for (int a = 0; a <= degree; ++a)
    for (int b = 0; b <= (dimension > 1 ? degree - a : 0); ++b)
      for (int c = 0; c <= (dimension > 2 ? degree - a - b : 0); ++c) all.push_back({a, b, c});
  return all;
}

TEST(ElementTable, KnowsTheElementsThatAreAnalysed) {
  EXPECT_EQ(AnalysedElements().size(), 5u);
  for (const ElementKind& kind : AnalysedElements()) {
    EXPECT_EQ(FindElementKind(kind.type, kind.nnode), &kind) << NameOf(kind);
    EXPECT_EQ(kind.nodes.size(), static_cast<std::size_t>(kind.nnode)) << NameOf(kind);
    Mesh mesh;
    mesh.elemType = kind.type;
    mesh.nnode = kind.nnode;
    mesh.SetFemviewType();  // the reader takes it
    EXPECT_EQ(RoutinesFor(mesh).nnode, kind.nnode);
  }
  EXPECT_EQ(FindElementKind(Triangle, 4), nullptr);
  EXPECT_EQ(FindElementKind(Quadrilateral, 4), nullptr);
}

TEST(ElementTable, WhatIsNotAnalysedHasNoRoutines) {
  Mesh mesh;
  mesh.elemType = Hexahedra;
  mesh.nnode = 8;
  EXPECT_FATAL(RoutinesFor(mesh), "error: elemtype unknown\n");
}

TEST(ElementTable, ShapeFunctionsAreOneAtTheirNodeAndZeroAtTheOthers) {
  for (const ElementKind& kind : AnalysedElements())
    for (int k = 0; k < kind.nnode; ++k) {
      const Shapes N = ShapesAt(kind, kind.nodes[k]);
      for (int i = 0; i < kind.nnode; ++i)
        EXPECT_DOUBLE_EQ(N[i], i == k ? 1.0 : 0.0) << NameOf(kind) << ' ' << k << ' ' << i;
    }
}

TEST(ElementTable, ShapeFunctionsSumToOneAndGiveThePlaceItself) {
  for (const ElementKind& kind : AnalysedElements())
    for (const Vector3& place : InnerPlaces(kind.dimension)) {
      const Shapes N = ShapesAt(kind, place);
      double sum = 0.0;
      Vector3 there{};
      for (int i = 0; i < kind.nnode; ++i) {
        sum += N[i];
        there = Plus(there, Times(kind.nodes[i], N[i]));
      }
      EXPECT_NEAR(sum, 1.0, 1e-14) << NameOf(kind);
      EXPECT_NEAR(Norm(Minus(there, place)), 0.0, 1e-14) << NameOf(kind);
    }
}

// The points of the tetrahedron have seven digits on purpose.
TEST(ElementTable, PointsIntegrateAsManyDegreesAsTheTableSays) {
  for (const ElementKind& kind : AnalysedElements()) {
    const auto errorOf = [&](const std::array<int, 3>& powers) {
      double sum = 0.0;
      for (const Vector3& point : kind.points) sum += kind.weight * Monomial(point, powers);
      return std::abs(sum - IntegralOf(powers, kind.dimension));
    };
    double worst = 0.0;
    for (const auto& powers : MonomialsUpTo(kind.exactDegree, kind.dimension))
      worst = std::max(worst, errorOf(powers));
    EXPECT_LT(worst, 1e-8) << NameOf(kind);
    EXPECT_GT(errorOf({kind.exactDegree + 1, 0, 0}), 1e-4) << NameOf(kind);
  }
}

}  // namespace

}  // namespace kestol
