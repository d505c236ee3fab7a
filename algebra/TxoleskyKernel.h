#pragma once

#include <vector>

namespace kestol {

/// A tile is the piece of the matrix that is summed in registers: 8 rows of 24 columns, row after
/// row, every row on a boundary of 64 bytes.
constexpr int kTileRows = 8;
constexpr int kTileColumns = 24;

/// The inner loops of the blocked factorisation for one family of processors.
struct TileKernel {
  const char* name;
  bool (*isSupported)();  ///< by the processor that runs the program

  /// Subtracts the product of `count` rows of U and G from a tile:
  ///
  ///     c(rows[r], :) -= sum over q of a[r][q] * b(-q, :)      r = 0..7, q = 0..count - 1
  ///
  /// The eight columns a[r] of U are read upwards in memory, which is upwards in the matrix; the
  /// rows of b downwards in memory, from `b` on. rows[r] counts rows from c.
  void (*subtractProduct)(const double* const* a, const double* b, int count, double* c,
                          const int* rows);

  /// g := u^-T g for a tile g and a unit upper triangular u of 8 x 8; u[8 * k + i] is (k, i), read
  /// for k < i only.
  void (*solveTriangle)(const double* u, double* g);

  /// u(r, :) := g(r, :) / d[r] for two tiles.
  void (*divideRows)(const double* g, const double* d, double* u);
};

/// All kernels of this build that the processor supports, the fastest first. The last one runs
/// everywhere.
const std::vector<TileKernel>& SupportedTileKernels();

}  // namespace kestol
