#pragma once

#include <memory>
#include <span>
#include <vector>

#include "algebra/ReaVecT.h"
#include "programs/mpi/Partition.h"
#include "programs/mpi/PetscObjects.h"

namespace kestol {

class OwnRows;
class Project;

/// K u = f of a prepared model over all processes, in the axes of the supports: springs added, rows
/// and columns of prescribed degrees cleared up to the diagonal. Equations stand in the order of
/// the partition's places.
class DistributedSystem {
public:
  /// Computes the own part. Refuses what the elements refuse: only the processes that meet it.
  DistributedSystem(const Project& project, const Partition& partition);

  ~DistributedSystem();
  DistributedSystem(const DistributedSystem&) = delete;
  DistributedSystem& operator=(const DistributedSystem&) = delete;

  /// Puts the parts together; all processes call it.
  void Assemble();

  Mat Matrix() const { return matrix_; }
  Vec RightSide() const { return rightSide_; }
  Vec Solution() const { return solution_; }

  /// Releases the matrix.
  void Clear() { matrix_.Reset(); }

  /// The equivalent nodal forces, by equation of the model, global axes. Those at own nodes are
  /// complete.
  const ReaVecT& Loads() const { return loads_; }

private:
  void ImposeSupports();
  void FillRightSide();

  const Project& project_;
  const Partition& partition_;
  ReaVecT loads_;
  std::unique_ptr<OwnRows> rows_;  ///< until Assemble
  PetscMatrix matrix_;
  PetscVector rightSide_, solution_;
};

/// A vector by equation of the model from the entries of all processes; `own` are those of the own
/// nodes in the order of their places.
ReaVecT GatherByEquation(const Project& project, const Partition& partition, const Team& team,
                         std::span<const double> own);

/// The entries of the own nodes of a vector by equation.
std::vector<double> OwnEntries(const Project& project, const Partition& partition,
                               const ReaVecT& vector);

}  // namespace kestol
