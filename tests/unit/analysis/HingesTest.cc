#include <string>
#include <vector>

#include "analysis/Hinges.h"
#include "input/HingesReader.h"
#include "input/Words.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/SmallModel.h"

namespace kestol {

namespace {

class Hinges : public ::testing::Test {
protected:
  Hinges() {
    small.AddMesh(Linear, 2);
    for (int number = 1; number <= 5; ++number) small.AddNode(number, number, 0);
  }

  std::string Read(const std::string& lines) {
    TextInput input(lines + "\nend rotules\nbehind\n");
    ReadHinges(project, input);
    return ReadWord(input);
  }

  SmallModel small{Plane, 3};
  Project& project = small.project;
};

// --- the codes --------------------------------------------------------------------------------

TEST_F(Hinges, FirstBeamAtARotuleStaysRigidAndLaterOnesAreHinged) {
  small.AddElem(1, {1, 4});
  small.AddElem(2, {2, 4});
  small.AddElem(3, {3, 4});
  Read("4");
  PrepareHinges(project);
  EXPECT_EQ(project.endCodes, (std::vector<int>{BothFixed, HingeAtEnd2, HingeAtEnd2}));
}

TEST_F(Hinges, EndThatIsReleasedIsTheOneAtTheRotule) {
  small.AddElem(1, {1, 2});
  small.AddElem(2, {2, 3});  // hinged at 2
  small.AddElem(3, {3, 2});  // hinged at 2, its second node
  small.AddElem(4, {3, 4});  // no rotule
  Read("2");
  PrepareHinges(project);
  EXPECT_EQ(project.endCodes, (std::vector<int>{BothFixed, HingeAtEnd1, HingeAtEnd2, BothFixed}));
}

TEST_F(Hinges, BeamBetweenTwoClaimedRotulesIsHingedAtBothEnds) {
  small.AddElem(1, {1, 2});
  small.AddElem(2, {3, 4});
  small.AddElem(3, {2, 3});
  Read("2\n3");
  PrepareHinges(project);
  EXPECT_EQ(project.endCodes, (std::vector<int>{BothFixed, BothFixed, BothHinged}));
}

TEST_F(Hinges, BeamClaimsBothItsRotules) {
  small.AddElem(1, {2, 3});
  small.AddElem(2, {2, 1});
  small.AddElem(3, {4, 3});
  Read("2\n3");
  PrepareHinges(project);
  EXPECT_EQ(project.endCodes, (std::vector<int>{BothFixed, HingeAtEnd1, HingeAtEnd2}));
}

TEST_F(Hinges, ElementsClaimInTheOrderOfTheirNumbers) {
  small.AddElem(9, {1, 2});
  small.AddElem(4, {2, 3});
  Read("2");
  PrepareHinges(project);
  ASSERT_EQ(project.endCodes.size(), 9U);
  EXPECT_EQ(project.EndCodeOf(4), BothFixed);
  EXPECT_EQ(project.EndCodeOf(9), HingeAtEnd2);
  EXPECT_EQ(project.EndCodeOf(5), BothFixed);  // no such element
}

TEST_F(Hinges, BeamsOfLaterMeshesFindTheClaimsOfEarlierOnes) {
  small.AddElem(5, {1, 2});
  Read("2");
  small.AddMesh(Linear, 2);  // read behind the section, with larger numbers
  small.AddElem(2, {2, 3});
  small.AddElem(20, {4, 5});
  PrepareHinges(project);
  ASSERT_EQ(project.endCodes.size(), 20U);
  EXPECT_EQ(project.EndCodeOf(5), BothFixed);
  EXPECT_EQ(project.EndCodeOf(2), HingeAtEnd1);
  EXPECT_EQ(project.EndCodeOf(20), BothFixed);
}

TEST_F(Hinges, ShellsAreFixedAndClaimNothing) {
  project.meshes[0]->elemType = Triangle;
  project.meshes[0]->nnode = 3;
  small.AddElem(1, {1, 2, 3});
  small.AddMesh(Linear, 2);
  small.AddElem(2, {1, 2});
  small.AddElem(3, {2, 4});
  Read("2");
  PrepareHinges(project);
  EXPECT_EQ(project.endCodes, (std::vector<int>{BothFixed, BothFixed, HingeAtEnd1}));
}

TEST_F(Hinges, UnknownNodesAreNoRotules) {
  small.AddElem(1, {1, 0});
  Read("1");
  PrepareHinges(project);
  EXPECT_EQ(project.endCodes, (std::vector<int>{BothFixed}));
}

TEST_F(Hinges, ProjectWithoutElementsHasNoCodes) {
  Read("1");
  PrepareHinges(project);
  EXPECT_TRUE(project.endCodes.empty());
  project.meshes.clear();
  PrepareHinges(project);
  EXPECT_TRUE(project.endCodes.empty());
}

}  // namespace

}  // namespace kestol
