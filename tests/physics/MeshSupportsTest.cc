// What supports of shells and solids give: nothing against rigid motions, the push of springs.
#include <gtest/gtest.h>

#include <array>
#include <cmath>

#include "model/EulerAngles.h"
#include "tests/support/NodalFields.h"
#include "tests/support/SampleModels.h"

namespace kestol {

namespace {

class MeshSupports : public testing::TestWithParam<Sample> {
protected:
  static MeshModel Model(Dress dress) { return GetParam().build(dress); }
};
INSTANTIATE_TEST_SUITE_P(Samples, MeshSupports, testing::ValuesIn(AllSamples()), NameOf);

TEST_P(MeshSupports, RigidMotionsOfTheSupportsGiveNoForces) {
  const Vector3 turns[] = {
      {0,    0,     0   },
      {1e-3, -2e-3, 3e-3}
  };
  for (const Vector3& turn : turns) {
    MeshModel model = Model(Dress::Held);
    const auto motion = [&](const Vector3& p) { return Plus({0.01, -0.02, 0.03}, Cross(turn, p)); };
    for (auto& support : model.supports) {
      const Vector3 u = motion(model.At(support.node));
      support.values = {u[0], u[1], u[2], turn[0], turn[1], turn[2]};
    }
    const auto project = Solved(model);
    const NodalFields fields(*project);
    for (std::size_t i = 0; i < model.nodes.size(); ++i)
      EXPECT_NEAR(Norm(Minus(fields.displacement[i], motion(model.nodes[i]))), 0.0, 1e-11) << i;
    for (const MeshModel::Block& block : model.blocks)
      for (const MeshModel::Element& element : block.elements)
        for (const double value : ValuesOf(*project, element.number)) EXPECT_NEAR(value, 0.0, 1e-5);
    EXPECT_LT(LargestOf(fields.reaction), 1e-5);
    EXPECT_LT(LargestOf(fields.couple), 1e-3);
  }
}

TEST_P(MeshSupports, FreeDegreesHaveNoReactionAndSpringsPushBack) {
  MeshModel model = Model(Dress::Held);
  const int degrees = model.IsSolid() ? 3 : 6;
  const std::array<double, 6> stiffness = {3e4, 2e4, 5e4, 400, 500, 600};
  model.Load(8, {10, -20, 30}).Load(14, {-15, 5, -25});
  model.Hold(5, model.IsSolid() ? "202" : "202020", stiffness);
  model.Hold(3, model.IsSolid() ? "020" : "020202", stiffness);
  model.Hold(9, model.IsSolid() ? "000" : "000000", stiffness);
  const auto project = Solved(model);
  int springs = 0;
  for (const int node : {3, 5, 9})
    for (int d = 0; d < degrees; ++d) {
      const double reaction = PrintedReaction(*project, node, d + 1);
      if (NodeOf(*project, node).constraint->codes[d] == Spring) {
        const double push = -stiffness[d] * Displacement(*project, node, d + 1);
        EXPECT_NEAR(reaction, push, 1e-9 * std::abs(push) + 1e-10) << node << ' ' << d;
        EXPECT_GT(std::abs(push), 1e-6);
        ++springs;
      } else {
        EXPECT_EQ(reaction, 0.0) << node << ' ' << d;
      }
    }
  EXPECT_EQ(springs, degrees);
}

TEST_P(MeshSupports, InclinedSpringsPushBackAlongTheirAxes) {
  MeshModel model = Model(Dress::Held);
  const Vector3 angles{-0.7, 0.2, 1.1};
  model.Load(8, {10, -20, 30}).Load(14, {-15, 5, -25});
  model.Hold(5, model.IsSolid() ? "020" : "020000", {0, 4e4}, angles);
  const auto project = Solved(model);
  const NodalFields fields(*project);
  const Rotation R = EulerRotation(angles[0], angles[1], angles[2]);
  const Vector3 axis{R(1, 2), R(2, 2), R(3, 2)};
  const Vector3 push = Times(axis, -4e4 * Dot(axis, fields.displacement[4]));
  EXPECT_GT(Norm(push), 1e-3);
  EXPECT_NEAR(Norm(Minus(fields.force[4], push)), 0.0, 1e-8);
  // The printed line keeps the global component of the degree that the code marks.
  EXPECT_NEAR(fields.reaction[4][1], push[1], 1e-8);
  EXPECT_EQ(fields.reaction[4][0], 0.0);
  EXPECT_EQ(fields.reaction[4][2], 0.0);
}

}  // namespace

}  // namespace kestol
