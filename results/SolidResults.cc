#include "results/SolidResults.h"

#include "analysis/Tet10.h"
#include "model/Node.h"

namespace kestol {

namespace {

Vector3 PlaceOf(const Elem& elem, int point) {
  Vector3 x{};
  if (elem.nnode == 4) {
    for (int k = 0; k < 4; ++k) x = Plus(x, Times(PositionOf(*elem.nodes[k]), 0.25));
    return x;
  }
  const std::array<double, 10> shape =
      tet10::Shape(tet10::kPoints[static_cast<std::size_t>(point)]);
  for (int k = 0; k < 10; ++k)
    x = Plus(x, Times(PositionOf(*elem.nodes[k]), shape[static_cast<std::size_t>(k)]));
  return x;
}

}  // namespace

SolidView SolidViewOf(const Elem& elem, const double* stored) {
  SolidView view;
  view.elem = &elem;
  view.pointCount = elem.nnode == 4 ? 1 : 4;
  for (int p = 0; p < view.pointCount; ++p)
    view.points[static_cast<std::size_t>(p)] = {PlaceOf(elem, p), FromSolverOrder(stored + 6 * p)};
  return view;
}

NodalStresses::NodalStresses(const Project& project, const Results& results)
    : stresses_(results.nodalStresses.n > 0 ? results.nodalStresses.begin() : nullptr) {
  if (!Exist()) return;
  for (const auto& mesh : project.meshes) {
    if (mesh->elemType != Tetrahedra || mesh->nnode != 10) continue;
    corners_.resize(static_cast<std::size_t>(project.numNodes));
    for (const auto [number, elem] : mesh->elems)
      for (int e = 0; e < 6; ++e)
        corners_[static_cast<std::size_t>(elem->nodes[e + 4]->number - 1)] = {
            elem->nodes[tet10::kEdges[e][0]]->number, elem->nodes[tet10::kEdges[e][1]]->number};
  }
}

StressTensor NodalStresses::Of(int nodeIndex) const {
  const auto at = [this](int index) { return FromSolverOrder(stresses_ + 6 * (index - 1)); };
  if (corners_.empty()) return at(nodeIndex);
  const auto [a, b] = corners_[static_cast<std::size_t>(nodeIndex - 1)];
  if (a == 0) return at(nodeIndex);
  StressTensor mean;
  const StressTensor first = at(a), second = at(b);
  for (std::size_t i = 0; i < mean.size(); ++i) mean[i] = 0.5 * (first[i] + second[i]);
  return mean;
}

}  // namespace kestol
