#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "tests/support/ExpectFatal.h"
#include "tests/support/ReadDeck.h"

namespace kestol {

namespace {

using testing::ElementsAre;

// --- the header -------------------------------------------------------------------------------

TEST(ProblemHeader, KeywordsComeInAnyCaseAndInsideLongerWords) {
  for (const char* header :
       {"problem x type 2d", "PROBLEM: beam\nTYPE: Reticulat 2D\n", "myproblem\nprototype 2d",
        "problem TYPE = 2D", "problem type\n\n2d"}) {
    EXPECT_EQ(Read(std::string(header) + "\n" + kMesh)->problemType, Plane) << header;
  }
}

TEST(ProblemHeader, PlaneHasThreeDegreesPerNodeAndSpaceHasSix) {
  EXPECT_EQ(Read("problem type: 2d\n" + kMesh)->dofsPerNode, 3);
  const auto space = Read("problem type: 3D\n" + kMesh);
  EXPECT_EQ(space->problemType, Space);
  EXPECT_EQ(space->dofsPerNode, 6);
}

TEST(ProblemHeader, OneHashMayStandBeforeTheType) {
  EXPECT_EQ(Read("problem type #2d\n" + kMesh)->problemType, Plane);
  EXPECT_EQ(Read("problem type: # 3d\n" + kMesh)->problemType, Space);
}

TEST(ProblemHeader, GluedTypeIsNotSeen) {
  EXPECT_EQ(Read("problem type:3d 2d\n" + kMesh)->problemType, Plane);
}

TEST(ProblemHeader, RefusesOtherTypes) {
  for (const char* type : {"4d", "2d,", "reticulat", "reticulats 2d", "##2d", ""}) {
    EXPECT_FATAL(Read("problem type " + std::string(type)),
                 "Type of problem unknown. Only 2d and 3d\n");
  }
}

TEST(ProblemHeader, RefusesATextWithoutProblemOrType) {
  EXPECT_FATAL(Read(""), "can't find word ***problem*** in input file\n");
  EXPECT_FATAL(Read("type 2d"), "can't find word ***problem*** in input file\n");
  EXPECT_FATAL(Read("type 2d problem"), "can't find word ***type*** in input file\n");
}

// --- defaults ---------------------------------------------------------------------------------

TEST(ProjectDefaults, AreThoseOfADeckWithoutProblemSection) {
  const auto project = Read(kHeader + kMesh);
  EXPECT_EQ(project->units.meshLength, 1.0);
  EXPECT_EQ(project->units.materialForce, 1.0);
  EXPECT_EQ(project->units.materialLength, 1.0);
  EXPECT_EQ(project->units.resultForce, 1.0);
  EXPECT_EQ(project->units.resultLength, 1.0);
  EXPECT_EQ(project->units.resultForceName, "N");
  EXPECT_EQ(project->units.resultLengthName, "m");
  EXPECT_EQ(project->units.resultPressureName, "Pa");
  EXPECT_EQ(project->ConvertTo6Nodes, 0);
  EXPECT_EQ(project->stressOption, LocalStresses);
  EXPECT_EQ(project->solverChoice, Automatic);
  EXPECT_EQ(project->tolerance1, -1.0);
  EXPECT_EQ(project->tolerance2, -1.0);
  EXPECT_EQ(project->MaxIterations, 0);
  EXPECT_THAT(project->gravity.data, ElementsAre(0.0, 0.0, 1.0));
  EXPECT_EQ(project->NumOfDivisions, 20);
  EXPECT_EQ(project->CoplanarityAngle, 1e-07);
  EXPECT_EQ(project->DoSmoothing, 0);
  EXPECT_EQ(project->smoothingAngle, -1.0);
  EXPECT_EQ(project->materials.Highest(), 0);
  EXPECT_EQ(project->loads.Highest(), 0);
}

// --- keywords and values ----------------------------------------------------------------------

TEST(Keywords, ValueIsGluedOrFollows) {
  for (const char* text : {"NumOfDivisions=10", "NumOfDivisions: 10", "NumOfDivisions 10",
                           "NumOfDivisions =10", "numofdivisions:=:10", "NUMOFDIVISIONS10"}) {
    EXPECT_EQ(ReadKeywords(text)->NumOfDivisions, 10) << text;
  }
}

TEST(Keywords, ThoseOfTheProblemSectionMatchByTheirBeginning) {
  const auto project = ReadKeywords(
      kSystems +
      "UNITS_MESH=mm units_mat_and_loadN-mm Units_Res:kN-m convertto6nodesx MAINSTRESSES=0\n"
      "numofdivisions:7 dosmoothing=0.5 coplanarityangle0.25 solver=double gravitydirection:0 3 4");
  EXPECT_EQ(project->units.meshLength, 0.001);
  EXPECT_EQ(project->units.materialLength, 0.001);
  EXPECT_EQ(project->units.resultForce, 1000.0);
  EXPECT_EQ(project->ConvertTo6Nodes, 1);
  EXPECT_EQ(project->stressOption, MainStresses);
  EXPECT_EQ(project->NumOfDivisions, 7);
  EXPECT_EQ(project->smoothingAngle, 0.5);
  EXPECT_EQ(project->CoplanarityAngle, 0.25);
  EXPECT_EQ(project->solverChoice, SolveDouble);
  EXPECT_THAT(project->gravity.data, ElementsAre(0.0, 0.6, 0.8));
  EXPECT_EQ(ReadKeywords("MainAndLocalStresses:1")->stressOption, MainAndLocalStresses);
}

TEST(Keywords, SectionsAreFoundInAnyCase) {
  const auto project = Read(
      kHeader + std::string("Units_Names\nSI N m Pa 1 1\nEND\n") +
      "MESH dimension 2 elemtype l nnode 2 coordinates\n1 0 0\n2 1 0\nend\nelements\n1 1 2 1\nend\n"
      "Materials\n1 E=2\nEnd\nCONSTRAINTS\n1 111 0 0 0\nEND\nNodal_Point_Loads\n2 0 1 0\nEND\n"
      "Rotules\n2\nEND\nGlobal_Pressure_Loads\n1 0 1\nEND\nLOCAL_PRESSURE_LOADS\n1 0 2\nEND\n"
      "Global_Projected_Pressure_Loads\n1 0 3\nEND\nFace_Loads\n1 0 4\nEND\n");
  EXPECT_EQ(project->units.table.size(), 1U);
  EXPECT_EQ(project->materials.Get(1)->E1, 2.0);
  EXPECT_NE(project->meshes[0]->nodes->Get(1)->constraint, nullptr);
  EXPECT_NE(project->meshes[0]->nodes->Get(2)->load, nullptr);
  EXPECT_TRUE(project->hasHinges);
  const LoadKind kinds[] = {GlobalPressure, LocalPressure, GlobalProjected, FaceLoad};
  const PreassureLT* load = project->loads.Get(1);
  for (const LoadKind kind : kinds) {
    ASSERT_NE(load, nullptr);
    EXPECT_EQ(load->kind, kind);
    load = load->next.get();
  }
}

TEST(Keywords, OnlyOneFurtherWordIsReadForAValue) {
  EXPECT_FATAL(ReadKeywords("NumOfDivisions = 10"), "error: Number of divisions must be positive");
}

TEST(Keywords, RepeatedKeywordOverwrites) {
  EXPECT_EQ(ReadKeywords("NumOfDivisions 10\nNumOfDivisions 11")->NumOfDivisions, 11);
}

TEST(Keywords, CommentRunsToTheEndOfItsLine) {
  EXPECT_EQ(
      ReadKeywords("#NumOfDivisions 9\n# loads\n#\nNumOfDivisions 10 # loads\n")->NumOfDivisions,
      10);
  EXPECT_EQ(ReadKeywords("#" + std::string(5000, 'c') + " loads\n")->NumOfDivisions, 20);
}

TEST(Keywords, HashInsideAWordIsPartOfIt) {
  EXPECT_FATAL(ReadKeywords("loads#1 x"), "Unknown key name=loads#1\n");
}

TEST(Keywords, RefusesAnUnknownOne) {
  EXPECT_FATAL(ReadKeywords("loads"), "Unknown key name=loads\n");
  EXPECT_FATAL(ReadKeywords("Loads=1"), "Unknown key name=Loads=1\n");
}

TEST(Keywords, SectionsAreWholeWords) {
  for (const char* word :
       {"mesh:", "meshes", "units_names:", "materials:", "constraints:", "nodal_point_loads:",
        "rotules:", "global_pressure_loads:", "global_projected_pressure_loads:",
        "local_pressure_loads:", "face_loads:", "face_load", "type", "problem", "end", "="}) {
    EXPECT_FATAL(ReadKeywords(word), "Unknown key name=" + std::string(word) + "\n");
  }
}

TEST(Keywords, CarriageReturnsAndTabsAreBlanks) {
  EXPECT_EQ(Read("problem\r\ntype\t3d\r\nNumOfDivisions\t7\r\n\r\n" + kMesh)->NumOfDivisions, 7);
}

TEST(NumOfDivisions, MustBePositive) {
  for (const char* value : {"0", "-1", "x", "-99999999999999999999"}) {
    EXPECT_FATAL(ReadKeywords("NumOfDivisions " + std::string(value)),
                 "error: Number of divisions must be positive");
  }
}

TEST(NumOfDivisions, MayBeOne) {
  EXPECT_EQ(ReadKeywords("NumOfDivisions 1")->NumOfDivisions, 1);
}

TEST(NumOfDivisions, TakesTheLeadingIntegerAndSaturates) {
  EXPECT_EQ(ReadKeywords("NumOfDivisions 7.9")->NumOfDivisions, 7);
  EXPECT_EQ(ReadKeywords("NumOfDivisions 4294967297")->NumOfDivisions, 2147483647);
}

TEST(StressOption, LastKeywordCounts) {
  EXPECT_EQ(ReadKeywords("MainStresses")->stressOption, MainStresses);
  EXPECT_EQ(ReadKeywords("mainandlocalstresses")->stressOption, MainAndLocalStresses);
  EXPECT_EQ(ReadKeywords("MainAndLocalStresses MainStresses")->stressOption, MainStresses);
}

TEST(ConvertTo6Nodes, RestOfTheWordIsIgnored) {
  EXPECT_EQ(ReadKeywords("ConvertTo6Nodes")->ConvertTo6Nodes, 1);
  EXPECT_EQ(ReadKeywords("ConvertTo6Nodes=0")->ConvertTo6Nodes, 1);
  EXPECT_FATAL(ReadKeywords("ConvertTo6Nodes = 1"), "Unknown key name==\n");
}

TEST(DoSmoothing, TakesAnAngleUpToPi) {
  const auto project = ReadKeywords("DoSmoothing 3.141592653589793");
  EXPECT_EQ(project->DoSmoothing, 1);
  EXPECT_EQ(project->smoothingAngle, 3.141592653589793);
  EXPECT_EQ(ReadKeywords("DoSmoothing=1e-15")->smoothingAngle, 1e-15);
}

TEST(DoSmoothing, RefusesOtherAnglesWithTheFlagSet) {
  for (const char* value : {"0", "4", "-1", "9e-16", "3.1415926535897936", "nan", "inf", "x"}) {
    Project project(100);
    TextInput input(kHeader + ("DoSmoothing " + std::string(value)));
    EXPECT_FATAL(ReadProject(project, input),
                 "error: DoSmoothing must have angle >0 and <PI rad\n");
    EXPECT_EQ(project.DoSmoothing, 1);
  }
}

TEST(CoplanarityAngle, TakesAnAngleUpToPi) {
  EXPECT_EQ(ReadKeywords("CoplanarityAngle: 3.141592653589793")->CoplanarityAngle,
            3.141592653589793);
  for (const char* value : {"0", "4", "-1e-7", "nan", ""}) {
    EXPECT_FATAL(Read(kHeader + ("CoplanarityAngle " + std::string(value))),
                 "error: CoplanarityAngle must have angle >0 and <PI rad\n");
  }
}

TEST(GravityDirection, IsMadeAUnitVector) {
  EXPECT_THAT(ReadKeywords("GravityDirection 0 -2 0")->gravity.data, ElementsAre(0.0, -1.0, 0.0));
  EXPECT_THAT(ReadKeywords("GravityDirection=3 0 4")->gravity.data, ElementsAre(0.6, 0.0, 0.8));
  EXPECT_THAT(ReadKeywords("GravityDirection 0 1e-15 0")->gravity.data, ElementsAre(0.0, 1.0, 0.0));
}

TEST(GravityDirection, RefusesAVectorWithoutDirection) {
  for (const char* value : {"0 0 0", "1e-16 0 0", "= 0 0", "nan 0 0", "inf 0 0", "0 1e999 0"}) {
    EXPECT_FATAL(ReadKeywords("GravityDirection " + std::string(value)),
                 "error: GravityDirection must be a vector no null");
  }
  EXPECT_FATAL(Read(kHeader + std::string("GravityDirection 0")),
               "error: GravityDirection must be a vector no null");
}

// --- the solver -------------------------------------------------------------------------------

constexpr char kSolverText[] =
    "error: type of solver must be: Automatic, SkyLine, Double or Sparse\n";
constexpr char kSparseText[] =
    "Solver Sparse needs three aditional arguments:\n"
    "    Solver: Sparse tolerance1 tolerance2 MaxIterations\n"
    "with 0.0<tolerance<10 and MaxIterations>10 and\n"
    " tolerance1<=tolerance2<10\n";

TEST(SolverKeyword, NamesAreComparedAsPrefixesOfTheValue) {
  EXPECT_EQ(ReadKeywords("Solver Automatic")->solverChoice, Automatic);
  EXPECT_EQ(ReadKeywords("Solver: SKYLINE")->solverChoice, SolveSkyLine);
  EXPECT_EQ(ReadKeywords("Solver Skylinefast")->solverChoice, SolveSkyLine);
  EXPECT_EQ(ReadKeywords("SolverDouble")->solverChoice, SolveDouble);
  EXPECT_EQ(ReadKeywords("solver=double")->solverChoice, SolveDouble);
}

TEST(SolverKeyword, RefusesOtherNames) {
  for (const char* text : {"Solver Sky", "Solver = SkyLine", "Solver x", "Solver"}) {
    EXPECT_FATAL(Read(kHeader + std::string(text)), kSolverText);
  }
}

TEST(SolverKeyword, SparseTakesThreeNumbers) {
  const auto project = ReadKeywords("Solver:Sparse 1e-6 1e-9 10");
  EXPECT_EQ(project->solverChoice, SolveSparse);
  EXPECT_EQ(project->tolerance1, 1e-6);
  EXPECT_EQ(project->tolerance2, 1e-9);
  EXPECT_EQ(project->MaxIterations, 10);
}

TEST(SolverKeyword, SparseTakesATolerance10) {
  EXPECT_EQ(ReadKeywords("Solver Sparse 10 10 10")->tolerance2, 10.0);
}

TEST(SolverKeyword, SparseIterationsSaturate) {
  EXPECT_EQ(ReadKeywords("Solver Sparse 1 1 99999999999999999999")->MaxIterations, 2147483647);
}

TEST(SolverKeyword, RefusesSparseNumbersOutOfRange) {
  for (const char* numbers :
       {"1e-6 1e-6 9", "0 1 100", "1 0 100", "-1 1 100", "1 11 100", "10.000001 1 100", "nan 1 100",
        "1 nan 100", "1 1 x", "1 1", "1", "", "1 1 -99999999999999999999"}) {
    EXPECT_FATAL(Read(kHeader + ("Solver Sparse " + std::string(numbers))), kSparseText);
  }
}

TEST(SolverKeyword, LaterChoiceKeepsTheTolerancesOfAnEarlierSparse) {
  const auto project = ReadKeywords("Solver Sparse 1e-6 1e-5 20 Solver Double");
  EXPECT_EQ(project->solverChoice, SolveDouble);
  EXPECT_EQ(project->tolerance1, 1e-6);
  EXPECT_EQ(project->MaxIterations, 20);
}

}  // namespace

}  // namespace kestol
