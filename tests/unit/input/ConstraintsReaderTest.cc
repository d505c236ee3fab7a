#include <string>

#include "input/ConstraintsReader.h"
#include "input/Words.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/SmallModel.h"

namespace kestol {

namespace {

/// Nodes 1 to 8; results in N and m, the default of loads has F = 7 and L = 3, the system "other"
/// F = 2 and L = 10.
class ConstraintsReader : public ::testing::Test {
protected:
  ConstraintsReader() {
    small.AddMesh(Linear, 2);
    for (int number = 1; number <= 8; ++number) small.AddNode(number, number, 0);
  }

  void UseDofs(int dofsPerNode) {
    project.dofsPerNode = dofsPerNode;
    project.problemType = dofsPerNode == 3 ? Plane : Space;
  }

  void UseUnits() {
    project.units.materialForce = 7.0;
    project.units.materialLength = 3.0;
    project.units.table = {
        {"other", "n", "m", "p", 2.0, 10.0},
        {"wrong", "n", "m", "p", 0,   1   }
    };
  }

  /// Reads the lines of a section with its end; gives the word behind.
  std::string Read(const std::string& lines) {
    TextInput input(lines + "\nend constraints\nbehind\n");
    ReadConstraints(project, input);
    return ReadWord(input);
  }

  const Constraint& Of(int nodeNumber) { return *small.NodeOf(nodeNumber).constraint; }

  SmallModel small{Plane, 3};
  Project& project = small.project;
};

using Codes = std::array<int, 6>;
using Values = std::array<double, 6>;

TEST_F(ConstraintsReader, CodesAreOneDigitPerDegree) {
  EXPECT_EQ(Read("5 110 0.0 0.0 0.0"), "behind");
  EXPECT_EQ(Of(5).codes, (Codes{1, 1, 0}));
  EXPECT_EQ(Of(5).values, Values{});
  EXPECT_EQ(Of(5).dofs, 3);
  EXPECT_EQ(Of(5).hasLocalAxes, 0);
  EXPECT_EQ(small.NodeOf(4).constraint, nullptr);
}

TEST_F(ConstraintsReader, SeparateDigitsAreCodesToo) {
  Read("5 1 0 2 0.1 0.2 0.3");
  EXPECT_EQ(Of(5).codes, (Codes{1, 0, 2}));
  EXPECT_EQ(Of(5).values, (Values{0.1, 0.0, 0.3}));
}

TEST_F(ConstraintsReader, SpringsAreScaledByForcePerLength) {
  UseUnits();
  Read("5 220 1000 2000 0");
  EXPECT_EQ(Of(5).codes, (Codes{2, 2, 0}));
  EXPECT_DOUBLE_EQ(Of(5).values[0], 1000 * 7.0 / 3.0);
  EXPECT_DOUBLE_EQ(Of(5).values[1], 2000 * 7.0 / 3.0);
}

TEST_F(ConstraintsReader, PlaneValuesAreScaledByKind) {
  UseUnits();
  Read("5 111 5 5 5\n6 222 5 5 5\n7 339 5 5 5");
  EXPECT_EQ(Of(5).values, (Values{15, 15, 5}));
  EXPECT_DOUBLE_EQ(Of(6).values[1], 5 * 7.0 / 3.0);
  EXPECT_DOUBLE_EQ(Of(6).values[2], 5 * 21.0);
  EXPECT_EQ(Of(7).codes, (Codes{3, 3, 9}));
  EXPECT_EQ(Of(7).values, (Values{5, 5, 5}));
}

TEST_F(ConstraintsReader, SpaceValuesAreScaledByKind) {
  UseDofs(6);
  UseUnits();
  Read("5 111111 5 5 5 5 5 5\n6 222222 1 2 3 4 5 6");
  EXPECT_EQ(Of(5).values, (Values{15, 15, 15, 5, 5, 5}));
  for (int d = 0; d < 3; ++d) EXPECT_DOUBLE_EQ(Of(6).values[d], (d + 1) * 7.0 / 3.0);
  for (int d = 3; d < 6; ++d) EXPECT_DOUBLE_EQ(Of(6).values[d], (d + 1) * 21.0);
}

// Deliberate: the last half counts as rotations, so does the third direction of a solid.
TEST_F(ConstraintsReader, ThirdDirectionOfASolidIsScaledAsARotation) {
  project.problemType = Space;
  UseUnits();
  Read("5 111 5 5 5");
  EXPECT_EQ(Of(5).values, (Values{15, 15, 5}));
}

TEST_F(ConstraintsReader, LinesOfOneNodeAddUp) {
  Read("5 110 0.5 0.6 9\n5 001 9 9 0.01");
  EXPECT_EQ(Of(5).codes, (Codes{1, 1, 1}));
  EXPECT_EQ(Of(5).values, (Values{0.5, 0.6, 0.01}));
  EXPECT_EQ(Read("5 020 0 8 0"), "behind");  // a later section too
  EXPECT_EQ(Of(5).codes, (Codes{1, 2, 1}));
  EXPECT_EQ(Of(5).values, (Values{0.5, 8, 0.01}));
}

TEST_F(ConstraintsReader, EulerAnglesGiveLocalAxes) {
  UseDofs(6);
  Read("7 111111 0 0 0 0 0 0 Euler3=0.5");
  EXPECT_EQ(Of(7).codes, (Codes{1, 1, 1, 1, 1, 1}));
  EXPECT_EQ(Of(7).hasLocalAxes, 1);
  EXPECT_EQ(Of(7).Euler1, 0.0);
  EXPECT_EQ(Of(7).Euler2, 0.0);
  EXPECT_EQ(Of(7).Euler3, 0.5);
}

TEST_F(ConstraintsReader, EulerIsReadInAnyCaseAndReplacesAllThreeAngles) {
  Read("5 100 0 0 0 EULER1: 1 eUlEr2 2\n5 010 0 0 0 euler3=3\n5 001 0 0 0");
  EXPECT_EQ(Of(5).hasLocalAxes, 1);
  EXPECT_EQ(Of(5).Euler1, 0.0);
  EXPECT_EQ(Of(5).Euler2, 0.0);
  EXPECT_EQ(Of(5).Euler3, 3.0);
  EXPECT_EQ(Of(5).codes, (Codes{1, 1, 1}));
}

TEST_F(ConstraintsReader, UnitsOfTheLineHoldForItsValues) {
  UseUnits();
  Read("5 121 5 5 5 units=other\n6 121 5 5 5\n7 100 5 0 0 Units = other Euler3=1");
  EXPECT_EQ(Of(5).values, (Values{50, 1, 5}));
  EXPECT_DOUBLE_EQ(Of(6).values[0], 15);
  EXPECT_EQ(Of(7).values, (Values{50}));
  EXPECT_EQ(Of(7).Euler3, 1.0);
}

TEST_F(ConstraintsReader, LastUnitsOfALineHold) {
  UseUnits();
  project.units.table.insert(project.units.table.begin(), {"kilo", "n", "m", "p", 1000.0, 1.0});
  Read("5 200 5 0 0 UNITS:other units kilo");
  EXPECT_EQ(Of(5).values, (Values{5000}));
}

TEST_F(ConstraintsReader, OtherCodesInSpaceAreNotScaled) {
  UseDofs(6);
  UseUnits();
  Read("5 345678 5 5 5 5 5 5");
  EXPECT_EQ(Of(5).codes, (Codes{3, 4, 5, 6, 7, 8}));
  EXPECT_EQ(Of(5).values, (Values{5, 5, 5, 5, 5, 5}));
}

TEST_F(ConstraintsReader, OtherPairsAreIgnored) {
  UseUnits();
  Read("5 100 5 0 0 name=left uNits=none x: 1");
  EXPECT_EQ(Of(5).values, (Values{15}));
  EXPECT_EQ(Of(5).hasLocalAxes, 0);
}

TEST_F(ConstraintsReader, CommentsAndSignsMayStandBeforeRecords) {
  EXPECT_EQ(Read("# supports\n  := 1 100 0 0 0\r\n\n#1 111 0 0 0\n=2 010 0 0 0"), "behind");
  EXPECT_EQ(Of(1).codes, (Codes{1, 0, 0}));
  EXPECT_EQ(Of(2).codes, (Codes{0, 1, 0}));
}

TEST_F(ConstraintsReader, AnyWordThatContainsEndClosesTheSection) {
  TextInput input(std::string("1 100 0 0 0\nlegend of supports\nbehind"));
  ReadConstraints(project, input);
  EXPECT_EQ(ReadWord(input), "behind");
}

TEST_F(ConstraintsReader, EmptySectionIsAccepted) {
  EXPECT_EQ(Read(""), "behind");
}

TEST_F(ConstraintsReader, RecordOfSixEntriesTakesThreeOnceSolidsAreThere) {
  UseDofs(6);
  Read("5 111111 1 2 3 4 5 6");
  UseDofs(3);
  Read("5 200 9 0 0");
  EXPECT_EQ(Of(5).codes, (Codes{2, 1, 1, 1, 1, 1}));
  EXPECT_EQ(Of(5).values, (Values{9, 2, 3, 4, 5, 6}));
}

// --- refusals ---------------------------------------------------------------------------------

TEST_F(ConstraintsReader, UnknownNodeEndsTheRun) {
  const char* const text = "error: Trying to assign constrain to unknown node\n";
  EXPECT_FATAL(Read("9 111 0 0 0"), text);
  EXPECT_FATAL(Read("0 111 0 0 0"), text);
  EXPECT_FATAL(Read("-3 111 0 0 0"), text);
  project.meshes.clear();
  EXPECT_FATAL(Read("1 111 0 0 0"), text);
}

TEST_F(ConstraintsReader, PlaneLineNeedsThreeCodesAndThreeValues) {
  const char* const text = "Not reading correctly the constraints. Number=5\n";
  for (const char* line : {"5", "5 ", "5 111", "5 111 0 0", "5 11 0 0 0", "5 111 0 0 x",
                           "5 x11 0 0 0", "5 111 0 nan 0", "5 111 0 inf 0", "5 111 # 0 0 0"})
    EXPECT_FATAL(Read(line), text);
  TextInput input(std::string("5"));
  EXPECT_FATAL(ReadConstraints(project, input), text);
}

TEST_F(ConstraintsReader, DigitsGluedBehindTheCodesEndTheRun) {
  EXPECT_FATAL(Read("5 111111 0 0 0 0 0 0"), "Not reading correctly the constraints. Number=5\n");
  EXPECT_FATAL(Read("5 110.5 0 0 0"), "Not reading correctly the constraints. Number=5\n");
  UseDofs(6);
  EXPECT_FATAL(Read("5 1111110 0 0 0 0 0"),
               "Not reading correctly the constraints. -A- Number=5\n");
}

TEST_F(ConstraintsReader, SpaceLineNeedsSixCodesAndSixValues) {
  UseDofs(6);
  for (const char* line : {"5", "5 111 0 0 0", "5 111111 0 0 0 0 0", "5 111111 0 0 0 0 0 inf"})
    EXPECT_FATAL(Read(line), "Not reading correctly the constraints. -A- Number=5\n");
}

TEST_F(ConstraintsReader, KeyWithoutValueEndsTheRun) {
  const char* const text = "Not reading correctly the constraints. -B- Number=5\n";
  for (const char* pairs : {"Euler3", "Euler3=", "name", "units", "Euler1=1 x"})
    EXPECT_FATAL(Read(std::string("5 111 0 0 0 ") + pairs), text);
}

TEST_F(ConstraintsReader, EulerAnglesAreOneTwoAndThree) {
  for (const char* pairs : {"Euler4=1", "Euler=1", "EULER0=1"})
    EXPECT_FATAL(Read(std::string("5 111 0 0 0 ") + pairs),
                 "error: Euler angles must be: Euler1,Euler2 or Euler3\n");
}

TEST_F(ConstraintsReader, UnitSystemsThatAreUnknownOrNotPositiveEndTheRun) {
  UseUnits();
  EXPECT_FATAL(Read("5 111 0 0 0 units=none"),
               "error: Unit name 'none' has not been previously defined\n");
  EXPECT_FATAL(Read("5 111 0 0 0 units=wrong"),
               "error: factors of unit system 'wrong' must be two positive numbers\n");
}

TEST_F(ConstraintsReader, NumberOutOfRangeEndsTheRun) {
  EXPECT_FATAL(Read("99999999999 111 0 0 0"), "error: number out of range in input file\n");
}

TEST_F(ConstraintsReader, MissingEndEndsTheRun) {
  TextInput input(std::string("5 111 0 0 0\n"));
  EXPECT_FATAL(ReadConstraints(project, input), "can't find word ***end*** in input file\n");
}

}  // namespace

}  // namespace kestol
