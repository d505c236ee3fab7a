// Supports balance loads on nodes, and pressure on elements with curved edges.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <vector>

#include "tests/support/Balance.h"

namespace kestol {

namespace {

class MeshEquilibrium : public testing::TestWithParam<Sample> {};
INSTANTIATE_TEST_SUITE_P(Samples, MeshEquilibrium, testing::ValuesIn(AllSamples()), NameOf);

TEST_P(MeshEquilibrium, HoldsForNodeLoads) {
  MeshModel model = GetParam().build(Dress::Held);
  Resultant loads;
  for (std::size_t i = 0; i < model.nodes.size(); ++i) {
    if (model.nodes[i][0] == 0.0) continue;
    const int node = static_cast<int>(i) + 1;
    const Vector3 force = LoadOf(node);
    model.Load(node, force);
    loads.AddForce(model.nodes[i], force);
  }
  if (!model.IsSolid()) {
    model.Load(8, {}, {4, 5, -6});
    loads.AddCouple({4, 5, -6});
  }
  ExpectBalance(model, loads);
}

// --- curved edges -------------------------------------------------------------------------------

/// The area vector of a surface depends on its rim alone: half the integral of X x dX, which the
/// two-point rule of Gauss integrates exactly along the parabolas of quadratic elements.
Vector3 AreaVectorInside(const std::vector<std::array<Vector3, 3>>& rim) {
  Vector3 sum{};
  for (const auto& [a, middle, b] : rim)
    for (const double x : {-1.0 / std::sqrt(3.0), 1.0 / std::sqrt(3.0)}) {
      const auto at = [&](double wa, double wm, double wb) {
        return Plus(Times(a, wa), Plus(Times(middle, wm), Times(b, wb)));
      };
      sum = Plus(sum, Cross(at(x * (x - 1) / 2, 1 - x * x, x * (x + 1) / 2),
                            at(x - 0.5, -2 * x, x + 0.5)));
    }
  return Times(sum, 0.5);
}

Vector3 SumOfReactions(const MeshModel& model) {
  Vector3 sum{};
  for (const Vector3& reaction : NodalFields(*Solved(model)).reaction) sum = Plus(sum, reaction);
  return sum;
}

TEST(CurvedMeshEquilibrium, PressureOnACurvedFaceIsThatOnItsRim) {
  constexpr int kRims[4][6] = {
      {0, 4, 1, 5, 2, 6},
      {1, 5, 2, 9, 3, 8},
      {2, 9, 3, 7, 0, 6},
      {3, 7, 0, 4, 1, 8}
  };
  for (int f = 0; f < 4; ++f) {
    MeshModel model = SampleSolid(true, Dress::Held, true);
    const MeshModel::Element element = InnerElements(model)[3];
    const auto& rim = kRims[f];
    const auto at = [&](int i) { return model.At(element.nodes[rim[i % 6]]); };
    const Vector3 area = AreaVectorInside({
        {at(0), at(1), at(2)},
        {at(2), at(3), at(4)},
        {at(4), at(5), at(6)}
    });
    const double outwards = Dot(area, FaceOf(model, element, f).Normal()) > 0 ? 1.0 : -1.0;
    model.Load("local_pressure_loads", element.number, f, {0, 0, -9});
    const Vector3 sum = SumOfReactions(model);
    for (int d = 0; d < 3; ++d) EXPECT_NEAR(sum[d], 9 * outwards * area[d], 1e-9) << f;
    EXPECT_GT(Norm(sum), 0.1);
  }
}

TEST(CurvedMeshEquilibrium, PressureOnAShellWithCurvedEdgesIsThatOnItsArea) {
  MeshModel model = SampleShell(true, Dress::Held, true);
  Vector3 total{};
  for (const MeshModel::Element& element : InnerElements(model)) {
    const auto at = [&](int i) { return model.At(element.nodes[i]); };
    total =
        Plus(total, Times(AreaVectorInside({
                              {at(0), at(3), at(1)},
                              {at(1), at(4), at(2)},
                              {at(2), at(5), at(0)}
    }),
                          9.0));
    model.Load("local_pressure_loads", element.number, MeshModel::kNoFace, {0, 0, 9});
  }
  const Vector3 sum = SumOfReactions(model);
  for (int d = 0; d < 3; ++d) EXPECT_NEAR(sum[d], -total[d], 1e-9);
}

}  // namespace

}  // namespace kestol
