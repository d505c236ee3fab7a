#include "analysis/NodeBlocks.h"

#include <utility>

#include "algebra/StiffnessMatrix.h"
#include "analysis/TurnBlock.h"
#include "input/Project.h"

namespace kestol {

namespace {

void TransposeInPlace(Matriu& K) {
  for (int i = 1; i <= K.nrows; ++i)
    for (int j = i + 1; j <= K.ncols; ++j) std::swap(K(i, j), K(j, i));
}

constexpr FixedMatrix<3, 3> kIdentity{
    {1.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 1.0}
};

}  // namespace

std::optional<FixedMatrix<3, 3>> SupportAxes(const Project& project, const Node& node) {
  if (!IsInclined(node)) return std::nullopt;
  // The third degree of a plane frame is a rotation, which must keep its axis; that of a solid is a
  // translation like the others.
  const bool solid = !project.meshes.empty() && project.meshes[0]->elemType == Tetrahedra;
  const FixedMatrix<3, 3> axes = AxesOf(*node.constraint);
  if (project.dofsPerNode == 3 && !solid) CheckKeepsZ(axes, project.ExternalNumber(node.number));
  return axes;
}

NodeBlocks::NodeBlocks(const Project& project, BlockSink& matrix, BlockAxes axes)
    : project_(project), matrix_(matrix), axes_(axes), dofs_(project.dofsPerNode) {}

void NodeBlocks::Add(const Node& a, const Node& b, Matriu& K) {
  if (axes_ == BlockAxes::Support && (a.constraint || b.constraint)) Turn(a, b, K);
  const Node* first = &a;
  const Node* second = &b;
  if (first->number > second->number) {  // the solvers keep the upper half
    TransposeInPlace(K);
    std::swap(first, second);
  }
  matrix_.AddBlock(FirstEquation(first->number, dofs_), FirstEquation(second->number, dofs_), K);
}

/// K := R_a^T K R_b.
void NodeBlocks::Turn(const Node& a, const Node& b, Matriu& K) {
  if (!IsInclined(a) && !IsInclined(b)) return;
  TurnBlock(ToSupport(a), ToSupport(b), K);
}

/// R^T of the node, found once for all its blocks.
const FixedMatrix<3, 3>& NodeBlocks::ToSupport(const Node& node) {
  if (!IsInclined(node)) return kIdentity;
  const auto [place, isNew] = toSupport_.try_emplace(&node);
  if (isNew) place->second = Transpose(*SupportAxes(project_, node));
  return place->second;
}

}  // namespace kestol
