#pragma once

#include <functional>
#include <string>

#include "tests/support/MeshDeck.h"

namespace kestol {

// Sections of decks of shells, by what they do to a mesh.

/// Zero values for the codes that `codesOf` gives each node; "000000" is left out.
inline std::string Supports(const TestMesh& mesh,
                            const std::function<std::string(const Vector3&)>& codesOf) {
  std::string lines;
  for (std::size_t i = 0; i < mesh.nodes.size(); ++i) {
    const std::string codes = codesOf(mesh.nodes[i]);
    if (codes != "000000") lines += Print("%d %s 0 0 0 0 0 0\n", int(i) + 1, codes.c_str());
  }
  return Section("constraints", lines);
}

/// Load lines for the element edges whose both corners `onEdge` picks.
inline std::string EdgeLoads(const TestMesh& mesh,
                             const std::function<bool(const Vector3&)>& onEdge,
                             const std::function<Vector3(const Vector3&)>& load) {
  std::string lines;
  for (std::size_t e = 0; e < mesh.elems.size(); ++e)
    for (int f = 0; f < 3; ++f) {
      const Vector3 &a = mesh.At(mesh.elems[e][f]), &b = mesh.At(mesh.elems[e][(f + 1) % 3]);
      if (!onEdge(a) || !onEdge(b)) continue;
      const Vector3 q = load(Times(Plus(a, b), 0.5));
      lines += Print("%d %d %.15g %.15g %.15g\n", int(e) + 1, f, q[0], q[1], q[2]);
    }
  return lines;
}

}  // namespace kestol
