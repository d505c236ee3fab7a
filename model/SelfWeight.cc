#include "model/SelfWeight.h"

#include "algebra/Zero.h"
#include "input/Project.h"
#include "main/ErrorChannel.h"
#include "model/Material.h"

SelfWeight::SelfWeight(const Project& project, int elemType)
    : project_(project), elemType_(elemType), load_(GlobalPressure) {
  load_.values = ReaVecT(project.problemType == Plane ? 3 : 6);
}

const PreassureLT* SelfWeight::Of(const Material& material) {
  const double w = IntensityOf(material);
  if (!(w > kZero)) return nullptr;
  const ReaVec3& g = project_.gravity;
  const bool plane = project_.problemType == Plane;
  // Deliberate: a negative z passes in the plane and is ignored.
  if (plane && g(3) > kZero) Fatal("error: for 2D problems GravityDirection_Z must be 0.0\n");
  load_.values(1) = g(1) * w;
  load_.values(2) = g(2) * w;
  load_.values(3) = plane ? 0.0 : g(3) * w;
  return &load_;
}

/// Weight times the section or thickness; 0.0 when one of them is not positive (two marks of "not
/// given" would multiply to 1).
double SelfWeight::IntensityOf(const Material& material) const {
  if (!(material.Weight > 0.0)) return 0.0;
  if (elemType_ == Tetrahedra) return material.Weight;
  const double extent = elemType_ == Linear ? material.A : material.t;
  return extent > 0.0 ? extent * material.Weight : 0.0;
}
