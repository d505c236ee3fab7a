#pragma once

#include "model/PreassureLT.h"

class Material;
class Project;

/// The own weight of the elements of one family: a force along GravityDirection per length
/// (A Weight), per area (t Weight) or per volume (Weight).
class SelfWeight {
public:
  /// `elemType` is Linear, Triangle or Tetrahedra (ElemType).
  SelfWeight(const Project& project, int elemType);

  /// The weight of an element of this material as a load in global axes, good until the next call;
  /// null when it has none: a factor was not given or is not positive, or the product is at most
  /// 1e-15. In a plane problem a weight with a positive z direction ends the run with
  /// "error: for 2D problems GravityDirection_Z must be 0.0\n".
  const PreassureLT* Of(const Material& material);

private:
  double IntensityOf(const Material& material) const;

  const Project& project_;
  int elemType_;
  PreassureLT load_;
};
