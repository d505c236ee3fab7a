// What hinges of frames let through.
#include <gtest/gtest.h>

#include <cstdio>
#include <vector>

#include "tests/support/FrameDeck.h"
#include "tests/support/RunDeck.h"

namespace kestol {

namespace {

TEST(FrameHinges, TransmitNoMomentWhicheverEndTheyAreAt) {
  // Three beams meet at node 4; the first keeps its end, the others are released.
  FrameDeck deck(2);
  deck.Node(1, -2, 0).Node(2, 2, 1).Node(3, 0, -3).Node(4, 0, 0);
  deck.Beam(1, 1, 4).Beam(2, 2, 4).Beam(3, 4, 3).Material(1, "E=1e5 A=0.1 Iz=0.01").Rotule(4);
  deck.Clamp(1).Clamp(2).Clamp(3).Load(4, {10, -20, 5});
  const auto project = RunDeck(deck.Text());
  EXPECT_EQ(EndForces(*project, 2)[5], 0.0);
  EXPECT_EQ(EndForces(*project, 3)[2], 0.0);
  EXPECT_NEAR(EndForces(*project, 1)[5], 5.0, 1e-9);  // takes the whole couple
}

TEST(FrameHinges, LoadedBeamsWithAHingeAtEnd2EqualAFineModelWithALooseEnd) {
  const char* const load = "0 -3";
  FrameDeck hinged(2);
  hinged.Node(1, 0, 0).Node(2, 4, 0).Node(3, 4, 3).Beam(1, 2, 3).Beam(2, 1, 2);
  hinged.Material(1, "E=1e5 A=0.1 Iz=0.01").Rotule(2).Clamp(1).Clamp(3);
  const auto one = RunDeck(hinged.LineLoad("global_pressure_loads", 2, load).Text());
  // The loose end by hand: the beam ends at its own node, held to the other by no rotation. A
  // clamped beam with free rotation at its end, on the column as a spring of EA / L.
  FrameDeck loose(2);
  loose.Node(1, 0, 0).Node(2, 2, 0).Node(3, 4, 0).Beam(1, 1, 2).Beam(2, 2, 3);
  loose.Material(1, "E=1e5 A=0.1 Iz=0.01").Clamp(1);
  const double spring = 1e5 * 0.1 / 3;
  char line[64];
  std::snprintf(line, sizeof line, "020 0 %.17g 0", spring);
  loose.Support(3, line);
  for (const int beam : {1, 2}) loose.LineLoad("global_pressure_loads", beam, load);
  const auto other = RunDeck(loose.Text());
  EXPECT_NEAR(Displacement(*one, 2, 2), Displacement(*other, 3, 2), 1e-12);
  EXPECT_NEAR(EndForces(*one, 2)[2], EndForces(*other, 1)[2], 1e-9);
}

TEST(FrameHinges, UnitLoadsOnBeamsWithAHingeAtEnd1BalanceAsTheyShould) {
  // Deliberate: only for q = 1, since the moment of such a beam does not know q.
  FrameDeck deck(2);
  deck.Node(1, 4, 0).Node(2, 0, 0).Node(3, 4, 3).Beam(1, 1, 3).Beam(2, 1, 2);
  deck.Material(1, "E=1e5 A=0.1 Iz=0.01").Rotule(1).Clamp(2).Clamp(3);
  const auto project = RunDeck(deck.LineLoad("local_pressure_loads", 2, "0 1").Text());
  ASSERT_EQ(project->EndCodeOf(2), HingeAtEnd1);
  const std::vector<double> f = EndForces(*project, 2);
  EXPECT_EQ(f[2], 0.0);
  EXPECT_NEAR(f[1] + f[4], -4.0, 1e-9);
  EXPECT_NEAR(f[5] - f[1] * 4 - 4.0 * 2.0, 0.0, 1e-9);  // moments about end 2
}

TEST(FrameHinges, ALoadedBeamPassesOnAQuarterTooLittleWhereItsFirstNodeIsTheHinge) {
  // A span of 6 with an arm of 2 carries a beam of 6 by a hinge: half of its load at 2 from the
  // support by statics, 3/8 of it with the hinge at end 1.
  const auto momentOverSupport = [](bool hingeAtFirstNode) {
    FrameDeck deck(2);
    deck.Node(1, 0, 0).Node(2, 6, 0).Node(3, 8, 0).Node(4, 14, 0).Beam(1, 1, 2).Beam(2, 2, 3);
    deck.Beam(3, hingeAtFirstNode ? 3 : 4, hingeAtFirstNode ? 4 : 3);
    deck.Material(1, "E=2e11 A=1e-2 Iz=1e-5").Rotule(3);
    deck.Support(1, "110 0 0 0").Support(2, "010 0 0 0").Support(4, "010 0 0 0");
    return EndForces(*RunDeck(deck.LineLoad("global_pressure_loads", 3, "0 -12000").Text()), 2)[2];
  };
  EXPECT_NEAR(momentOverSupport(false), 12000 * 6 / 2.0 * 2, 1e-3);
  EXPECT_NEAR(momentOverSupport(true), 12000 * 6 * 3 / 8.0 * 2, 2.0);  // and L^2/8 of no q
}

TEST(FrameHinges, OneBeamOfAJointIsHingedAloneByAShortPieceAtTheJoint) {
  // Three beams of 3, clamped at their far ends, under a moment M at the joint: M L / 8 E I.
  FrameDeck deck(2);
  deck.Node(1, 0, 0).Node(2, 3, 0).Node(3, 6, 0).Node(4, 3, -3).Node(5, 3, -0.01);
  deck.Beam(1, 1, 2).Beam(2, 2, 3).Beam(3, 2, 5).Beam(4, 5, 4).Rotule(5);
  deck.Material(1, "E=2e11 A=1e-2 Iz=1e-5").Clamp(1).Clamp(3).Clamp(4).Load(2, {0, 0, 1000});
  const auto project = RunDeck(deck.Text());
  EXPECT_NEAR(Displacement(*project, 2, 3) / (1000 * 3 / (8 * 2e6)), 1.0, 2e-5);
  EXPECT_NEAR(EndForces(*project, 4)[2], 0.0, 1e-9);
}

TEST(FrameHinges, ATriangleOfHingedBarsIsATruss) {
  FrameDeck deck(2);
  deck.Node(1, 0, 0).Node(2, 4, 0).Node(3, 0, 3).Beam(1, 1, 2).Beam(2, 2, 3).Beam(3, 3, 1);
  deck.Material(1, "E=1e5 A=0.1 Iz=0.01");
  for (const int node : {1, 2, 3}) deck.Rotule(node);
  deck.Support(1, "110 0 0 0").Support(2, "010 0 0 0").Load(3, {12, 0, 0});
  const auto project = RunDeck(deck.Text());
  EXPECT_EQ(project->EndCodeOf(1), BothFixed);
  EXPECT_EQ(project->EndCodeOf(2), HingeAtEnd1);
  EXPECT_EQ(project->EndCodeOf(3), BothHinged);
  EXPECT_NEAR(EndForces(*project, 2)[3], -15.0, 1e-9);
  EXPECT_NEAR(EndForces(*project, 3)[3], 9.0, 1e-9);
  for (int beam = 1; beam <= 3; ++beam)
    for (const int m : {2, 5}) EXPECT_NEAR(EndForces(*project, beam)[m], 0.0, 1e-9);
}

}  // namespace

}  // namespace kestol
