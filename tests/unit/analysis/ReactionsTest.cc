#include "analysis/Reactions.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/FrameDeck.h"
#include "tests/support/RunDeck.h"
#include "tests/support/ScriptedSolver.h"

namespace kestol {

namespace {

/// A model in front of a solver whose row r times anything is 100 r.
std::unique_ptr<Project> Scripted(const std::string& deck) {
  auto project = ReadDeck(deck);
  const int n = project->numNodes * project->dofsPerNode;
  project->solver = std::make_unique<ScriptedSolver>(n);
  project->global.Resize(n, 0.0);
  return project;
}

FrameDeck Bar() {
  FrameDeck deck(2);
  deck.Node(1, 0, 0).Node(2, 1, 0).Node(3, 2, 0).Beam(1, 1, 2).Beam(2, 2, 3);
  return deck.Material(1, "E=1 A=1 Iz=1");
}

TEST(Reactions, StandAtPrescribedDegreesAndSpringsOnly) {
  const auto project = Scripted(Bar().Support(1, "101 0 0 0").Support(3, "023 0 5 5").Text());
  ComputeReactions(*project);
  EXPECT_EQ(Reaction(*project, 1, 1), 100.0);
  EXPECT_EQ(Reaction(*project, 1, 2), 0.0);
  EXPECT_EQ(Reaction(*project, 1, 3), 300.0);
  EXPECT_EQ(Reaction(*project, 3, 1), 0.0);
  EXPECT_EQ(Reaction(*project, 3, 2), 800.0);
  EXPECT_EQ(Reaction(*project, 3, 3), 0.0);
}

TEST(Reactions, AssembleOnceMoreInGlobalAxesAndDropTheSolver) {
  // The diary outlives the solver only if it is read before: count what a global assembly sees.
  const auto project = Scripted(Bar().Support(1, "111 0 0 0 Euler3=1.5707963267948966").Text());
  auto& solver = static_cast<ScriptedSolver&>(*project->solver);
  solver.SetZero();
  AddBeamStiffness(*project, *project->meshes[0], BlockAxes::Global);
  EXPECT_NEAR(solver.blocks[0](1, 1), 1.0, 1e-12);   // EA, not turned away
  EXPECT_NEAR(solver.blocks[0](2, 2), 12.0, 1e-12);  // 12 EI
  ComputeReactions(*project);
  EXPECT_EQ(project->solver, nullptr);
}

TEST(Reactions, OfASpringIsMinusStiffnessTimesDisplacement) {
  const auto project = RunDeck(Bar().Clamp(1).Support(3, "020 0 0.25 0").Load(2, {0, 1, 0}).Text());
  EXPECT_NEAR(Reaction(*project, 3, 2), -0.25 * Displacement(*project, 3, 2), 1e-12);
  EXPECT_GT(Displacement(*project, 3, 2), 0.1);
}

TEST(Reactions, DoNotSubtractLoadsOnTheSupport) {
  const auto project = RunDeck(Bar()
                                   .Clamp(1)
                                   .Clamp(3)
                                   .Clamp(2)
                                   .LineLoad("local_pressure_loads", 1, "0 12")
                                   .Load(2, {7, 0, 0})
                                   .Text());
  for (const int node : {1, 2, 3})
    for (int d = 1; d <= 3; ++d) EXPECT_NEAR(Reaction(*project, node, d), 0.0, 1e-14);
}

TEST(Reactions, OfAnInclinedRollerAreGlobalComponentsUnderLocalCodes) {
  // Code 010 in axes turned by 30 degrees: place 2 holds the global y component of K u.
  FrameDeck deck(2);
  deck.Node(1, 0, 0).Node(2, 6, 0).Beam(1, 1, 2).Material(1, "E=2e11 A=1e-2 Iz=1e-4");
  deck.Support(1, "110 0 0 0").Support(2, "010 0 0 0 Euler3=0.5235987755982988");
  const auto project = RunDeck(deck.Load(2, {1000, 0, 0}).Text());
  // The roller pushes along (-sin 30, cos 30) with no vertical load around: both ends carry none.
  EXPECT_EQ(Reaction(*project, 2, 1), 0.0);
  EXPECT_NEAR(Reaction(*project, 2, 2), SupportForces(*project, 2)[1], 1e-9);
  EXPECT_NEAR(Reaction(*project, 1, 1), -1000.0 - SupportForces(*project, 2)[0], 1e-6);
}

// --- mid-side nodes of converted triangles ----------------------------------------------------

/// One 6-noded triangle with corners 1 2 3 and mid-sides 4 5 6.
std::string SixNoded(const std::string& constraints) {
  return "problem s\ntype 3d\nConvertTo6Nodes\nmesh dimension 3 elemtype Triangle nnode 6\n"
         "coordinates\n1 0 0 0\n2 2 0 0\n3 0 2 0\n4 1 0 0\n5 1 1 0\n6 0 1 0\nend\n"
         "elements\n1 1 2 3 4 5 6 1\nend\nmaterials\n1 E=1000 nu=.3 G=400 t=.1\nend\n"
         "constraints\n" +
         constraints + "end\n";
}

TEST(Reactions, OfMidSideNodesGoToTheirCorners) {
  const auto project =
      Scripted(SixNoded("1 111111 0 0 0 0 0 0\n2 111111 0 0 0 0 0 0\n"
                        "4 011111 0 0 0 0 0 0\n"));
  ComputeReactions(*project);
  // Rows of node 4 begin at 19.
  EXPECT_EQ(Reaction(*project, 4, 2), 0.0);
  EXPECT_EQ(Reaction(*project, 1, 1), 100.0);
  EXPECT_EQ(Reaction(*project, 1, 2), 200.0 + 1000.0);
  EXPECT_EQ(Reaction(*project, 2, 2), 800.0 + 1000.0);
}

TEST(Reactions, HalvesReachACornerWhoseOwnDegreeIsFree) {
  const auto project =
      Scripted(SixNoded("1 100000 0 0 0 0 0 0\n2 111111 0 0 0 0 0 0\n"
                        "4 010000 0 0 0 0 0 0\n"));
  ComputeReactions(*project);
  EXPECT_EQ(Reaction(*project, 1, 2), 1000.0);
}

TEST(Reactions, OfAMidSideStayWhenACornerHasNoRecord) {
  const auto project = Scripted(SixNoded("1 111111 0 0 0 0 0 0\n4 010000 0 0 0 0 0 0\n"));
  ComputeReactions(*project);
  EXPECT_EQ(Reaction(*project, 4, 2), 2000.0);
  EXPECT_EQ(Reaction(*project, 1, 2), 200.0);
}

TEST(Reactions, OfMidSidesMoveOnlyInConvertedModels) {
  const auto project =
      Scripted(SixNoded("1 111111 0 0 0 0 0 0\n2 111111 0 0 0 0 0 0\n"
                        "4 010000 0 0 0 0 0 0\n"));
  project->ConvertTo6Nodes = 0;
  ComputeReactions(*project);
  EXPECT_EQ(Reaction(*project, 4, 2), 2000.0);
}

}  // namespace

}  // namespace kestol
