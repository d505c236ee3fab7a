#pragma once

#include <array>
#include <cmath>
#include <cstdio>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "algebra/Vector3.h"

namespace kestol {

// Meshes of triangles and tetrahedra for the tests, and their text as a deck.

/// Where a point of the unit square or cube goes.
using PointMap = std::function<Vector3(double, double, double)>;

/// Leaves every point where it is.
inline Vector3 Same(double x, double y, double z) {
  return {x, y, z};
}

/// Nodes (number = place + 1) and elements (node numbers) of one mesh.
struct TestMesh {
  std::string elemType;
  std::vector<Vector3> nodes;
  std::vector<std::vector<int>> elems;

  /// Numbers of the nodes that `test` picks.
  std::vector<int> Where(const std::function<bool(const Vector3&)>& test) const {
    std::vector<int> found;
    for (std::size_t i = 0; i < nodes.size(); ++i)
      if (test(nodes[i])) found.push_back(static_cast<int>(i) + 1);
    return found;
  }
  const Vector3& At(int number) const { return nodes[number - 1]; }
};

/// printf into a string.
template <class... Arguments>
std::string Print(const char* format, Arguments... arguments) {
  char text[400];
  std::snprintf(text, sizeof text, format, arguments...);
  return text;
}

/// A whole 3d deck: keywords, the mesh with material 1, further sections.
inline std::string DeckOf(const TestMesh& mesh, const std::string& keywords,
                          const std::string& sections) {
  std::string deck = "PROBLEM test\nTYPE 3d\n" + keywords + "\nmesh dimension = 3 elemtype " +
                     mesh.elemType +
                     Print(" nnode = %d\ncoordinates\n", static_cast<int>(mesh.elems[0].size()));
  for (std::size_t i = 0; i < mesh.nodes.size(); ++i)
    deck += Print("%d %.17g %.17g %.17g\n", static_cast<int>(i) + 1, mesh.nodes[i][0],
                  mesh.nodes[i][1], mesh.nodes[i][2]);
  deck += "end coordinates\nelements\n";
  for (std::size_t e = 0; e < mesh.elems.size(); ++e) {
    deck += Print("%d", static_cast<int>(e) + 1);
    for (const int node : mesh.elems[e]) deck += Print(" %d", node);
    deck += " 1\n";
  }
  return deck + "end elements\n" + sections;
}

/// A section of lines.
inline std::string Section(const std::string& keyword, const std::string& lines) {
  return keyword + "\n" + lines + "end " + keyword + "\n";
}

/// Adds the mid-side nodes of the given edges (corner places) to every element, one node for each
/// pair of corners, half-way.
inline void AddMidSides(TestMesh& mesh, const std::vector<std::pair<int, int>>& edges) {
  std::map<std::pair<int, int>, int> middles;
  for (auto& elem : mesh.elems)
    for (const auto& [i, j] : edges) {
      const auto pair = std::minmax(elem[i], elem[j]);
      auto [place, isNew] = middles.try_emplace(pair, static_cast<int>(mesh.nodes.size()) + 1);
      if (isNew) mesh.nodes.push_back(Times(Plus(mesh.At(pair.first), mesh.At(pair.second)), 0.5));
      elem.push_back(place->second);
    }
}
inline void ToTen(TestMesh& mesh) {
  AddMidSides(mesh, {
                        {0, 1},
                        {1, 2},
                        {2, 0},
                        {0, 3},
                        {1, 3},
                        {2, 3}
  });
}
inline void ToSix(TestMesh& mesh) {
  AddMidSides(mesh, {
                        {0, 1},
                        {1, 2},
                        {2, 0}
  });
}

/// Moves every node from `firstMidSide` (a place) on, each its own way, by at most 0.12.
inline void CurveEdges(TestMesh& mesh, std::size_t firstMidSide) {
  for (std::size_t k = firstMidSide; k < mesh.nodes.size(); ++k) {
    const auto a = static_cast<double>(k);
    mesh.nodes[k] = Plus(mesh.nodes[k], {0.05 * std::sin(a), 0.05 * std::cos(3 * a), 0.01 * a});
  }
}

/// The unit cube in nx x ny x nz cells of six tetrahedra around the diagonal 000-111; with
/// `quadratic` ten nodes each. The map is applied to all nodes, mid-sides included.
inline TestMesh Box(int nx, int ny, int nz, bool quadratic, const PointMap& map) {
  TestMesh mesh{"Tetrahedra", {}, {}};
  for (int k = 0; k <= nz; ++k)
    for (int j = 0; j <= ny; ++j)
      for (int i = 0; i <= nx; ++i)
        mesh.nodes.push_back({double(i) / nx, double(j) / ny, double(k) / nz});
  constexpr int kPath[6][3] = {
      {1, 0, 0},
      {1, 1, 0},
      {0, 1, 0},
      {0, 1, 1},
      {0, 0, 1},
      {1, 0, 1}
  };
  const auto at = [&](int i, int j, int k) { return (k * (ny + 1) + j) * (nx + 1) + i + 1; };
  for (int k = 0; k < nz; ++k)
    for (int j = 0; j < ny; ++j)
      for (int i = 0; i < nx; ++i)
        for (int r = 0; r < 6; ++r) {
          const auto &a = kPath[r], &b = kPath[(r + 1) % 6];
          std::vector<int> tet = {at(i, j, k), at(i + a[0], j + a[1], k + a[2]),
                                  at(i + b[0], j + b[1], k + b[2]), at(i + 1, j + 1, k + 1)};
          const Vector3 o = mesh.At(tet[0]);
          const double volume = Dot(Cross(Minus(mesh.At(tet[1]), o), Minus(mesh.At(tet[2]), o)),
                                    Minus(mesh.At(tet[3]), o));
          if (volume < 0) std::swap(tet[1], tet[2]);
          mesh.elems.push_back(tet);
        }
  if (quadratic) ToTen(mesh);
  for (Vector3& p : mesh.nodes) p = map(p[0], p[1], p[2]);
  return mesh;
}

/// How the cells of a grid are cut into triangles.
enum class Cut { Right, Cross };

/// The unit square in nx x ny cells of two (Right) or four (Cross) three-noded triangles.
inline TestMesh Grid(int nx, int ny, Cut cut, const PointMap& map) {
  TestMesh mesh{"Triangle", {}, {}};
  for (int j = 0; j <= ny; ++j)
    for (int i = 0; i <= nx; ++i) mesh.nodes.push_back({double(i) / nx, double(j) / ny, 0.0});
  const auto at = [&](int i, int j) { return j * (nx + 1) + i + 1; };
  for (int j = 0; j < ny; ++j)
    for (int i = 0; i < nx; ++i) {
      const int a = at(i, j), b = at(i + 1, j), c = at(i + 1, j + 1), d = at(i, j + 1);
      if (cut == Cut::Right) {
        mesh.elems.push_back({a, b, c});
        mesh.elems.push_back({a, c, d});
        continue;
      }
      mesh.nodes.push_back({(i + 0.5) / nx, (j + 0.5) / ny, 0.0});
      const int middle = static_cast<int>(mesh.nodes.size());
      for (const auto& [p, q] : {
               std::pair{a, b},
               {b, c},
               {c, d},
               {d, a}
      })
        mesh.elems.push_back({p, q, middle});
    }
  for (Vector3& p : mesh.nodes) p = map(p[0], p[1], p[2]);
  return mesh;
}

/// The unit square cut along 1-4 (nodes row by row): elements 1 2 4 and 1 4 3, both in the same
/// axes.
inline TestMesh UnitSquare() {
  return Grid(1, 1, Cut::Right, Same);
}

/// One tetrahedron with legs of 1 along the axes, of four or ten nodes.
inline TestMesh UnitTetrahedron(bool ten) {
  TestMesh mesh{
      "Tetrahedra", {{0, 0, 0},  {1, 0, 0}, {0, 1, 0}, {0, 0, 1}},
       {{1, 2, 3, 4}}
  };
  if (ten) ToTen(mesh);
  return mesh;
}

}  // namespace kestol
