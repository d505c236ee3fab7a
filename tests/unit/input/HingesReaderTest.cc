#include <string>

#include "input/HingesReader.h"
#include "input/Words.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/SmallModel.h"

namespace kestol {

namespace {

class HingesReader : public ::testing::Test {
protected:
  HingesReader() {
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

// --- the section ------------------------------------------------------------------------------

TEST_F(HingesReader, SectionMarksItsNodes) {
  EXPECT_EQ(Read("# hinges\n 2 anything behind\n= 4"), "behind");
  EXPECT_TRUE(project.hasHinges);
  const int expected[] = {0, 1, 0, 1, 0};
  for (int n = 1; n <= 5; ++n) EXPECT_EQ(small.NodeOf(n).isHinge, expected[n - 1]) << n;
  EXPECT_TRUE(project.endCodes.empty());
}

TEST_F(HingesReader, EmptySectionLeavesTheProjectWithoutRotules) {
  EXPECT_EQ(Read(""), "behind");
  EXPECT_FALSE(project.hasHinges);
}

TEST_F(HingesReader, UnknownNodeEndsTheRun) {
  const char* const text = "error: Trying to assign rotule to unknown node\n";
  EXPECT_FATAL(Read("6"), text);
  EXPECT_FATAL(Read("0"), text);
  project.meshes.clear();
  EXPECT_FATAL(Read("1"), text);
}

TEST_F(HingesReader, NumberThatNothingFollowsEndsTheRun) {
  TextInput input(std::string("2\n3"));
  EXPECT_FATAL(ReadHinges(project, input), "Not reading correctly the rotules. Number=3\n");
}

TEST_F(HingesReader, LastLineWithoutNewlineIsALine) {
  TextInput input(std::string("3 "));
  EXPECT_FATAL(ReadHinges(project, input), "can't find word ***end*** in input file\n");
  EXPECT_EQ(small.NodeOf(3).isHinge, 1);
}

TEST_F(HingesReader, MissingEndEndsTheRun) {
  TextInput input(std::string("3\n"));
  EXPECT_FATAL(ReadHinges(project, input), "can't find word ***end*** in input file\n");
}

}  // namespace

}  // namespace kestol
