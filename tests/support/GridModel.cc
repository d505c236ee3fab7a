#include "tests/support/GridModel.h"

#include <array>
#include <cmath>

#include "algebra/Matriu.h"
#include "algebra/ReaVecT.h"

namespace kestol {

/// Calls f(node, later node, direction) once for every spring; nodes from 1.
template <class Function>
void GridModel::ForEachSpring(Function f) const {
  for (int node = 0; node < NumNodes(); ++node) {
    const std::array at{node % nx, node / nx % ny, node / nx / ny};
    for (int place = 14; place < 27; ++place) {  // the later half of the 27 places around
      const std::array step{place % 3 - 1, place / 3 % 3 - 1, place / 9 - 1};
      const std::array to{at[0] + step[0], at[1] + step[1], at[2] + step[2]};
      if (to[0] < 0 || to[0] >= nx || to[1] < 0 || to[1] >= ny || to[2] >= nz) continue;
      f(node + 1, (to[2] * ny + to[1]) * nx + to[0] + 1, step);
    }
  }
}

void GridModel::Structure(StiffnessMatrix& K) const {
  ForEachSpring([&](int a, int b, const auto&) { K.AddNodePair(a, b, dofs); });
  K.Allocate(dofs);
}

long GridModel::Assemble(StiffnessMatrix& K) const {
  constexpr double kShear = 0.15;  // of the stiffness along the spring
  long added = 0;
  Matriu block(dofs, dofs);
  ForEachSpring([&](int a, int b, const auto& step) {
    const double length = std::hypot(step[0], step[1], step[2]);
    for (int sign : {1, -1}) {
      for (int i = 1; i <= dofs; ++i) {
        for (int j = 1; j <= dofs; ++j) {
          const double along = step[(i - 1) % 3] * step[(j - 1) % 3] / (length * length);
          const double part = (i - 1) / 3 == (j - 1) / 3 ? 1.0 : 0.2;
          block(i, j) = sign * (part * along + (i == j ? kShear : 0.0)) / length;
        }
      }
      if (sign == 1) {
        K.AddBlock((a - 1) * dofs + 1, (a - 1) * dofs + 1, block);
        K.AddBlock((b - 1) * dofs + 1, (b - 1) * dofs + 1, block);
      } else {
        K.AddBlock((a - 1) * dofs + 1, (b - 1) * dofs + 1, block);
      }
    }
    added += 3;
  });
  return added;
}

void GridModel::Hold(StiffnessMatrix& K, double value, ReaVecT& rhs) const {
  for (int equation = 1; equation <= nx * ny * dofs; ++equation) K.Prescribe(equation, value, rhs);
}

}  // namespace kestol
