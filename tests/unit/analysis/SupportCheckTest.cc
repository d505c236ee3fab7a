#include <gtest/gtest.h>

#include <string>

#include "analysis/SupportCheck.h"
#include "main/ErrorChannel.h"
#include "tests/support/SmallModel.h"

namespace kestol {

namespace {

constexpr char kOneInPlane[] =
    "There is only one prescribed node in the model!!!\n"
    "At least 3 prescribed nodes are needed!!!\n";
constexpr char kOneInSpace[] =
    "There is only one prescribed node in the model!!!\n"
    "Its 6 degrees of freedom should be prescribed!!!\n";

using Codes = std::array<int, 6>;

/// A space frame of one mesh, unless changed.
class SupportCheck : public ::testing::Test {
protected:
  SupportCheck() {
    small.AddMesh(Linear, 2);
    small.AddNode(1, 0, 0, 0);
    small.AddNode(2, 3, 0, 0);
    small.AddNode(3, 3, 4, 0);
    small.AddNode(4, 1, 2, 0.5);
  }
  ~SupportCheck() override { error.Clear(); }

  Constraint& Support(int nodeNumber, const Codes& codes, int dofs = 6) {
    Node& node = small.NodeOf(nodeNumber);
    node.constraint = std::make_unique<Constraint>(dofs);
    node.constraint->codes = codes;
    return *node.constraint;
  }

  std::string Warnings() {
    error.Clear();
    CheckSupports(small.project);
    return error.Text();
  }

  SmallModel small{Space, 6};
};

constexpr Codes kPinned{1, 1, 1};
constexpr Codes kClamped{1, 1, 1, 1, 1, 1};

TEST_F(SupportCheck, ModelWithoutSupportsIsTold) {
  EXPECT_EQ(Warnings(), "There are no prescribed nodes in the model!!!\n");
}

TEST_F(SupportCheck, WarningsStandBehindWhatWasComposedBefore) {
  error.Clear();
  error.message << "first ";
  CheckSupports(small.project);
  EXPECT_STREQ(error.Text(), "first There are no prescribed nodes in the model!!!\n");
}

TEST_F(SupportCheck, PlaneFrameOfOneMeshIsNeverWarnedAbout) {
  small.project.problemType = Plane;
  EXPECT_EQ(Warnings(), "");
  Support(1, kPinned, 3);
  EXPECT_EQ(Warnings(), "");
}

TEST_F(SupportCheck, PlaneModelOfTwoMeshesIsChecked) {
  small.project.problemType = Plane;
  small.project.dofsPerNode = 3;
  small.AddMesh(Linear, 2);
  EXPECT_EQ(Warnings(), "There are no prescribed nodes in the model!!!\n");
  Support(1, kPinned, 3);
  EXPECT_EQ(Warnings(), kOneInPlane);
}

TEST_F(SupportCheck, PlaneModelOfOtherElementsIsChecked) {
  small.project.problemType = Plane;
  small.project.meshes[0]->elemType = Tetrahedra;
  Support(1, kPinned, 3);
  EXPECT_EQ(Warnings(), kOneInPlane);
}

TEST_F(SupportCheck, OneClampedNodeInSpaceIsEnough) {
  Support(1, kClamped);
  EXPECT_EQ(Warnings(), "");
}

TEST_F(SupportCheck, OneNodeInSpaceThatIsNotClampedIsTold) {
  Support(1, kPinned);
  EXPECT_EQ(Warnings(), kOneInSpace);
  for (int d = 0; d < 6; ++d) {
    Codes codes = kClamped;
    codes[d] = d % 2 == 0 ? 0 : 2;  // springs do not count
    Support(1, codes);
    EXPECT_EQ(Warnings(), kOneInSpace) << d;
  }
}

TEST_F(SupportCheck, OneSupportedNodeOfASolidIsAlwaysTold) {
  small.project.meshes[0]->elemType = Tetrahedra;
  Support(1, kClamped, 3);
  EXPECT_EQ(Warnings(), kOneInSpace);
}

TEST_F(SupportCheck, TwoPinnedNodesLetTheModelTurnAboutTheirLine) {
  Support(2, kPinned);
  Support(4, kPinned);
  EXPECT_EQ(Warnings(),
            "There are only two prescribed nodew in the model!!!\n"
            "Model can rotate around axe:    2.000000e+00  -2.000000e+00  -5.000000e-01 !!!\n");
}

TEST_F(SupportCheck, AxisIsWrittenWithTheDigitsOfAVector) {
  small.NodeOf(3).x = 1e-7 / 3;
  small.NodeOf(3).y = 123456789.0;
  Support(1, kPinned);
  Support(3, kPinned);
  EXPECT_EQ(Warnings(),
            "There are only two prescribed nodew in the model!!!\n"
            "Model can rotate around axe:   -3.333333e-08  -1.234568e+08   0.000000e+00 !!!\n");
}

TEST_F(SupportCheck, PrescribedRotationAlongTheLineOfTwoNodesHolds) {
  Support(1, kPinned);
  Support(2, {1, 1, 1, 1, 0, 0});  // the line is along x
  EXPECT_EQ(Warnings(), "");
  Support(1, {1, 1, 1, 1, 0, 0});
  Support(2, kPinned);
  EXPECT_EQ(Warnings(), "");
}

TEST_F(SupportCheck, PrescribedRotationAcrossTheLineOfTwoNodesDoesNotHold) {
  Support(1, {1, 1, 1, 0, 1, 0});
  Support(2, {1, 1, 1, 0, 1, 1});
  EXPECT_EQ(Warnings(),
            "There are only two prescribed nodew in the model!!!\n"
            "Model can rotate around axe:   -3.000000e+00   0.000000e+00   0.000000e+00 !!!\n");
}

TEST_F(SupportCheck, ComponentWithinRoundingIsNoPartOfTheLine) {
  small.NodeOf(2).y = 9e-16;
  Support(1, {1, 1, 1, 0, 1, 0});
  Support(2, kPinned);
  EXPECT_NE(Warnings(), "");
  small.NodeOf(2).y = 2e-15;
  EXPECT_EQ(Warnings(), "");
}

TEST_F(SupportCheck, SpringAgainstTheRotationDoesNotCount) {
  Support(1, {1, 1, 1, 2, 0, 0});
  Support(2, kPinned);
  EXPECT_NE(Warnings(), "");
}

TEST_F(SupportCheck, TwoNodesInOnePlaceAreNotToldAbout) {
  small.NodeOf(2).x = 5e-16;
  Support(1, kPinned);
  Support(2, kPinned);
  EXPECT_EQ(Warnings(), "");
}

TEST_F(SupportCheck, TwoNodesOfWhichOneHasLocalAxesAreNotToldAbout) {
  Support(1, kPinned);
  Support(2, kPinned).hasLocalAxes = 1;
  EXPECT_EQ(Warnings(), "");
  Support(1, kPinned).hasLocalAxes = 1;
  Support(2, kPinned);
  EXPECT_EQ(Warnings(), "");
}

TEST_F(SupportCheck, RotationsThatARecordOfThreeDoesNotHoldAreFree) {
  small.project.meshes[0]->elemType = Tetrahedra;
  Support(1, kClamped, 3);
  Support(2, kClamped, 3);
  EXPECT_NE(Warnings(), "");
}

TEST_F(SupportCheck, ThreeNodesWithSupportsAreEnough) {
  Support(1, {});  // any record counts
  Support(2, {});
  Support(4, {});
  EXPECT_EQ(Warnings(), "");
}

TEST_F(SupportCheck, ProjectWithoutMeshesHasNoSupports) {
  small.project.meshes.clear();
  EXPECT_EQ(Warnings(), "There are no prescribed nodes in the model!!!\n");
}

}  // namespace

}  // namespace kestol
