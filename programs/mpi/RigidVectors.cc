#include "programs/mpi/RigidVectors.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "analysis/Assembly.h"
#include "input/Project.h"

namespace kestol {

namespace {

using PetscNullSpace = PetscHandle<MatNullSpace, MatNullSpaceDestroy>;

/// How the degrees of one node move: a row per degree, a column per motion.
using NodeMotion = std::array<std::array<double, 6>, 6>;

NodeMotion PlaneMotion(const Vector3& r) {
  return {
      {{1, 0, -r[1]}, {0, 1, r[0]}, {0, 0, 1}}
  };
}

NodeMotion SpaceMotion(const Vector3& r) {
  return {
      {{1, 0, 0, 0, r[2], -r[1]},
       {0, 1, 0, -r[2], 0, r[0]},
       {0, 0, 1, r[1], -r[0], 0},
       {0, 0, 0, 1, 0, 0},
       {0, 0, 0, 0, 1, 0},
       {0, 0, 0, 0, 0, 1}}
  };
}

bool IsPlaneFrame(const Project& project) {
  return project.problemType == Plane && project.meshes[0]->elemType != Tetrahedra;
}

/// Lengths in sizes of the model, from its centre, so that all motions are of one magnitude.
struct Extent {
  Vector3 centre{};
  double size = 1.0;
};

Extent ExtentOf(const Project& project) {
  Extent extent;
  if (project.numNodes == 0) return extent;
  for (const auto [number, node] : *project.meshes[0]->nodes)
    for (std::size_t a = 0; a < 3; ++a) extent.centre[a] += PositionOf(*node)[a] / project.numNodes;
  double size = 0.0;
  for (const auto [number, node] : *project.meshes[0]->nodes)
    size = std::max(size, Norm(Minus(PositionOf(*node), extent.centre)));
  if (size > 0.0) extent.size = size;
  return extent;
}

/// Rows into the axes of the support: R^T times every triple of them.
void TurnToSupport(const FixedMatrix<3, 3>& axes, int dofs, int motions, NodeMotion& motion) {
  const NodeMotion global = motion;
  for (std::size_t d = 0; d < static_cast<std::size_t>(dofs); ++d) {
    const std::size_t triple = d / 3 * 3;
    const int column = static_cast<int>(d - triple) + 1;
    for (std::size_t m = 0; m < static_cast<std::size_t>(motions); ++m) {
      double sum = 0.0;
      for (std::size_t k = 0; k < 3; ++k)
        sum += axes(static_cast<int>(k) + 1, column) * global[triple + k][m];
      motion[d][m] = sum;
    }
  }
}

NodeMotion MotionOf(const Project& project, const Node& node, const Extent& extent, int motions) {
  const Vector3 r = Times(Minus(PositionOf(node), extent.centre), 1.0 / extent.size);
  NodeMotion motion = IsPlaneFrame(project) ? PlaneMotion(r) : SpaceMotion(r);
  if (const auto axes = SupportAxes(project, node))
    TurnToSupport(*axes, project.dofsPerNode, motions, motion);
  if (!node.constraint) return motion;
  const auto held = static_cast<std::size_t>(std::min(project.dofsPerNode, node.constraint->dofs));
  for (std::size_t d = 0; d < std::min(held, motion.size()); ++d)
    if (node.constraint->codes[d] == Prescribed) motion[d] = {};
  return motion;
}

/// Own entries of all motions, one vector after the other.
std::vector<std::vector<double>> OwnMotions(const Project& project, const Partition& partition,
                                            int motions) {
  const auto dofs = static_cast<std::size_t>(project.dofsPerNode);
  const auto count = static_cast<std::size_t>(partition.OwnCount());
  std::vector<std::vector<double>> own(static_cast<std::size_t>(motions));
  for (auto& vector : own) vector.resize(count * dofs);
  const Extent extent = ExtentOf(project);
  for (const auto [number, node] : *project.meshes[0]->nodes) {
    if (!partition.IsOwn(node->number - 1)) continue;
    const int place = partition.placeOf[static_cast<std::size_t>(node->number - 1)];
    const auto first = static_cast<std::size_t>(place - partition.First()) * dofs;
    const NodeMotion motion = MotionOf(project, *node, extent, motions);
    for (std::size_t m = 0; m < own.size(); ++m)
      for (std::size_t d = 0; d < dofs; ++d) own[m][first + d] = motion[d][m];
  }
  return own;
}

PetscVector VectorWith(Mat matrix, const std::vector<double>& own) {
  PetscVector vector;
  Check(MatCreateVecs(matrix, vector.Place(), nullptr));
  double* values = nullptr;
  Check(VecGetArray(vector, &values));
  std::copy(own.begin(), own.end(), values);
  Check(VecRestoreArray(vector, &values));
  return vector;
}

/// Takes out of `vector` what it has of the others and scales it to length 1; false when nothing
/// is left of it.
bool Orthonormalise(const std::vector<PetscVector>& others, Vec vector) {
  constexpr double kNothing = 1e-8;
  double before = 0.0, after = 0.0;
  Check(VecNorm(vector, NORM_2, &before));
  for (int pass = 0; pass < 2; ++pass)
    for (const PetscVector& other : others) {
      double along = 0.0;
      Check(VecDot(vector, other, &along));
      Check(VecAXPY(vector, -along, other));
    }
  Check(VecNorm(vector, NORM_2, &after));
  if (!(after > kNothing * before)) return false;
  Check(VecScale(vector, 1.0 / after));
  return true;
}

}  // namespace

void AttachRigidMotions(const Project& project, const Partition& partition, Mat matrix) {
  const int motions = IsPlaneFrame(project) ? 3 : 6;
  std::vector<PetscVector> basis;
  for (const auto& own : OwnMotions(project, partition, motions)) {
    PetscVector vector = VectorWith(matrix, own);
    if (Orthonormalise(basis, vector)) basis.push_back(std::move(vector));
  }
  if (basis.empty()) return;
  std::vector<Vec> vectors;
  vectors.reserve(basis.size());
  for (const PetscVector& vector : basis) vectors.push_back(vector);
  PetscNullSpace space;
  Check(MatNullSpaceCreate(PETSC_COMM_WORLD, PETSC_FALSE, static_cast<PetscInt>(vectors.size()),
                           vectors.data(), space.Place()));
  Check(MatSetNearNullSpace(matrix, space));
}

}  // namespace kestol
