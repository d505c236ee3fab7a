#include <string>
#include <vector>

#include "input/Words.h"
#include "model/Rotules.h"
#include "tests/support/FatalExit.h"
#include "tests/support/SmallModel.h"

namespace {

class Rotules : public ::testing::Test {
protected:
  Rotules() {
    small.AddMesh(Linear, 2);
    for (int number = 1; number <= 5; ++number) small.AddNode(number, number, 0);
  }

  std::string Read(const std::string& lines) {
    TextInput input(lines + "\nend rotules\nbehind\n");
    ReadRotules(project, input);
    return ReadWord(input);
  }

  SmallModel small{Plane, 3};
  Project& project = small.project;
};

// --- the section ------------------------------------------------------------------------------

TEST_F(Rotules, SectionMarksItsNodes) {
  EXPECT_EQ(Read("# hinges\n 2 anything behind\n= 4"), "behind");
  EXPECT_TRUE(project.hasRotules);
  const int expected[] = {0, 1, 0, 1, 0};
  for (int n = 1; n <= 5; ++n) EXPECT_EQ(small.NodeOf(n).rotule, expected[n - 1]) << n;
  EXPECT_TRUE(project.rotuleCodes.empty());
}

TEST_F(Rotules, EmptySectionLeavesTheProjectWithoutRotules) {
  EXPECT_EQ(Read(""), "behind");
  EXPECT_FALSE(project.hasRotules);
}

TEST_F(Rotules, UnknownNodeEndsTheRun) {
  const char* const text = "error: Trying to assign rotule to unknown node\n";
  EXPECT_FATAL(Read("6"), text);
  EXPECT_FATAL(Read("0"), text);
  project.meshes.clear();
  EXPECT_FATAL(Read("1"), text);
}

TEST_F(Rotules, NumberThatNothingFollowsEndsTheRun) {
  TextInput input(std::string("2\n3"));
  EXPECT_FATAL(ReadRotules(project, input), "Not reading correctly the rotules. Number=3\n");
}

TEST_F(Rotules, LastLineWithoutNewlineIsALine) {
  TextInput input(std::string("3 "));
  EXPECT_FATAL(ReadRotules(project, input), "can't find word ***end*** in input file\n");
  EXPECT_EQ(small.NodeOf(3).rotule, 1);
}

TEST_F(Rotules, MissingEndEndsTheRun) {
  TextInput input(std::string("3\n"));
  EXPECT_FATAL(ReadRotules(project, input), "can't find word ***end*** in input file\n");
}

// --- the codes --------------------------------------------------------------------------------

TEST_F(Rotules, FirstBeamAtARotuleStaysRigidAndLaterOnesAreHinged) {
  small.AddElem(1, {1, 4});
  small.AddElem(2, {2, 4});
  small.AddElem(3, {3, 4});
  Read("4");
  PrepareRotules(project);
  EXPECT_EQ(project.rotuleCodes, (std::vector<int>{BothFixed, HingeAtEnd2, HingeAtEnd2}));
}

TEST_F(Rotules, EndThatIsReleasedIsTheOneAtTheRotule) {
  small.AddElem(1, {1, 2});
  small.AddElem(2, {2, 3});  // hinged at 2
  small.AddElem(3, {3, 2});  // hinged at 2, its second node
  small.AddElem(4, {3, 4});  // no rotule
  Read("2");
  PrepareRotules(project);
  EXPECT_EQ(project.rotuleCodes,
            (std::vector<int>{BothFixed, HingeAtEnd1, HingeAtEnd2, BothFixed}));
}

TEST_F(Rotules, BeamBetweenTwoClaimedRotulesIsHingedAtBothEnds) {
  small.AddElem(1, {1, 2});
  small.AddElem(2, {3, 4});
  small.AddElem(3, {2, 3});
  Read("2\n3");
  PrepareRotules(project);
  EXPECT_EQ(project.rotuleCodes, (std::vector<int>{BothFixed, BothFixed, BothHinged}));
}

TEST_F(Rotules, BeamClaimsBothItsRotules) {
  small.AddElem(1, {2, 3});
  small.AddElem(2, {2, 1});
  small.AddElem(3, {4, 3});
  Read("2\n3");
  PrepareRotules(project);
  EXPECT_EQ(project.rotuleCodes, (std::vector<int>{BothFixed, HingeAtEnd1, HingeAtEnd2}));
}

TEST_F(Rotules, ElementsClaimInTheOrderOfTheirNumbers) {
  small.AddElem(9, {1, 2});
  small.AddElem(4, {2, 3});
  Read("2");
  PrepareRotules(project);
  ASSERT_EQ(project.rotuleCodes.size(), 9U);
  EXPECT_EQ(project.EndCodeOf(4), BothFixed);
  EXPECT_EQ(project.EndCodeOf(9), HingeAtEnd2);
  EXPECT_EQ(project.EndCodeOf(5), BothFixed);  // no such element
}

TEST_F(Rotules, BeamsOfLaterMeshesFindTheClaimsOfEarlierOnes) {
  small.AddElem(5, {1, 2});
  Read("2");
  small.AddMesh(Linear, 2);  // read behind the section, with larger numbers
  small.AddElem(2, {2, 3});
  small.AddElem(20, {4, 5});
  PrepareRotules(project);
  ASSERT_EQ(project.rotuleCodes.size(), 20U);
  EXPECT_EQ(project.EndCodeOf(5), BothFixed);
  EXPECT_EQ(project.EndCodeOf(2), HingeAtEnd1);
  EXPECT_EQ(project.EndCodeOf(20), BothFixed);
}

TEST_F(Rotules, ShellsAreFixedAndClaimNothing) {
  project.meshes[0]->elemType = Triangle;
  project.meshes[0]->nnode = 3;
  small.AddElem(1, {1, 2, 3});
  small.AddMesh(Linear, 2);
  small.AddElem(2, {1, 2});
  small.AddElem(3, {2, 4});
  Read("2");
  PrepareRotules(project);
  EXPECT_EQ(project.rotuleCodes, (std::vector<int>{BothFixed, BothFixed, HingeAtEnd1}));
}

TEST_F(Rotules, UnknownNodesAreNoRotules) {
  small.AddElem(1, {1, 0});
  Read("1");
  PrepareRotules(project);
  EXPECT_EQ(project.rotuleCodes, (std::vector<int>{BothFixed}));
}

TEST_F(Rotules, ProjectWithoutElementsHasNoCodes) {
  Read("1");
  PrepareRotules(project);
  EXPECT_TRUE(project.rotuleCodes.empty());
  project.meshes.clear();
  PrepareRotules(project);
  EXPECT_TRUE(project.rotuleCodes.empty());
}

}  // namespace
