#pragma once

#include <cstddef>
#include <vector>

#include "algebra/LargePages.h"
#include "algebra/NodePairs.h"
#include "algebra/StiffnessMatrix.h"

namespace kestol {

/// Symmetric matrix of which the upper node blocks are stored, in compressed rows: block (I, J),
/// I <= J, couples the B degrees of two nodes.
///
///     row 1 |(1,1)|(1,4)|(1,7)|      each block B x B values, row by row; nodes ascending;
///     row 2 |(2,2)|(2,4)|            of the blocks on the diagonal the upper triangle counts,
///     ...                            below it are zeros
///
/// An operator: what is assembled can be multiplied, scaled and shifted. It has no factor of its
/// own; a class that derives from it brings one. Storage is 8 bytes per value and 12 per block.
class NodeBlockMatrix : public StiffnessMatrix {
public:
  /// `numDegrees` degrees of freedom without any coupling and without storage.
  explicit NodeBlockMatrix(int numDegrees) : n_(numDegrees) {}

  int NumDegrees() const override { return n_; }
  void AddNodePair(int node1, int node2, int dofsPerNode) override;

  /// Every node's own block is stored, coupled or not. Refuses degrees that do not fill the nodes.
  void Allocate(int dofsPerNode) override;

  /// The stored place of (i, j), in either order. Refuses places outside the structure.
  double& Entry(int i, int j) override;
  void SetZero() override;

  /// Adds what of the block lies on or above the diagonal; the rest is ignored. Refuses blocks that
  /// reach outside the structure. One that is a whole node block finds its place at once.
  void AddBlock(int firstRow, int firstCol, const Matriu& block) override;

  /// Eliminates x(dof) = value: row and column become those of the unit matrix, rhs(dof) the value.
  /// The other entries of rhs stay as they are when |value| <= kZero.
  void Prescribe(int dof, double value, ReaVecT& rhs) override;

  double RowTimesVector(int dof, const ReaVecT& x) const override;
  void Times(const ReaVecT& x, ReaVecT& y) const override;
  void ScaleAndShift(const ReaVecT& scale, double shift) override;

  int Factorise(std::ostream* info) override;                 ///< refused
  int Substitute(ReaVecT& rhs, std::ostream* info) override;  ///< refused

  /// One line per row: the stored entries on and above the diagonal as (i,j)=value.
  void Print(std::ostream& stream) const override;
  void CopyFromYouToMat(Matriu& dense) const override;
  void WriteForVemo(std::ostream& stream) const override;  ///< refused
  void PrintInfo(std::ostream& stream) const override;

protected:
  int BlockSize() const { return dofs_; }
  const UpperRows& Rows() const { return rows_; }
  const LargeVector<double>& Values() const { return values_; }

  /// The first line of the storage report that is the solver's own.
  virtual const char* Title() const { return "Node block storage\n"; }

private:
  int NumNodes() const { return n_ / dofs_; }
  double* BlockValues(int block) { return values_.data() + PlaceOf(block); }
  const double* BlockValues(int block) const { return values_.data() + PlaceOf(block); }
  std::size_t PlaceOf(int block) const { return static_cast<std::size_t>(block) * dofs_ * dofs_; }
  int FindBlock(int row, int column) const;
  void FindLowerRows();
  template <class Matrix, class Visit>
  static void VisitRow(Matrix& K, int dof, Visit visit);

  int n_;
  int dofs_ = 1;  ///< B
  NodePairs pairs_;
  UpperRows rows_;
  LargeVector<double> values_;   ///< block after block
  std::vector<int> lowerStart_;  ///< nodes + 1: the blocks above the diagonal of each block column
  std::vector<int> lowerRow_;    ///< and their block rows, ascending
  std::vector<int> lowerBlock_;
};

}  // namespace kestol
