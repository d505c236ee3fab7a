#pragma once

#include "algebra/StiffnessMatrix.h"

/// Skyline storage and the root-free Cholesky solver "Txolesky".
class SkyLine : public StiffnessMatrix {
public:
  explicit SkyLine(int n);
};
