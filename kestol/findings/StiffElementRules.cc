#include <cmath>
#include <string>
#include <vector>

#include "kestol/findings/Geometry.h"
#include "kestol/findings/Inspection.h"
#include "kestol/findings/SolutionRules.h"

namespace kestol {

namespace {

/// What the stresses of 4-noded tetrahedra leave of their mean at the nodes, of all of them.
double StressJump(const Mesh& mesh, const ReaVecT& stresses, const ReaVecT& nodal) {
  double jump = 0.0, all = 0.0;
  int row = 0;
  for (const auto [number, elem] : mesh.elems) {
    const Vector3 a = Minus(PositionOf(*elem->nodes[1]), PositionOf(*elem->nodes[0]));
    const Vector3 b = Minus(PositionOf(*elem->nodes[2]), PositionOf(*elem->nodes[0]));
    const Vector3 c = Minus(PositionOf(*elem->nodes[3]), PositionOf(*elem->nodes[0]));
    const double volume = std::abs(TripleProduct(a, b, c));
    for (int k = 1; k <= 6; ++k) {
      double mean = 0.0;
      for (int i = 0; i < 4; ++i) mean += nodal(6 * (elem->nodes[i]->number - 1) + k) / 4.0;
      const double value = stresses(row + k);
      jump += volume * (value - mean) * (value - mean);
      all += volume * value * value;
    }
    row += 6;
  }
  return all > 0.0 ? std::sqrt(jump / all) : 0.0;
}

/// How much of the work of 3-noded shells is bending, and how many are too large for it.
struct ShellBending {
  double share = 0.0;
  std::vector<int> large;
};

ShellBending BendingOf(const Project& project, const Mesh& mesh, const ReaVecT& resultants) {
  constexpr double kLargestSize = 3.0;  // thicknesses
  ShellBending found;
  double membrane = 0.0, bending = 0.0;
  int row = 0;
  for (const auto [number, elem] : mesh.elems) {
    const Material* const material = elem->GetMaterial(project.materials);
    const double t = material == nullptr ? 0.0 : material->t;
    const Vector3 a = Minus(PositionOf(*elem->nodes[1]), PositionOf(*elem->nodes[0]));
    const Vector3 b = Minus(PositionOf(*elem->nodes[2]), PositionOf(*elem->nodes[0]));
    const double area = Norm(Cross(a, b)) / 2.0;
    for (int k = 1; k <= 3; ++k) {
      const double n = resultants(row + k), m = resultants(row + 3 + k);
      membrane += area * n * n / t;
      bending += area * 12.0 * m * m / (t * t * t);
    }
    if (std::sqrt(2.0 * area) > kLargestSize * t) found.large.push_back(number);
    row += 8;
  }
  if (membrane + bending > 0.0) found.share = bending / (membrane + bending);
  return found;
}

}  // namespace

void FindStiffElements(Inspection& deck) {
  constexpr double kMuch = 0.5;      // of the stress is jumps between elements
  constexpr double kBending = 0.25;  // of the work
  const Project& project = deck.project;
  const Results& results = *deck.solution->results;
  for (std::size_t m = 0; m < project.meshes.size(); ++m) {
    const Mesh& mesh = *project.meshes[m];
    if (mesh.elemType == Tetrahedra && mesh.nnode == 4 && results.nodalStresses.n > 0) {
      const double jump = StressJump(mesh, results.meshes[m].local, results.nodalStresses);
      if (jump > kMuch)
        deck.Add(PlaceOfMeshWord(deck, m, ElemtypeWord),
                 "4-noded tetrahedra in bending are too stiff: stresses jump by " +
                     NumberText(std::round(100 * jump)) + " %; ten nodes are better");
    }
    if (mesh.elemType == Triangle && mesh.nnode == 3) {
      const ShellBending bending = BendingOf(project, mesh, results.meshes[m].local);
      if (bending.share > kBending && !bending.large.empty())
        deck.Add(PlaceOfMeshWord(deck, m, ElemtypeWord),
                 "3-noded shells larger than 3 t are too stiff in bending: add ConvertTo6Nodes")
            .elements = bending.large;
    }
  }
}

}  // namespace kestol
