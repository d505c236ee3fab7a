#include "algebra/Txolesky.h"

#include <algorithm>
#include <cmath>

#include "algebra/Zero.h"
#include "output/InfoFile.h"

int Txolesky(const Profile& K, std::ostream* info) {
  for (int j = 1; j <= K.n; ++j) {
    double* const column = K.columns[j - 1];  // column[j - i] is (i, j)
    const int top = j - K.heights[j - 1] + 1;
    for (int i = top; i <= j; ++i) {
      const double* const other = K.columns[i - 1];
      double sum = 0.0;  // of D U(k, i) U(k, j)
      for (int k = std::max(i - K.heights[i - 1] + 1, top); k < i; ++k) {
        sum += K.columns[k - 1][0] * other[i - k] * column[j - k];
      }
      column[j - i] -= sum;
      if (i < j) column[j - i] /= other[0];
    }
    if (j % 500 == 0) Progress(info, "Solving degree %i of %i\n", j, K.n);
    if (!(std::abs(column[0]) >= kZero)) return j;
  }
  return 0;
}

void SubstituteForward(const Profile& U, double* f) {
  for (int i = 0; i < U.n; ++i) {
    double sum = 0.0;
    for (int k = 1; k < U.heights[i]; ++k) sum += U.columns[i][k] * f[i - k];
    f[i] -= sum;
  }
}

void DivideByDiagonal(const Profile& D, double* f) {
  for (int i = 0; i < D.n; ++i) f[i] /= D.columns[i][0];
}

void SubstituteBackward(const Profile& U, double* f) {
  for (int j = U.n - 1; j > 0; --j) {
    for (int k = 1; k < U.heights[j]; ++k) f[j - k] -= U.columns[j][k] * f[j];
  }
}
