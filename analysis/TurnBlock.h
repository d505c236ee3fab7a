#pragma once

#include "algebra/FixedMatrix.h"
#include "algebra/Matriu.h"

namespace kestol {

/// The 3x3 rotation in the upper left corner of T (3x3 or 6x6).
inline FixedMatrix<3, 3> RotationOf(const Matriu& T) {
  return BlockOf<3, 3>(T, 1, 1);
}

/// K := A K B^T for a node block K of 3x3 or 6x6. In the larger one A and B turn translations and
/// rotations alike, so each of its four quarters is turned by itself.
inline void TurnBlock(const FixedMatrix<3, 3>& A, const FixedMatrix<3, 3>& B, Matriu& K) {
  for (int row = 0; row < K.nrows; row += 3) {
    for (int column = 0; column < K.ncols; column += 3) {
      double AK[3][3];
      for (int i = 1; i <= 3; ++i)
        for (int j = 1; j <= 3; ++j)
          AK[i - 1][j - 1] = A(i, 1) * K(row + 1, column + j) + A(i, 2) * K(row + 2, column + j) +
                             A(i, 3) * K(row + 3, column + j);
      for (int i = 1; i <= 3; ++i)
        for (int j = 1; j <= 3; ++j)
          K(row + i, column + j) =
              AK[i - 1][0] * B(j, 1) + AK[i - 1][1] * B(j, 2) + AK[i - 1][2] * B(j, 3);
    }
  }
}

/// x := A x for the `n` (3 or 6) values of a node, triple by triple.
inline void TurnVector(const FixedMatrix<3, 3>& A, double* x, int n) {
  for (int first = 0; first < n; first += 3) {
    double* const v = x + first;
    const double v1 = v[0], v2 = v[1], v3 = v[2];
    for (int i = 1; i <= 3; ++i) v[i - 1] = A(i, 1) * v1 + A(i, 2) * v2 + A(i, 3) * v3;
  }
}

}  // namespace kestol
