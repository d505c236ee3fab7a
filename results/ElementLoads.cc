#include "results/ElementLoads.h"

#include "analysis/BeamElement.h"
#include "analysis/DistributedLoads.h"
#include "analysis/Solid.h"
#include "model/BeamEnds.h"
#include "model/Elem.h"

namespace kestol {

namespace {

void AddToBeam(const Project& project, const Elem& elem, const PreassureLT& load,
               ElementLoads& sum) {
  BeamElement beam(project);
  beam.SetAxes(elem);
  const Frame axes = FrameOf(beam.T);
  const BeamLoad q = LocalIntensities(load, elem, beam.T, project.problemType);
  sum.perLength = Plus(sum.perLength, axes.ToGlobal({q.qx, q.qy, q.qz}));
  sum.couplePerLength = Plus(sum.couplePerLength, Times(axes.x, q.m));
}

void AddToShell(const Project& project, const Elem& elem, const PreassureLT& load,
                ElementLoads& sum) {
  if (load.face != PreassureLT::kNoFace) {
    sum.perLength = Plus(sum.perLength, ValuesOf(load));
    return;
  }
  Matriu T, T6;
  elem.ShellAxes(T, T6, elem.GetMaterial(project.materials));
  const Frame axes = FrameOf(T);
  sum.perArea = Plus(sum.perArea, SurfaceLoad(load.kind, ValuesOf(load), axes));
  if (load.kind == LocalPressure)
    sum.couplePerArea = Plus(sum.couplePerArea, Times(axes.x, load.values(4)));
}

/// A pressure that turns with a curved face has its mean here.
void AddToSolid(const Elem& elem, const PreassureLT& load, ElementLoads& sum) {
  if (load.face == PreassureLT::kNoFace) {
    sum.perVolume = Plus(sum.perVolume, ValuesOf(load));
    return;
  }
  Vector3 force{};
  double area = 0.0;
  for (const FaceShare& share : SharesOfFace(elem, load)) {
    force = Plus(force, Times(share.pressure, share.area));
    area += share.area;
  }
  sum.perArea = Plus(sum.perArea, Times(force, 1.0 / area));
}

}  // namespace

ElementLoads LoadsOnElement(const Project& project, const Elem& elem) {
  ElementLoads sum;
  for (const PreassureLT* load = project.loads.Get(elem.number); load != nullptr;
       load = load->next.get()) {
    switch (elem.mesh->elemType) {
      case Linear:
        AddToBeam(project, elem, *load, sum);
        break;
      case Triangle:
        AddToShell(project, elem, *load, sum);
        break;
      case Tetrahedra:
        AddToSolid(elem, *load, sum);
        break;
      default:
        break;
    }
  }
  return sum;
}

BeamHinges HingesOf(const Project& project, const Elem& beam) {
  const BeamEnds& ends = *FindBeamEnds(project.EndCodeOf(beam.number));
  return {ends.hinged1, ends.hinged2};
}

}  // namespace kestol
