#include <array>
#include <vector>

#include "analysis/Counts.h"
#include "analysis/PointLayout.h"
#include "analysis/Smoothing.h"
#include "analysis/Tet10.h"
#include "input/Project.h"
#include "main/ErrorChannel.h"
#include "model/Mesh.h"

namespace kestol {

namespace {

/// The inverse of the 4x4 matrix with kNear on and kFar off its diagonal, which gives point values
/// from corner values: b (I + e 1 1^T) with the entries below.
constexpr double kOff =
    -tet10::kFar / ((tet10::kNear - tet10::kFar) * (tet10::kNear + 3 * tet10::kFar));
constexpr double kOn = kOff + 1.0 / (tet10::kNear - tet10::kFar);

/// Adds the element's stresses, 6 per point, to the sums of its nodes.
void AddToNodes(const Elem& elem, const double* stresses, ReaVecT& sums) {
  for (int k = 0; k < elem.nnode; ++k) {
    double* node = sums.data.get() + 6 * (elem.nodes[k]->number - 1);
    for (int component = 0; component < 6; ++component) {
      if (elem.nnode == 4) {
        node[component] += stresses[component];
      } else if (k < 4) {
        double corner = 0.0;
        for (int p = 0; p < 4; ++p) corner += (p == k ? kOn : kOff) * stresses[6 * p + component];
        node[component] += corner;
      } else {
        // Deliberate: mid-side nodes are set to 0 each time, and stay 0 after the division.
        node[component] = 0.0;
      }
    }
  }
}

}  // namespace

ReaVecT AverageSolidStresses(const Project& project, const Mesh& mesh, const ReaVecT& stresses) {
  const int perElement = PointLayoutOf(project, mesh).PerElement();
  ReaVecT sums(VectorLength(project.numNodes, 6));
  std::vector<int> counts(project.numNodes, 0);
  const double* element = stresses.data.get();
  for (auto [number, elem] : mesh.elems) {
    AddToNodes(*elem, element, sums);
    for (int k = 0; k < elem->nnode; ++k) ++counts[elem->nodes[k]->number - 1];
    element += perElement;
  }
  for (int i = 0; i < project.numNodes; ++i) {
    if (counts[i] == 0)
      Fatal("error: node ", project.ExternalNumber(i + 1), " has no elements around\n");
    for (int component = 0; component < 6; ++component) sums.data[6 * i + component] /= counts[i];
  }
  return sums;
}

}  // namespace kestol
