#include <cmath>
#include <string>
#include <vector>

#include "tests/support/ExpectFatal.h"
#include "tests/support/LoadsFixture.h"

namespace kestol {

namespace {

using NodalLoadsTest = LoadsFixture;
constexpr const char* kGlobal = "global_pressure_loads";
constexpr const char* kFace = "face_loads";

TEST_F(NodalLoadsTest, NodalLoadsHaveOneNumberPerDegreeOfFreedom) {
  Model(Plane, {Linear});
  Nodal("4 1 -2.5e1 3\nend nodal_point_loads\nnext");
  EXPECT_EQ(LoadOf(4), (Numbers{1, -25, 3}));
  EXPECT_EQ(rest_, "next");
  Model(Space, {Linear});
  Nodal("4 1 2 3 4 5 6\nend\n");
  EXPECT_EQ(LoadOf(4), (Numbers{1, 2, 3, 4, 5, 6}));
}

TEST_F(NodalLoadsTest, TwoLinesForTheSameNodeAddUp) {
  Model(Plane, {Linear});
  Nodal("4 1 2 3\n4 10 20 30\nend\n");
  Nodal("4 100 200 300\nend\n");
  EXPECT_EQ(LoadOf(4), (Numbers{111, 222, 333}));
}

TEST_F(NodalLoadsTest, NodalLoadsSkipCommentsSignsAndBlankLines) {
  Model(Plane, {Linear});
  Nodal("# 3 9 9 9\n\n : = \t\r\n 4 1 2 3\r\n#end\n  end # of loads\nnext");
  EXPECT_EQ(LoadOf(4), (Numbers{1, 2, 3}));
  EXPECT_EQ(project_->meshes[0]->nodes->Get(3)->load, nullptr);
  EXPECT_EQ(rest_, "next");
}

TEST_F(NodalLoadsTest, TheUnitsOfALineScaleForcesAndMoments) {
  Model(Plane, {Linear});
  Nodal("4 1 2 3 units km\n5 1 2 3 Units: kN-mm\nend\n");
  EXPECT_EQ(LoadOf(4), (Numbers{1, 2, 3000}));
  EXPECT_EQ(LoadOf(5), (Numbers{1000, 2000, 3}));
  Model(Space, {Linear});
  Nodal("4 1 2 3 4 5 6 UNITS = km\nend\n");
  EXPECT_EQ(LoadOf(4), (Numbers{1, 2, 3, 4000, 5000, 6000}));
}

TEST_F(NodalLoadsTest, TheUnitsOfTheProblemScaleNodalLoads) {
  Model(Space, {Linear});
  project_->units.materialForce = 1000.0;
  project_->units.materialLength = 3.0;
  project_->units.resultForce = 10.0;
  project_->units.resultLength = 2.0;
  Nodal("4 1 1 1 1 1 1\nend\n");
  EXPECT_EQ(LoadOf(4), (Numbers{100, 100, 100, 150, 150, 150}));
}

TEST_F(NodalLoadsTest, TheThirdForceOfASolidScalesLikeAMoment) {
  // Deliberate.
  Model(Space, {Tetrahedra});
  Nodal("4 1 2 3 units km\nend\n");
  EXPECT_EQ(LoadOf(4), (Numbers{1, 2, 3000}));
}

TEST_F(NodalLoadsTest, OtherKeysAndSurplusPairsOfNodalLoadsAreIgnored) {
  Model(Plane, {Linear});
  Nodal("4 1 0 0 -5 0 name=top uNits km\nend\n");
  EXPECT_EQ(LoadOf(4), (Numbers{1, 0, 0}));
}

TEST_F(NodalLoadsTest, ALoadOnAnUnknownNodeStopsAtItsLine) {
  Model(Plane, {Linear});
  for (const char* const number : {"11", "0", "-4"})
    EXPECT_FATAL(Nodal(std::string(number) + " 1 2 3\n4 junk\nend\n"),
                 "error: Trying to assign Load to unknown node\n");
}

TEST_F(NodalLoadsTest, ALoadBeforeAnyMeshIsOnAnUnknownNode) {
  project_ = std::make_unique<Project>(100);
  project_->dofsPerNode = 3;
  EXPECT_FATAL(Nodal("1 1 2 3\nend\n"), "error: Trying to assign Load to unknown node\n");
}

TEST_F(NodalLoadsTest, ANodalLoadCutByTheEndOfTheTextIsRefused) {
  Model(Plane, {Linear});
  EXPECT_FATAL(Nodal("4"), "Not reading correctly the loads A. Number=4\n");
}

TEST_F(NodalLoadsTest, TooFewOrBadNumbersOfANodalLoadAreRefused) {
  for (const char* const line : {"4 1 2\n", "4\n", "4 1 x 3\n", "4 1 nan 3\n", "4 1 inf 3\n"}) {
    Model(Plane, {Linear});
    EXPECT_FATAL(Nodal(std::string(line) + "end\n"),
                 "Not reading correctly the loads B. Number=4\n");
  }
  for (const char* const line : {"4 1 2 3 4 5\n", "4 1 2 3 4 5 1e999\n"}) {
    Model(Space, {Linear});
    EXPECT_FATAL(Nodal(std::string(line) + "end\n"),
                 "Not reading correctly the loads C. Number=4\n");
  }
}

TEST_F(NodalLoadsTest, AKeyWithoutValueBehindANodalLoadIsRefused) {
  Model(Plane, {Linear});
  for (const char* const rest : {"units", "0", "a=1 b", "name = top"})
    EXPECT_FATAL(Nodal(std::string("4 1 2 3 ") + rest + "\nend\n"),
                 "Not reading correctly the loads. -D- Number=4\n");
}

TEST_F(NodalLoadsTest, AnUnknownUnitSystemBehindALoadIsRefused) {
  Model(Plane, {Linear});
  EXPECT_FATAL(Nodal("4 1 2 3 units=kip\nend\n"),
               "error: Unit name 'kip' has not been previously defined\n");
  EXPECT_FATAL(Pressure(kGlobal, "101 1 2 units=kip\nend\n"),
               "error: Unit name 'kip' has not been previously defined\n");
}

TEST_F(NodalLoadsTest, ASectionWithoutEndIsRefused) {
  Model(Plane, {Linear});
  EXPECT_FATAL(Nodal("4 1 2 3\n"), "can't find word ***end*** in input file\n");
  EXPECT_FATAL(Pressure(kGlobal, "101 1 2\n"), "can't find word ***end*** in input file\n");
}

TEST_F(NodalLoadsTest, EmptySectionsAreAccepted) {
  Model(Plane, {Linear});
  Nodal("end\n");
  EXPECT_EQ(Pressure(kFace, "end face_loads\nnext"), 0);
  EXPECT_EQ(rest_, "next");
  EXPECT_EQ(project_->loads.Highest(), 0);
}

TEST_F(NodalLoadsTest, ARecordOfSixEntriesKeepsItsLengthWhenTheModelTurnsOutSolid) {
  Model(Space, {Linear});
  Nodal("4 1 2 3 4 5 6\nend\n");
  project_->dofsPerNode = 3;
  Nodal("4 10 20 30\nend\n");
  EXPECT_EQ(LoadOf(4), (Numbers{11, 22, 33, 4, 5, 6}));
}

}  // namespace

}  // namespace kestol
