#pragma once

#include <ostream>

#include "algebra/TxoleskyKernel.h"

namespace kestol {

/// A symmetric matrix by columns, each from its first stored row down to the diagonal. Degrees are
/// counted from 1; columns[j - 1][k] is entry (j - k, j), 0 <= k < heights[j - 1].
struct Profile {
  int n;                   ///< number of degrees
  const int* heights;      ///< of each column, at least 1
  double* const* columns;  ///< not owned
};

/// K = U^T D U in place: D on the diagonal, the unit upper triangular U above it. Writes
/// "Solving degree i of n\n" to `info`, if any, for every 500th pivot. Returns 0, or the first
/// degree whose pivot is not at least kZero in magnitude; the matrix is then half factorised.
///
/// The order of the sums is that of blocks; where rounding matters the result differs from the
/// row by row one in the last places. Costs about the sum of the squared heights, in additions and
/// in multiplications; needs a copy of up to 96 columns.
int Txolesky(const Profile& K, std::ostream* info);

/// The same with a kernel of choice.
int Txolesky(const Profile& K, std::ostream* info, const TileKernel& kernel);

/// f := U^-T f, n entries in place.
void SubstituteForward(const Profile& U, double* f);

/// f := D^-1 f.
void DivideByDiagonal(const Profile& D, double* f);

/// f := U^-1 f.
void SubstituteBackward(const Profile& U, double* f);

}  // namespace kestol
