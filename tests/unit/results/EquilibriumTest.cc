#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "kestol/LinearSystem.h"
#include "kestol/ReadDeck.h"
#include "results/Equilibrium.h"
#include "tests/support/FrameDeck.h"
#include "tests/support/MeshDeck.h"

namespace kestol {

namespace {

Equilibrium BalanceOf(const std::string& deck) {
  Project project = ReadDeckText(deck, "test");
  const Results results = SolveOnce(project);
  return EquilibriumOf(project, results);
}

// Loads at x = 2 and along the beam; a couple at the tip.
TEST(Equilibrium, LoadsAreSummedAboutTheOrigin) {
  FrameDeck deck(2);
  deck.Node(1, 2, 1).Node(2, 6, 1).Beam(1, 1, 2).Material(1, "E=2e11 A=1e-2 Iz=1e-5").Clamp(1);
  deck.Load(2, {100, 0, 50}).LineLoad("global_pressure_loads", 1, "0 -10");
  const Equilibrium balance = BalanceOf(deck.Text());
  EXPECT_NEAR(balance.loads.force[0], 100.0, 1e-9);
  EXPECT_NEAR(balance.loads.force[1], -40.0, 1e-9);
  EXPECT_NEAR(balance.loads.moment[2], -100.0 * 1 + 50 - 40.0 * 4, 1e-9);
  EXPECT_NEAR(balance.reactions.force[0], -100.0, 1e-9);
  EXPECT_NEAR(balance.reactions.moment[2], 210.0, 1e-9);
  EXPECT_LT(balance.relativeError, 1e-12);
  EXPECT_EQ(balance.drilling, Vector3{});
}

TEST(Equilibrium, NothingActsIsNoError) {
  FrameDeck deck(2);
  deck.Node(1, 0, 0).Node(2, 6, 0).Beam(1, 1, 2).Material(1, "E=2e11 A=1e-2 Iz=1e-5").Clamp(1);
  EXPECT_EQ(BalanceOf(deck.Text()).relativeError, 0.0);
}

// A couple about the normal of a plate goes to the ground through the drilling stiffness: without
// its part the moments would not balance.
TEST(Equilibrium, DrillingStiffnessIsCountedWithTheMoments) {
  const std::string deck =
      DeckOf(Grid(2, 2, Cut::Right, Same), "",
             "materials\n1 E=1e6 nu=0.3 t=0.1 G=384615\nend materials\nconstraints\n"
             "1 111000 0 0 0 0 0 0\n3 011000 0 0 0 0 0 0\n9 001000 0 0 0 0 0 0\nend constraints\n"
             "nodal_point_loads\n5 0 0 0 0 0 2\nend nodal_point_loads\n");
  const Equilibrium balance = BalanceOf(deck);
  EXPECT_NEAR(balance.loads.moment[2], 2.0, 1e-12);
  EXPECT_GT(std::abs(balance.drilling[2]), 0.1);
  EXPECT_NEAR(balance.loads.moment[2] + balance.reactions.moment[2] + balance.drilling[2], 0.0,
              1e-8);
  EXPECT_LT(balance.relativeError, 1e-8);
}

// A free degree that the solver left out of balance must show: the sum of the reactions takes the
// held degrees alone.
TEST(Equilibrium, AnAnswerThatDoesNotSolveTheSystemShows) {
  FrameDeck deck(2);
  deck.Node(1, 0, 0).Node(2, 6, 0).Beam(1, 1, 2).Material(1, "E=2e11 A=1e-2 Iz=1e-5").Clamp(1);
  deck.Load(2, {0, -100, 0});
  Project project = ReadDeckText(deck.Text(), "test");
  Results results = SolveOnce(project);
  for (double& value : results.internalForces) value *= 1.001;
  const Equilibrium balance = EquilibriumOf(project, results);
  EXPECT_NEAR(balance.relativeErrors.force[1], 0.1 / 200.1, 1e-5);
  EXPECT_EQ(balance.relativeErrors.force[0], 0.0);
  EXPECT_GE(balance.relativeError, balance.relativeErrors.force[1]);
}

}  // namespace

}  // namespace kestol
