#pragma once

#include "algebra/StiffnessMatrix.h"

/// Compressed rows and preconditioned conjugate gradients.
class SparseSolver : public StiffnessMatrix {
public:
  /// `n` degrees of freedom with the default tolerances and limit.
  explicit SparseSolver(int n);
  SparseSolver(int n, double tolerance1, double tolerance2, int MaxIterations);

  /// The vector from which the iterations start; n entries are copied.
  void SetInitialValues(const ReaVecT& values);
};
