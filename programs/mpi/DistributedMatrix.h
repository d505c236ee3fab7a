#pragma once

#include <cstddef>
#include <vector>

#include "algebra/ReaVecT.h"
#include "algebra/StiffnessMatrix.h"
#include "programs/mpi/NodeGraph.h"
#include "programs/mpi/Partition.h"
#include "programs/mpi/PetscObjects.h"

namespace kestol {

/// The rows of the own nodes while elements are added, both triangles. Blocks of a row of nodes
/// stand beside each other, as PETSc takes them:
///
///     node I |(I,J1)|(I,J2)|...|   B rows of B x (count of columns) values; columns ascending
///
/// Entries of rows that another process owns are dropped: it computes the element as well.
class OwnRows : public BlockSink {
public:
  /// `graph` is that of the own nodes, `dofs` the degrees of a node (B).
  OwnRows(const Partition& partition, const NodeGraph& graph, int dofs);

  void AddBlock(int firstRow, int firstCol, const Matriu& block) override;

  /// Adds to the diagonal at an own equation (from 1, in the numbers of the model).
  void AddToDiagonal(int equation, double value);

  /// The matrix of all processes; the rows are released on the way.
  PetscMatrix Assemble();

private:
  struct Block {
    double* first;       ///< its entry (1, 1)
    std::size_t stride;  ///< from one row to the next
  };
  Block Find(int place, int columnPlace);
  void Preallocate(Mat matrix) const;

  const Partition& partition_;
  int dofs_;
  std::vector<int> start_;    ///< by own node, one more at the end: into columns_
  std::vector<int> columns_;  ///< places
  std::vector<double> values_;
};

/// K u of elements that are added, without storing K. Rows of nodes around which elements are
/// missing are not complete.
class ProductSink : public BlockSink {
public:
  explicit ProductSink(const ReaVecT& u) : u_(u), product_(u.n) {}
  void AddBlock(int firstRow, int firstCol, const Matriu& block) override;
  const ReaVecT& Product() const { return product_; }

private:
  const ReaVecT& u_;
  ReaVecT product_;
};

}  // namespace kestol
