#include "analysis/Reactions.h"
#include "analysis/Strengths.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/FrameDeck.h"
#include "tests/support/RunDeck.h"
#include "tests/support/ScriptedSolver.h"

namespace kestol {

namespace {

int EquationsOf(const Project& project) {
  return project.numNodes * project.dofsPerNode;
}

/// Fills the reactions with a solver whose row r times anything is 100 r.
void ComputeReactions(SolvedProject& project) {
  ScriptedSolver K(EquationsOf(project));
  project.results.reactions = ReactionsOf(project, K, ReaVecT(EquationsOf(project)));
}

/// A solver that leaves its diary behind when it is let go.
class Testator : public ScriptedSolver {
public:
  Testator(int degrees, std::unique_ptr<ScriptedSolver>& heir)
      : ScriptedSolver(degrees), heir_(heir) {}
  ~Testator() override { heir_ = std::make_unique<ScriptedSolver>(*this); }
  void SetZero() override {
    ScriptedSolver::SetZero();
    blocks.clear();
  }

private:
  std::unique_ptr<ScriptedSolver>& heir_;
};

FrameDeck Bar() {
  FrameDeck deck(2);
  deck.Node(1, 0, 0).Node(2, 1, 0).Node(3, 2, 0).Beam(1, 1, 2).Beam(2, 2, 3);
  return deck.Material(1, "E=1 A=1 Iz=1");
}

TEST(Reactions, StandAtPrescribedDegreesAndSpringsOnly) {
  const auto project = ReadDeck(Bar().Support(1, "101 0 0 0").Support(3, "023 0 5 5").Text());
  ComputeReactions(*project);
  EXPECT_EQ(PrintedReaction(*project, 1, 1), 100.0);
  EXPECT_EQ(PrintedReaction(*project, 1, 2), 0.0);
  EXPECT_EQ(PrintedReaction(*project, 1, 3), 300.0);
  EXPECT_EQ(PrintedReaction(*project, 3, 1), 0.0);
  EXPECT_EQ(PrintedReaction(*project, 3, 2), 800.0);
  EXPECT_EQ(PrintedReaction(*project, 3, 3), 0.0);
}

TEST(Reactions, AssembleOnceMoreInGlobalAxesAndDropTheSolver) {
  const auto project = ReadDeck(Bar().Support(1, "111 0 0 0 Euler3=1.5707963267948966").Text());
  const int n = EquationsOf(*project);
  project->results.displacements = ReaVecT(n);
  std::unique_ptr<ScriptedSolver> heir;
  auto K = std::make_unique<Testator>(n, heir);
  K->AddBlock(1, 1, Matriu(3, 3));  // of the solution, to be forgotten
  ComputeStrengths(*project, std::move(K), project->results, nullptr);
  ASSERT_NE(heir, nullptr);
  ASSERT_EQ(heir->blocks.size(), 6u);               // three of each beam
  EXPECT_NEAR(heir->blocks[0](1, 1), 1.0, 1e-12);   // EA, not turned away
  EXPECT_NEAR(heir->blocks[0](2, 2), 12.0, 1e-12);  // 12 EI
  EXPECT_EQ(PrintedReaction(*project, 1, 2), 200.0);
}

TEST(Reactions, StandByRisingIndexForSupportedNodesOnly) {
  const auto project = ReadDeck(Bar().Clamp(1).Support(3, "111 0 0 0").Text());
  project->meshes[0]->nodes->Get(1)->number = 3;
  project->meshes[0]->nodes->Get(3)->number = 1;
  ComputeReactions(*project);
  const auto& reactions = project->results.reactions;
  ASSERT_EQ(reactions.size(), 2);
  EXPECT_EQ(reactions[0].nodeIndex, 1);
  EXPECT_EQ(reactions[1].nodeIndex, 3);
  EXPECT_EQ(PrintedReaction(*project, 1, 1), 700.0);
  EXPECT_EQ(PrintedReaction(*project, 3, 1), 100.0);
}

TEST(Reactions, OfASpringIsMinusStiffnessTimesDisplacement) {
  const auto project = RunDeck(Bar().Clamp(1).Support(3, "020 0 0.25 0").Load(2, {0, 1, 0}).Text());
  EXPECT_NEAR(PrintedReaction(*project, 3, 2), -0.25 * Displacement(*project, 3, 2), 1e-12);
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
    for (int d = 1; d <= 3; ++d) EXPECT_NEAR(PrintedReaction(*project, node, d), 0.0, 1e-14);
}

TEST(Reactions, OfAnInclinedRollerAreGlobalComponentsUnderLocalCodes) {
  // Code 010 in axes turned by 30 degrees: place 2 holds the global y component of K u.
  FrameDeck deck(2);
  deck.Node(1, 0, 0).Node(2, 6, 0).Beam(1, 1, 2).Material(1, "E=2e11 A=1e-2 Iz=1e-4");
  deck.Support(1, "110 0 0 0").Support(2, "010 0 0 0 Euler3=0.5235987755982988");
  const auto project = RunDeck(deck.Load(2, {1000, 0, 0}).Text());
  // The roller pushes along (-sin 30, cos 30) with no vertical load around: both ends carry none.
  EXPECT_EQ(PrintedReaction(*project, 2, 1), 0.0);
  EXPECT_NEAR(PrintedReaction(*project, 2, 2), SupportForces(*project, 2)[1], 1e-9);
  EXPECT_NEAR(PrintedReaction(*project, 1, 1), -1000.0 - SupportForces(*project, 2)[0], 1e-6);
}

TEST(Reactions, OfAnInclinedRollerAreShownInFullByASpringOfNoStiffness) {
  FrameDeck deck(2);
  deck.Node(1, 0, 0).Node(2, 6, 0).Beam(1, 1, 2).Material(1, "E=2e11 A=1e-2 Iz=1e-4");
  deck.Support(1, "011 0 0 0").Load(1, {1000, 0, 0});
  FrameDeck shown = deck;
  const auto partly = RunDeck(deck.Support(2, "010 0 0 0 Euler3=0.5235987755982988").Text());
  const auto fully = RunDeck(shown.Support(2, "210 0 0 0 Euler3=0.5235987755982988").Text());
  EXPECT_EQ(PrintedReaction(*partly, 2, 1), 0.0);
  EXPECT_NEAR(PrintedReaction(*fully, 2, 1), -1000.0,
              1e-6);  // the roller pushes with 1000 / sin 30
  for (const auto& project : {partly.get(), fully.get()})
    EXPECT_NEAR(PrintedReaction(*project, 2, 2), 1732.0508, 1e-4);
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
      ReadDeck(SixNoded("1 111111 0 0 0 0 0 0\n2 111111 0 0 0 0 0 0\n"
                        "4 011111 0 0 0 0 0 0\n"));
  ComputeReactions(*project);
  // Rows of node 4 begin at 19.
  EXPECT_EQ(PrintedReaction(*project, 4, 2), 0.0);
  EXPECT_EQ(PrintedReaction(*project, 1, 1), 100.0);
  EXPECT_EQ(PrintedReaction(*project, 1, 2), 200.0 + 1000.0);
  EXPECT_EQ(PrintedReaction(*project, 2, 2), 800.0 + 1000.0);
}

TEST(Reactions, HalvesReachACornerWhoseOwnDegreeIsFree) {
  const auto project =
      ReadDeck(SixNoded("1 100000 0 0 0 0 0 0\n2 111111 0 0 0 0 0 0\n"
                        "4 010000 0 0 0 0 0 0\n"));
  ComputeReactions(*project);
  EXPECT_EQ(PrintedReaction(*project, 1, 2), 1000.0);
}

TEST(Reactions, OfAMidSideStayWhenACornerHasNoRecord) {
  const auto project = ReadDeck(SixNoded("1 111111 0 0 0 0 0 0\n4 010000 0 0 0 0 0 0\n"));
  ComputeReactions(*project);
  EXPECT_EQ(PrintedReaction(*project, 4, 2), 2000.0);
  EXPECT_EQ(PrintedReaction(*project, 1, 2), 200.0);
}

TEST(Reactions, OfMidSidesMoveOnlyInConvertedModels) {
  const auto project =
      ReadDeck(SixNoded("1 111111 0 0 0 0 0 0\n2 111111 0 0 0 0 0 0\n"
                        "4 010000 0 0 0 0 0 0\n"));
  project->ConvertTo6Nodes = 0;
  ComputeReactions(*project);
  EXPECT_EQ(PrintedReaction(*project, 4, 2), 2000.0);
}

TEST(Reactions, OfMidSidesThatWereReadMoveOnlyWhereConversionIsAskedFor) {
  // The same 6-noded model either way: a square pulled along x, its side x = 0 held at two corners
  // and the node 9 between them.
  const auto run = [](const char* keyword) {
    return RunDeck(std::string("problem s\ntype 3d\n") + keyword +
                   "\nmesh dimension 3 elemtype Triangle nnode 6\ncoordinates\n1 0 0 0\n2 1 0 0\n"
                   "3 1 1 0\n4 0 1 0\n5 .5 0 0\n6 1 .5 0\n7 .5 .5 0\n8 .5 1 0\n9 0 .5 0\nend\n"
                   "elements\n1 1 2 3 5 6 7 1\n2 1 3 4 7 8 9 1\nend\n"
                   "materials\n1 E=1000 nu=0 G=500 t=.1\nend\nconstraints\n"
                   "1 111111 0 0 0 0 0 0\n4 101111 0 0 0 0 0 0\n9 101111 0 0 0 0 0 0\nend\n"
                   "face_loads\n1 1 6 0 0\nend\n");
  };
  const auto asRead = run(""), moved = run("ConvertTo6Nodes");
  EXPECT_NEAR(PrintedReaction(*asRead, 9, 1), -4.0, 1e-9);
  for (const int corner : {1, 4}) {
    EXPECT_NEAR(PrintedReaction(*asRead, corner, 1), -1.0, 1e-9);
    EXPECT_NEAR(PrintedReaction(*moved, corner, 1), -3.0, 1e-9);
  }
  EXPECT_EQ(PrintedReaction(*moved, 9, 1), 0.0);
}

}  // namespace

}  // namespace kestol
