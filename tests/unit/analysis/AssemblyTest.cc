#include <cmath>
#include <sstream>

#include "analysis/Assembly.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/FrameDeck.h"
#include "tests/support/RunDeck.h"
#include "tests/support/ScriptedSolver.h"

namespace kestol {

namespace {

using testing::ElementsAre;
using Lines = std::vector<std::string>;

/// A clamped bar of two elements, the second one running backwards.
FrameDeck Bar() {
  FrameDeck deck(2);
  deck.Node(1, 0, 0).Node(2, 1, 0).Node(3, 2, 0).Beam(1, 1, 2).Beam(2, 3, 2);
  return deck.Material(1, "E=1 A=1 Iz=1").Clamp(1);
}

/// The model of a deck in front of a scripted solver.
struct Stage {
  explicit Stage(const FrameDeck& deck, int result = 0)
      : project(ReadDeck(deck.Text())), solver(project->numNodes * project->dofsPerNode, result) {}
  void Run() { project->results = AssembleAndSolve(*project, solver, nullptr); }

  std::unique_ptr<SolvedProject> project;
  ScriptedSolver solver;
};

TEST(Assembly, CouplesEveryPairOfNodesOfEveryElementBeforeItAllocates) {
  Stage stage(Bar());
  stage.Run();
  EXPECT_THAT(stage.solver.Diary("pair"), ElementsAre("1 2 3 ", "3 2 3 "));
  EXPECT_EQ(stage.solver.diary[2], "allocate 3 ");
}

TEST(Assembly, HandsBlocksOverInUpperOrder) {
  Stage stage(Bar());
  stage.Run();
  EXPECT_THAT(stage.solver.Diary("block"),
              ElementsAre("1 1 ", "1 4 ", "4 4 ", "7 7 ", "4 7 ", "4 4 "));
}

TEST(Assembly, TransposesTheBlockOfABeamThatRunsBackwards) {
  Stage forwards(
      FrameDeck(2).Node(1, 0, 0).Node(2, 1, 1).Beam(1, 1, 2).Material(1, "E=1 A=1 Iz=1").Clamp(1));
  Stage backwards(
      FrameDeck(2).Node(1, 0, 0).Node(2, 1, 1).Beam(1, 2, 1).Material(1, "E=1 A=1 Iz=1").Clamp(1));
  forwards.Run();
  backwards.Run();
  const Matriu& a = forwards.solver.blocks[1];
  const Matriu& b = backwards.solver.blocks[1];
  for (int i = 1; i <= 3; ++i)
    for (int j = 1; j <= 3; ++j) EXPECT_NEAR(a(i, j), b(i, j), 1e-15) << i << j;
  EXPECT_GT(std::abs(a(1, 3) - a(3, 1)), 1.0);  // so the order does matter
}

TEST(Assembly, WritesItsProgressInOrder) {
  Stage stage(Bar());
  std::ostringstream info;
  AssembleAndSolve(*stage.project, stage.solver, &info);
  EXPECT_EQ(info.str(),
            "<report>\n"
            "Just before filling global stiffness matrix\n"
            "Stiffness matrix filled\n"
            "Load vector constructed\n"
            "Beginning to apply constraints\n"
            "Just before Solver\n"
            "<solve>\n"
            "Solver finished\n");
}

TEST(Assembly, AddsNodalLoadsAndElementLoads) {
  Stage stage(Bar().Load(2, {1, 2, 3}).LineLoad("local_pressure_loads", 1, "0 12"));
  stage.Run();
  const ReaVecT& f = stage.solver.loads;
  const double wanted[] = {0, 6, 1, 1, 8, 2, 0, 0, 0};
  for (int i = 0; i < 9; ++i) EXPECT_NEAR(f(i + 1), wanted[i], 1e-14) << i;
}

TEST(Assembly, KeepsTheLoadsInGlobalAxesBesideTheDisplacements) {
  Stage stage(Bar()
                  .Support(3, "010 0 0 0 Euler3=1.5707963267948966")
                  .Load(3, {5, 0, 2})
                  .LineLoad("local_pressure_loads", 1, "0 12"));
  stage.solver.solution = ReaVecT(9);
  stage.solver.solution(7) = 4.0;
  stage.Run();
  const double wanted[] = {0, 6, 1, 0, 6, -1, 5, 0, 2};  // the clamp's share is still there
  for (int i = 0; i < 9; ++i) {
    EXPECT_NEAR(stage.project->results.loads(i + 1), wanted[i], 1e-14) << i;
    EXPECT_NEAR(LoadsOfDeck(*stage.project)(i + 1), wanted[i], 1e-14) << i;
  }
}

TEST(Assembly, PrescribesAndPutsSpringsOnTheDiagonalInNodeOrder) {
  Stage stage(Bar().Support(3, "120 0.5 7 0").Support(2, "003 0 0 9"));
  stage.Run();
  EXPECT_THAT(stage.solver.Diary("prescribe"),
              ElementsAre("1 0.000000", "2 0.000000", "3 0.000000", "7 0.500000"));
  EXPECT_THAT(stage.solver.Diary("entry"), ElementsAre("8 8 "));
  EXPECT_EQ(stage.solver.entry, 7.0);
}

TEST(Assembly, TurnsLoadsIntoInclinedSupportsAndDisplacementsBack) {
  Stage stage(Bar().Support(3, "010 0 0 0 Euler3=1.5707963267948966").Load(3, {5, 0, 2}));
  ReaVecT& solution = stage.solver.solution;
  solution = ReaVecT(9);
  solution(7) = 4.0;  // local x is global y
  solution(9) = 1.0;
  stage.Run();
  const ReaVecT& f = stage.solver.loads;
  EXPECT_NEAR(f(7), 0.0, 1e-15);
  EXPECT_NEAR(f(8), -5.0, 1e-15);
  EXPECT_NEAR(f(9), 2.0, 1e-15);
  EXPECT_NEAR(stage.project->results.displacements(7), 0.0, 1e-15);
  EXPECT_NEAR(stage.project->results.displacements(8), 4.0, 1e-15);
  EXPECT_NEAR(stage.project->results.displacements(9), 1.0, 1e-15);
}

TEST(Assembly, TurnsEveryBlockOfAnInclinedSupportOnce) {
  // A bar along x whose far end has its axes turned by 90 degrees: stiffness EA along local y.
  FrameDeck deck(2);
  deck.Node(1, 0, 0).Node(2, 1, 0).Beam(1, 1, 2).Material(1, "E=1 A=100 Iz=1").Clamp(1);
  Stage stage(deck.Support(2, "010 0 0 0 Euler3=1.5707963267948966"));
  stage.Run();
  const Matriu& ii = stage.solver.blocks[0];
  const Matriu& ij = stage.solver.blocks[1];
  const Matriu& jj = stage.solver.blocks[2];
  EXPECT_NEAR(ii(1, 1), 100.0, 1e-12);
  EXPECT_NEAR(ij(1, 1), 0.0, 1e-12);
  EXPECT_NEAR(ij(1, 2), 100.0, 1e-12);  // -EA (x, x) becomes (x, -y)
  EXPECT_NEAR(ij(2, 1), -12.0, 1e-12);
  EXPECT_NEAR(jj(1, 1), 12.0, 1e-12);
  EXPECT_NEAR(jj(2, 2), 100.0, 1e-12);
}

TEST(Assembly, InclinedSupportsOfAPlaneFrameMustKeepZ) {
  Stage stage(Bar().Support(3, "010 0 0 0 Euler1=0.1"));
  EXPECT_FATAL(stage.Run(), "error: Local z axe must be (0,0,1) for 2D problems.Node: 3\n");
}

TEST(Assembly, ReportsABreakdown) {
  Stage stage(Bar(), -1);
  EXPECT_FATAL(stage.Run(), "error when solving system. Probably conditions are not correct\n");
}

TEST(Assembly, ReportsASolverThatDidNotConverge) {
  Stage stage(Bar(), -1234);
  EXPECT_FATAL(stage.Run(),
               "error when solving system. Stopped after 1234 iterations.Probably conditions are "
               "not correct\n");
}

TEST(Assembly, ReportsAZeroPivotAsIfNodesHadSixDegrees) {
  Stage stage(Bar(), 8);
  EXPECT_FATAL(stage.Run(),
               "error when solving system(8). One diagonal=0 in node=2. Degree of freedom 2 from "
               "6\nCould not solve system. Probably conditions are not correct\n");
}

TEST(Assembly, NamesThePivotsNodeAsTheDeckDoes) {
  Stage stage(Bar(), 12);
  stage.project->meshes[0]->renumberMap =
      std::make_shared<std::vector<int>>(std::vector<int>{3, 1, 2});
  EXPECT_FATAL(stage.Run(),
               "error when solving system(12). One diagonal=0 in node=1. Degree of freedom 6 from "
               "6\nCould not solve system. Probably conditions are not correct\n");
}

TEST(Assembly, DistrustsASolutionThatIsNotFinite) {
  for (const double bad : {std::nan(""), HUGE_VAL}) {
    Stage stage(Bar());
    stage.solver.solution = ReaVecT(9);
    stage.solver.solution(5) = bad;
    EXPECT_FATAL(stage.Run(), "error when solving system. Probably conditions are not correct\n");
  }
}

TEST(Assembly, DistrustsASolutionThatLeavesARigidMotionFree) {
  FrameDeck deck(2);
  deck.Node(1, 0, 0).Node(2, 1, 0).Beam(1, 1, 2).Material(1, "E=1 A=1 Iz=1");
  Stage stage(deck.Support(1, "110 0 0 0"));
  EXPECT_FATAL(stage.Run(), "error when solving system. Probably conditions are not correct\n");
}

TEST(Assembly, PutsTheSupportWarningsBeforeTheError) {
  FrameDeck deck(3);
  deck.Node(1, 0, 0, 0).Node(2, 1, 0, 0).Beam(1, 1, 2).Material(1, "E=1 A=1 Iz=1 Iy=1 G=1 J=1");
  EXPECT_FATAL(Stage(deck, -1).Run(),
               "There are no prescribed nodes in the model!!!\n"
               "error when solving system. Probably conditions are not correct\n");
}

TEST(Assembly, RefusesElementsThatAreOnlyRead) {
  const std::string deck =
      "problem a\ntype 3d\nmesh dimension 3 elemtype quad nnode 4\ncoordinates\n"
      "1 0 0 0\n2 1 0 0\n3 1 1 0\n4 0 1 0\nend\nelements\n1 1 2 3 4\nend\n";
  const auto project = ReadDeck(deck);
  ScriptedSolver solver(24);
  std::ostringstream info;
  EXPECT_FATAL(AssembleAndSolve(*project, solver, &info), "error: elemtype unknown\n");
  EXPECT_EQ(info.str(), "<report>\nJust before filling global stiffness matrix\n");
}

TEST(Assembly, RefusesABeamWithoutMaterial) {
  FrameDeck deck(2);
  deck.Node(1, 0, 0).Node(2, 0, 0).Beam(17, 1, 2, 5).Clamp(1);
  EXPECT_FATAL(Stage(deck).Run(), "error: Material in element: 17 doesn't exist\n");
}

TEST(Assembly, RefusesABeamWithoutLengthBeforeItsValues) {
  FrameDeck deck(2);
  deck.Node(1, 0, 0).Node(2, 0, 0).Beam(17, 1, 2).Material(1, "A=1").Clamp(1);
  EXPECT_FATAL(Stage(deck).Run(), "error: element: 17 has length 0\n");
}

TEST(Assembly, RefusesAMissingSectionValueEvenWithTwoHinges) {
  FrameDeck deck(3);
  deck.Node(1, 0, 0, 0).Node(2, 1, 0, 0).Beam(17, 1, 2).Material(1, "E=1 A=1 Iz=1 Iy=1 G=1");
  Stage stage(deck.Clamp(1));
  stage.project->endCodes.assign(17, BothHinged);
  EXPECT_FATAL(stage.Run(), "error: section parameter J is 0 for element 17\n");
}

TEST(Assembly, RefusesAShellLoadOnAPlaneBeam) {
  Stage stage(Bar().LineLoad("face_loads", 2, "0 -1"));
  EXPECT_FATAL(stage.Run(), "error: applying a shell load to a beam element. ElemNum=2\n");
}

// --- own weight -------------------------------------------------------------------------------

TEST(Assembly, WeightActsAlongTheGravityDirection) {
  FrameDeck deck(3);
  deck.Node(1, 0, 0, 0).Node(2, 2, 0, 0).Beam(1, 1, 2);
  deck.Material(1, "E=1 A=3 Iz=1 Iy=1 G=1 J=1 Weight=5").Clamp(1);
  Stage upwards(deck);
  upwards.Run();
  EXPECT_DOUBLE_EQ(upwards.solver.loads(3), 15.0);  // the default direction is +z
  Stage sideways(deck.Key("GravityDirection 0 -2 0"));
  sideways.Run();
  EXPECT_DOUBLE_EQ(sideways.solver.loads(2), -15.0);
  EXPECT_EQ(sideways.solver.loads(3), 0.0);
}

TEST(Assembly, APlaneWeightNeedsADirectionInThePlane) {
  FrameDeck deck = Bar().Material(2, "E=1 A=1 Iz=1 Weight=1").Beam(3, 1, 3, 2);
  EXPECT_FATAL(Stage(deck).Run(), "error: for 2D problems GravityDirection_Z must be 0.0\n");
  Stage negative(deck.Key("GravityDirection 0 0 -1"));
  negative.Run();  // deliberate: a negative z passes and does nothing
  for (const double f : negative.solver.loads) EXPECT_EQ(f, 0.0);
}

TEST(Assembly, AModelWithoutWeightNeedsNoGravityDirection) {
  Stage stage(Bar());
  stage.Run();
  for (const double f : stage.solver.loads) EXPECT_EQ(f, 0.0);
}

}  // namespace

}  // namespace kestol
