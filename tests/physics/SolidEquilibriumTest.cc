// Whatever the load on a solid, forces and moments of its supports balance it.
#include <gtest/gtest.h>

#include <string>

#include "tests/support/Balance.h"

namespace kestol {

namespace {

class SolidEquilibrium : public testing::TestWithParam<Sample> {
protected:
  MeshModel model = GetParam().build(Dress::Held);
  Resultant loads;

  void OnVolumes(const std::string& section) {
    for (const MeshModel::Element& element : InnerElements(model)) {
      const Vector3 q = LoadOf(element.number);
      model.Load(section, element.number, -1, q);
      loads.AddForce(CentroidOf(model, element), Times(q, VolumeOf(model, element)));
    }
  }
  void OnFaces(const std::string& section, Along along) {
    for (const MeshModel::Element& element : InnerElements(model))
      for (int f = 0; f < 4; ++f) {
        const Face face = FaceOf(model, element, f);
        const Vector3 q = LoadOf(4 * element.number + f);
        model.Load(section, element.number, f, q);
        loads.Add(OnFace(face, IntensityOn(face, along, q, {})));
      }
  }
};
INSTANTIATE_TEST_SUITE_P(
    Straight, SolidEquilibrium,
    testing::Values(Sample{"FourNodes", [](Dress dress) { return SampleSolid(false, dress); }},
                    Sample{"TenNodes", [](Dress dress) { return SampleSolid(true, dress); }}),
    NameOf);

TEST_P(SolidEquilibrium, HoldsForVolumeLoadsOfEverySection) {
  for (const char* const section : {"global_pressure_loads", "global_projected_pressure_loads",
                                    "local_pressure_loads", "face_loads"})
    OnVolumes(section);
  ExpectBalance(model, loads);
}

TEST_P(SolidEquilibrium, HoldsForGlobalLoadsOnFaces) {
  OnFaces("global_pressure_loads", Along::Global);
  OnFaces("face_loads", Along::Global);
  ExpectBalance(model, loads);
}

TEST_P(SolidEquilibrium, HoldsForProjectedLoadsOnFaces) {
  OnFaces("global_projected_pressure_loads", Along::Projected);
  ExpectBalance(model, loads);
}

TEST_P(SolidEquilibrium, HoldsForLocalLoadsOnFaces) {
  OnFaces("local_pressure_loads", Along::Local);
  ExpectBalance(model, loads);
}

TEST_P(SolidEquilibrium, HoldsForOwnWeight) {
  const auto heavy = InnerElements(model);
  LetWeigh(model, heavy);
  for (const MeshModel::Element& element : heavy) {
    const double weight = model.materials.at(element.material + 10)["Weight"];
    loads.AddForce(CentroidOf(model, element),
                   Times(model.gravity, weight * VolumeOf(model, element)));
  }
  ExpectBalance(model, loads);
}

}  // namespace

}  // namespace kestol
