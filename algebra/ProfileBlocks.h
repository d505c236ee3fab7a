#pragma once

#include <cstddef>
#include <vector>

#include "algebra/Txolesky.h"

namespace kestol {

/// Working copy of the columns of one tile width, row after row from row `first` on; the values
/// above a column are zeros.
struct Sliver {
  const int* columns;  ///< their numbers, the highest column first; not owned
  int top;             ///< the first row that any of the columns has
  int first;           ///< the first row of the block that `top` lies in
  double* rows;        ///< not owned; on a boundary of 64 bytes

  double* Row(int i) const { return rows + static_cast<std::ptrdiff_t>(i - first) * kTileColumns; }
};

/// A profile cut into blocks of equal size for the factorisation, with the copies between the
/// stored columns and the operands of the tiles.
///
/// Degrees, rows and blocks are counted from 0 here. The last block is filled up with columns
/// n, n + 1, ... that have nothing above the diagonal and are not stored.
class ProfileBlocks {
public:
  explicit ProfileBlocks(const Profile& profile);

  /// The first row of the block that row i lies in.
  int BlockBegin(int i) const { return i / size * size; }

  /// Points a[r] to rows first..last-1, at most kMostRows of them, of column group[r], r = 0..7;
  /// read from row last-1 upwards. Columns that begin below `first` are copied and filled up with
  /// zeros; the copies last until the next call.
  void PointTo(const int* group, int first, int last, const double** a);
  static constexpr int kMostRows = 384;

  /// Copies the rows of one block, from row `begin` on, into a sliver.
  void Load(const Sliver& sliver, int begin) const;

  /// Copies rows row..row+7 of a tile into the columns of a sliver, as far as these have them and
  /// lie behind the rows.
  void Store(const Sliver& sliver, int row, const double* tile) const;

  Profile K;
  int size;                  ///< degrees of a block, a multiple of the width of a tile
  int count;                 ///< blocks
  std::vector<int> top;      ///< first stored row of each column
  std::vector<int> natural;  ///< the columns in their own order: 0, 1, 2, ...
  std::vector<int> byTop;    ///< the columns of each block, the highest ones first

private:
  void LoadLanes(const int* lanes, int begin, double* to) const;
  void StoreColumn(int j, int row, const double* from) const;

  std::vector<double> padded_;  ///< copies of PointTo
};

}  // namespace kestol
