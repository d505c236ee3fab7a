#include "programs/mpi/DistributedSystem.h"

#include <algorithm>

#include "analysis/Assembly.h"
#include "analysis/Counts.h"
#include "input/Project.h"
#include "programs/mpi/DistributedMatrix.h"
#include "programs/mpi/ElementShare.h"

namespace kestol {

DistributedSystem::DistributedSystem(const Project& project, const Partition& partition)
    : project_(project), partition_(partition) {
  const ElementShare share = ElementsOnOwnNodes(project, partition);
  rows_ = std::make_unique<OwnRows>(partition, OwnGraph(project, partition), project.dofsPerNode);
  AddStiffness(project, share.Parts(), *rows_, BlockAxes::Support);
  ForEachHeldDegree(project, [&](int equation, int code, double value) {
    if (code == Spring && partition.IsOwn((equation - 1) / project.dofsPerNode))
      rows_->AddToDiagonal(equation, value);
  });
  loads_ = LoadsOf(project, share.Parts());
}

DistributedSystem::~DistributedSystem() = default;

void DistributedSystem::Assemble() {
  matrix_ = rows_->Assemble();
  rows_.reset();
  Check(MatCreateVecs(matrix_, solution_.Place(), rightSide_.Place()));
  FillRightSide();
  ImposeSupports();
}

void DistributedSystem::FillRightSide() {
  ReaVecT f = loads_;
  TurnToSupportAxes(project_, f);
  const std::vector<double> own = OwnEntries(project_, partition_, f);
  double* values = nullptr;
  Check(VecGetArray(rightSide_, &values));
  std::copy(own.begin(), own.end(), values);
  Check(VecRestoreArray(rightSide_, &values));
}

/// The diagonal of prescribed degrees is the mean of all: entries of one magnitude.
void DistributedSystem::ImposeSupports() {
  PetscVector diagonal;
  Check(VecDuplicate(solution_, diagonal.Place()));
  Check(MatGetDiagonal(matrix_, diagonal));
  double sum = 0.0;
  PetscInt count = 0;
  Check(VecSum(diagonal, &sum));
  Check(VecGetSize(diagonal, &count));
  const double mean = sum > 0.0 ? sum / count : 1.0;

  const int dofs = project_.dofsPerNode;
  std::vector<PetscInt> rows;
  ForEachHeldDegree(project_, [&](int equation, int code, double value) {
    const int node = (equation - 1) / dofs;
    if (code != Prescribed || !partition_.IsOwn(node)) return;
    const int place = partition_.placeOf[static_cast<std::size_t>(node)];
    rows.push_back(place * dofs + (equation - 1) % dofs);
    static_cast<void>(VecSetValue(solution_, rows.back(), value, INSERT_VALUES));
  });
  Check(VecAssemblyBegin(solution_));
  Check(VecAssemblyEnd(solution_));
  Check(MatZeroRowsColumns(matrix_, static_cast<PetscInt>(rows.size()), rows.data(), mean,
                           solution_, rightSide_));
  Check(VecZeroEntries(solution_));
}

ReaVecT GatherByEquation(const Project& project, const Partition& partition, const Team& team,
                         std::span<const double> own) {
  const std::vector<double> all = team.GatherAll(own);
  const int dofs = project.dofsPerNode;
  ReaVecT vector(EquationCount(project));
  for (int node = 0; node < project.numNodes; ++node)
    std::copy_n(
        all.begin() + std::ptrdiff_t{partition.placeOf[static_cast<std::size_t>(node)]} * dofs,
        dofs, vector.begin() + std::ptrdiff_t{node} * dofs);
  return vector;
}

std::vector<double> OwnEntries(const Project& project, const Partition& partition,
                               const ReaVecT& vector) {
  const int dofs = project.dofsPerNode;
  std::vector<double> own(static_cast<std::size_t>(partition.OwnCount() * dofs));
  for (int place = partition.First(); place < partition.End(); ++place)
    std::copy_n(
        vector.begin() + std::ptrdiff_t{partition.nodeAt[static_cast<std::size_t>(place)]} * dofs,
        dofs, own.begin() + std::ptrdiff_t{place - partition.First()} * dofs);
  return own;
}

}  // namespace kestol
