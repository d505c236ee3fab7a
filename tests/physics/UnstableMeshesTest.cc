// Shells and solids that can move as a whole are refused, whatever rounding makes of their pivots;
// one more support makes them whole.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "tests/support/Answers.h"
#include "tests/support/Refused.h"
#include "tests/support/SampleModels.h"

namespace kestol {

namespace {

/// Steel in N and m: large stiffnesses, pivots that rounding keeps from 0.
MeshModel Steel(MeshModel model) {
  for (auto& [number, material] : model.materials) {
    material.angles.reset();
    material.values = {
        {"E",  2.1e11},
        {"nu", 0.3   },
        {"G",  8.1e10},
        {"t",  0.013 },
        {"A",  5e-3  },
        {"Iy", 1e-5  },
        {"Iz", 3e-5  },
        {"J",  1e-6  }
    };
  }
  return model.Load(8, {1000, 2000, 3000});
}

void ExpectRefused(const MeshModel& model, const std::string& warnings) {
  const auto with = [&](const std::string& key) {
    MeshModel copy = model;
    copy.keys += "\n" + key;
    return copy.Text();
  };
  kestol::ExpectRefused(with, warnings);
}

void ExpectSolved(const MeshModel& model) {
  for (const char* const solver : {"Solver SkyLine", "Solver Sparse 1e-10 1e-6 50000"}) {
    const double largest = LargestDisplacement(*Solved(model, solver));
    EXPECT_GT(largest, 0.0) << solver;
    EXPECT_LT(largest, 10.0) << solver;
  }
}

class UnstableMeshes : public testing::TestWithParam<Sample> {
protected:
  MeshModel model = Steel(GetParam().build(Dress::Bare));

  /// Codes of the three displacements; rotations stay free.
  void Hold(int node, const std::string& codes, const Vector3& values = {},
            const std::optional<Vector3>& angles = {}) {
    model.Hold(node, model.IsSolid() ? codes : codes + "000", {values[0], values[1], values[2]},
               angles);
  }
  int Count() const { return static_cast<int>(model.nodes.size()); }
};
INSTANTIATE_TEST_SUITE_P(Samples, UnstableMeshes, testing::ValuesIn(AllSamples()), NameOf);

TEST_P(UnstableMeshes, WithoutSupportsAreRefused) {
  ExpectRefused(model, "There are no prescribed nodes in the model!!!\n");
}

TEST_P(UnstableMeshes, OnOnePinAreRefused) {
  Hold(3, "111");
  ExpectRefused(model,
                "There is only one prescribed node in the model!!!\n"
                "Its 6 degrees of freedom should be prescribed!!!\n");
}

TEST_P(UnstableMeshes, ThatTurnAboutTwoPinsAreRefused) {
  Hold(2, "111");
  Hold(7, "111");
  const Vector3 axis = Minus(model.At(2), model.At(7));
  ExpectRefused(model, Print("There are only two prescribed nodew in the model!!!\n"
                             "Model can rotate around axe:   %13.6e  %13.6e  %13.6e !!!\n",
                             axis[0], axis[1], axis[2]));
  Hold(9, "111");
  ExpectSolved(model);
}

TEST_P(UnstableMeshes, ThatTurnAboutAHingeLineAreRefused) {
  // The nodes 1, 2, 3 go onto a line in space.
  model.nodes[1] = Plus(Times(model.nodes[0], 0.47), Times(model.nodes[2], 0.53));
  for (const int node : {1, 2, 3}) Hold(node, "111");
  ExpectRefused(model, "");
  Hold(9, "001");
  ExpectSolved(model);
}

TEST_P(UnstableMeshes, WithoutSupportInOneDirectionAreRefused) {
  for (int node = 1; node <= Count(); ++node) model.Hold(node, model.IsSolid() ? "110" : "110111");
  ExpectRefused(model, "");
  Hold(2, "001");
  ExpectSolved(model);
}

TEST_P(UnstableMeshes, ThatSlideAlongAnInclinedDirectionAreRefused) {
  const Vector3 angles{0.3, 0.8, 2.0};
  for (int node = 1; node <= Count(); ++node) Hold(node, "101", {}, angles);
  ExpectRefused(model, "");
}

TEST_P(UnstableMeshes, ThatSpinOnInclinedRollersAreRefused) {
  // Every node may move around one axis through (0.4, 0.3, 0.2) and nowhere else.
  const char* const codes[] = {"110", "011", "101"};  // radius and axis
  for (int axis = 0; axis < 3; ++axis) {
    model.supports.clear();
    for (int node = 1; node <= Count(); ++node) {
      const Vector3 p = Minus(model.At(node), {0.4, 0.3, 0.2});
      Vector3 angles{};  // y, z or x becomes the radius
      angles[axis] = std::atan2(p[(axis + 2) % 3], p[(axis + 1) % 3]);
      Hold(node, codes[axis], {}, angles);
    }
    ExpectRefused(model, "");
  }
}

TEST_P(UnstableMeshes, OnSpringsOfNoStiffnessAreRefused) {
  for (int node = 1; node <= Count(); ++node) Hold(node, "222");
  ExpectRefused(model, "");
}

TEST_P(UnstableMeshes, WithAPartThatIsNotHeldAreRefused) {
  const MeshModel part = model;
  for (const Vector3& p : part.nodes) model.nodes.push_back(Plus(p, {100, 20, 0}));
  for (std::size_t b = 0; b < part.blocks.size(); ++b)
    for (MeshModel::Element element : part.blocks[b].elements) {
      element.number += 1000;
      for (int& node : element.nodes) node += static_cast<int>(part.nodes.size());
      model.blocks[b].elements.push_back(element);
    }
  for (const int node : {2, 7, 9}) Hold(node, "111");
  ExpectRefused(model, "");
  const int second = static_cast<int>(part.nodes.size());
  for (const int node : {2, 7, 9}) Hold(second + node, "111");
  ExpectSolved(model);
}

TEST(UnstableShell, ThatTurnsAboutItsOnlySupportIsRefused) {
  const char* const codes[] = {"111011", "111101", "111110"};
  for (const bool six : {false, true}) {
    const MeshModel shell = Steel(SampleShell(six, Dress::Bare)).Load(14, {100, 200, 300});
    for (const char* const free : codes)
      ExpectRefused(MeshModel(shell).Hold(8, free),
                    "There is only one prescribed node in the model!!!\n"
                    "Its 6 degrees of freedom should be prescribed!!!\n");
    ExpectSolved(MeshModel(shell).Hold(8, "111111"));
  }
}

TEST(UnstableShell, ThatTurnsAboutAHingeLineIsNotHeldByTheOtherRotations) {
  // The nodes 1, 6, 11 lie along y; then along z, then along x.
  const char* const across[] = {"111101", "111110", "111011"};
  const char* const along[] = {"000010", "000001", "000100"};
  MeshModel shell = Steel(SampleShell(true, Dress::Bare));
  shell.Hold(1, "111000").Hold(11, "111000");
  for (int k = 0; k < 3; ++k) {
    MeshModel held = MeshModel(shell).Hold(6, across[k]);
    ExpectRefused(held, "");
    ExpectSolved(held.Hold(6, along[k]));
    for (Vector3& p : shell.nodes) p = {p[2], p[0], p[1]};
  }
}

TEST(UnstablePlate, ThatSpinsInItsPlaneIsRefusedThoughItsBeamsAreGrounded) {
  // Beams hand their turning to rotations that have a small stiffness of their own: no pivot fails.
  MeshModel plate = Steel(SampleStiffenedShell(true, Dress::Bare));
  for (Vector3& p : plate.nodes) p[2] = 0.0;
  for (int node = 1; node <= 15; ++node) plate.Hold(node, "001000");
  plate.Hold(8, "110000").Load(14, {1000, 2000, 0});
  ExpectRefused(plate, "");
  ExpectSolved(plate.Hold(10, "010000"));
}

}  // namespace

}  // namespace kestol
