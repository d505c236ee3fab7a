#pragma once

#include <array>
#include <utility>
#include <vector>

#include "analysis/PointLayout.h"
#include "analysis/Results.h"
#include "input/Project.h"
#include "results/StressTensor.h"

namespace kestol {

struct SolidPoint {
  Vector3 x;
  StressTensor stress;
};

/// A solid element with the stresses at its integration points.
struct SolidView {
  const Elem* elem = nullptr;
  int pointCount = 0;
  std::array<SolidPoint, 4> points;
};

/// `stored` are the element's values in Results::meshes.
SolidView SolidViewOf(const Elem& elem, const double* stored);

/// Calls action(view) for every solid, mesh after mesh.
template <class Action>
void ForEachSolid(const Project& project, const Results& results, Action action) {
  for (std::size_t m = 0; m < project.meshes.size(); ++m) {
    const Mesh& mesh = *project.meshes[m];
    if (mesh.elemType != Tetrahedra) continue;
    const double* stored = results.meshes[m].local.begin();
    for (const auto [number, elem] : mesh.elems) {
      action(SolidViewOf(*elem, stored));
      stored += PointLayoutOf(project, mesh).PerElement();
    }
  }
}

/// Stresses at the nodes of solids: the averages of the elements around a corner; a mid-side, for
/// which the solver keeps none, has the mean of its two corners.
class NodalStresses {
public:
  NodalStresses(const Project& project, const Results& results);

  /// Whether the model has any.
  bool Exist() const { return stresses_ != nullptr; }
  /// By internal node index.
  StressTensor Of(int nodeIndex) const;

private:
  const double* stresses_;                      ///< null without solids
  std::vector<std::pair<int, int>> corners_{};  ///< of mid-sides, by index - 1; empty without any
};

}  // namespace kestol
