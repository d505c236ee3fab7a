// Whatever the load on a shell, forces and moments of its supports balance it.
#include <gtest/gtest.h>

#include <string>

#include "tests/support/Balance.h"

namespace kestol {

namespace {

constexpr int kNone = MeshModel::kNoFace;

class ShellEquilibrium : public testing::TestWithParam<Sample> {
protected:
  MeshModel model = GetParam().build(Dress::Held);
  Resultant loads;

  /// One line on every inner element.
  void Spread(const std::string& section, Along along, double couple,
              const std::optional<Vector3>& angles = {}) {
    for (const MeshModel::Element& element : InnerElements(model)) {
      const Face face = FaceOf(model, element);
      const auto& given = model.MaterialOf(element).angles;
      Vector3 q = LoadOf(element.number);
      model.Load(section, element.number, kNone, q, couple, angles);
      if (angles) q = Turn(EulerRotation((*angles)[0], (*angles)[1], (*angles)[2]), q);
      loads.Add(OnFace(face, IntensityOn(face, along, q, given)));
      loads.AddCouple(Times(AxesOf(face, given)[0], couple * face.Area()));
    }
  }
};
INSTANTIATE_TEST_SUITE_P(
    Straight, ShellEquilibrium,
    testing::Values(Sample{"ThreeNodes", [](Dress dress) { return SampleShell(false, dress); }},
                    Sample{"SixNodes", [](Dress dress) { return SampleShell(true, dress); }},
                    Sample{"Stiffened",
                           [](Dress dress) { return SampleStiffenedShell(true, dress); }}),
    NameOf);

TEST_P(ShellEquilibrium, HoldsForGlobalLoads) {
  Spread("global_pressure_loads", Along::Global, 0.0);
  ExpectBalance(model, loads);
}

TEST_P(ShellEquilibrium, HoldsForFaceLoadsOnTheSurface) {
  Spread("face_loads", Along::Global, 0.0);
  ExpectBalance(model, loads);
}

TEST_P(ShellEquilibrium, HoldsForProjectedLoads) {
  Spread("global_projected_pressure_loads", Along::Projected, 0.0);
  ExpectBalance(model, loads);
}

TEST_P(ShellEquilibrium, HoldsForLocalLoads) {
  Spread("local_pressure_loads", Along::Local, 0.0);
  ExpectBalance(model, loads);
}

TEST_P(ShellEquilibrium, HoldsForLocalLoadsWithCouples) {
  Spread("local_pressure_loads", Along::Local, 2.5);
  ExpectBalance(model, loads);
}

TEST_P(ShellEquilibrium, HoldsForLoadsInTurnedAxes) {
  const Vector3 angles{0.5, -0.2, 0.9};
  Spread("global_pressure_loads", Along::Global, 0.0, angles);
  Spread("global_projected_pressure_loads", Along::Projected, 0.0, angles);
  Spread("local_pressure_loads", Along::Local, 0.0, angles);
  ExpectBalance(model, loads);
}

TEST_P(ShellEquilibrium, HoldsForLoadsOnEveryEdge) {
  for (const MeshModel::Element& element : InnerElements(model))
    for (int f = 0; f < 3; ++f) {
      const Vector3 &a = model.At(element.nodes[f]), &b = model.At(element.nodes[(f + 1) % 3]);
      const Vector3 q = LoadOf(3 * element.number + f);
      model.Load("face_loads", element.number, f, q);
      loads.AddForce(Times(Plus(a, b), 0.5), Times(q, Norm(Minus(b, a))));
    }
  ExpectBalance(model, loads);
}

TEST_P(ShellEquilibrium, HoldsForOwnWeight) {
  const auto heavy = InnerElements(model);
  LetWeigh(model, heavy);
  for (const MeshModel::Element& element : heavy) {
    const MeshModel::Material& m = model.materials.at(element.material + 10);
    const Face face = FaceOf(model, element);
    loads.Add(OnFace(face, Times(model.gravity, m["t"] * m["Weight"])));
  }
  ExpectBalance(model, loads);
}

}  // namespace

}  // namespace kestol
