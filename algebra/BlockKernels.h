#pragma once

#include <vector>

namespace kestol {

/// The rows of a SparseMatrix whose slots come in node blocks: see there for the layout. `values`
/// is readable kPadding doubles beyond the last slot.
struct BlockRows {
  int nodes;
  const int* rowStart;
  const int* colIndex;
  const double* values;
};

/// What NodeBlockFactors stores, for the two sweeps; B is the block size.
struct UpperBlocks {
  int nodes;
  const int* start;       ///< nodes + 1: blocks start[I] .. start[I+1]-1 belong to node row I
  const int* column;      ///< node of each block, ascending within a row, from 0
  const double* block;    ///< B*B per block, row by row; readable kPadding doubles beyond the end
  const double* inverse;  ///< D_I^-1, B*B per node, column by column; padded in the same way
  const unsigned char* fixed;  ///< per node: bit d is set when degree d is fixed
};

/// The inner loops over node blocks of one size for one family of processors. All families add in
/// the same order and give the same bits.
struct BlockKernels {
  const char* name;
  int blockSize;

  /// Doubles per node in the work vector y of the two sweeps: those of the node, then some that
  /// hold no meaning.
  int stride;

  /// y = A x; every row adds from its first slot on, as SparseMatrix::RowTimesVector does.
  void (*multiply)(const BlockRows& A, const double* x, double* y);

  /// y = (I + V^T)^-1 r.
  void (*forward)(const UpperBlocks& M, const double* r, double* y);

  /// z = (I + V)^-1 D^-1 y; uses up y.
  void (*backward)(const UpperBlocks& M, double* y, double* z);
};

/// The kernels for node blocks of this size that the processor supports, the fastest first; the
/// last one runs everywhere. Empty for sizes other than 3 and 6.
const std::vector<BlockKernels>& SupportedBlockKernels(int blockSize);

/// The first of them, or null.
const BlockKernels* BlockKernelsFor(int blockSize);

}  // namespace kestol
