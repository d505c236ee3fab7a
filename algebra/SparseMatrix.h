#pragma once

#include <ostream>
#include <utility>
#include <vector>

#include "algebra/LargePages.h"

namespace kestol {

class Matriu;

/// Sparse matrix in compressed rows of fixed room, whose slots are claimed in the order in which
/// columns are first touched. Rows and columns are counted from 0.
///
///     row i owns the slots rowStart[i] .. rowStart[i+1]-1:
///
///       | column 7 | column 2 | column 9 |   -1   |   -1   |
///         claimed, in order of first use     not yet claimed, value 0.0
///
/// A stiffness matrix couples whole nodes: the B = blockSize rows of a node have the same room, and
/// they claim the B columns of a neighbour together. Then one column number serves a node block,
/// and the values of the node's rows lie side by side: those of their first slots, of their second
/// ...
///
///     values of the node of rows 6, 7, 8 (B = 3, room for 6 slots, the first claims columns 0..2):
///
///       (6,0) (7,0) (8,0)  (6,1) (7,1) (8,1)  (6,2) (7,2) (8,2) | second node block
///
/// The first claim of a part of a node block ends this: every slot gets a column number of its own,
/// the rows lie one after the other, and B is 1. What each row has claimed, and in which order, is
/// the same in both layouts.
///
/// An unclaimed slot belongs to no column; only the unit row of a row that was never assembled
/// leaves a value there. UnitSlot tells where that value acts as the diagonal.
class SparseMatrix {
public:
  /// Loads of the kernels may reach this far beyond the last value.
  static constexpr int kPadding = 8;

  /// An n x n matrix with rowLengths[i] slots in row i. A blockSize of 3 or 6 needs equal lengths,
  /// multiples of it, in the rows of each node. Refuses negative lengths and an empty matrix.
  SparseMatrix(int n, const std::vector<int>& rowLengths, int blockSize = 1);

  /// No values, no structure: every row has room for nothing.
  void ClearStructure();
  /// Values 0.0, those of unclaimed slots included; the structure stays.
  void ClearValues();

  /// (i, j) += a; claims a slot when column j is new in row i. Refuses a full row.
  void Add(int i, int j, double a);

  /// Adds M(r+1, c+1) to (i + r, j + c) for every r and c, zeros included; when i differs from j to
  /// (j + c, i + r) as well. Claims row by row. Whole node blocks find their place once per block.
  void AddBlock(int i, int j, const Matriu& M);

  /// (i, i) = 1.0, claimed where needed; refuses a full row without column i.
  void SetDiagonal(int i);

  /// 1.0 into the slot of column i and into every unclaimed slot of row i, 0.0 into its others.
  void ReplaceByUnitRow(int i);

  /// Sum of values[s] * x[column of s] over the slots of row i, from the first, starting at 0.0.
  double RowTimesVector(int i, const double* x) const;

  /// The value of (i, j); 0.0 where no slot holds it.
  double Read(int i, int j) const;

  /// The slot of (i, j). Refuses places that no slot holds.
  double& Reference(int i, int j);

  /// One line per row: the claimed slots as (i,j)=value, four blanks between them.
  void Print(std::ostream& stream) const;

  /// How many slots row i has.
  int Length(int i) const { return rowStart[i + 1] - rowStart[i]; }

  /// The column of the slot `k` of row i, 0 <= k < Length(i); -1 when unclaimed.
  int ColumnOf(int i, int k) const {
    const int column = Columns(i)[k / blockSize];
    return column < 0 ? -1 : column + k % blockSize;
  }

  /// Where `values` keeps the slot `k` of row i.
  int Place(int i, int k) const {
    const int inNode = i % blockSize;
    return rowStart[i - inNode] + k * blockSize + inNode;
  }

  /// The column numbers of the node blocks of row i, Length(i) / blockSize of them.
  const int* Columns(int i) const {
    return colIndex.data() + rowStart[i - i % blockSize] / (blockSize * blockSize);
  }

  /// The first unclaimed slot of row i, if it stands for (i, i): no slot of row i has column i, and
  /// the value there is not 0.0. Otherwise -1.
  int UnitSlot(int i) const;

  /// (i, i), be it in its own slot or in the unit slot; 0.0 without either.
  double Diagonal(int i) const;

  /// Calls f(column, value) for the claimed slots of row i in their order, then for the unit slot.
  template <class Function>
  void ForEachEntry(int i, Function f) const {
    const int length = Length(i);
    for (int k = 0; k < length; ++k) {
      const int column = ColumnOf(i, k);
      if (column < 0) break;
      f(column, values[Place(i, k)]);
    }
    if (const int k = UnitSlot(i); k >= 0) f(i, values[Place(i, k)]);
  }

  LargeVector<double> values;  ///< one per slot, then kPadding zeros
  std::vector<int> rowStart;   ///< n + 1: slots before each row; the last is nnz
  std::vector<int> colIndex;   ///< one per node block: its first column, or -1
  int nnz = 0;                 ///< slots, claimed or not
  int rows = 0, cols = 0;      ///< both n
  int blockSize = 1;           ///< B: 1, or the degrees of a node, 3 or 6

private:
  int* Columns(int i) { return const_cast<int*>(std::as_const(*this).Columns(i)); }
  void CheckBounds(int i, int j) const;
  int FindSlot(int i, int j) const;
  int FindOrClaim(int i, int j);
  template <int B>
  void AddNodeBlocks(int i, int j, const Matriu& M);
  template <int B>
  double* NodeBlock(int firstRow, int firstCol);
  void SplitBlocks();
};

/// Calls f(block, first column) for the claimed node blocks of a node row. A block is B*B values,
/// column by column.
template <class Function>
void ForEachNodeBlock(const SparseMatrix& A, int node, Function f) {
  const int B = A.blockSize;
  const int* const column = A.Columns(node * B);
  const double* const values = A.values.data() + A.rowStart[node * B];
  const int blocks = A.Length(node * B) / B;
  for (int b = 0; b < blocks && column[b] >= 0; ++b) f(values + b * B * B, column[b]);
}

}  // namespace kestol
