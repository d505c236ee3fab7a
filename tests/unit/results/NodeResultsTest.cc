#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "kestol/LinearSystem.h"
#include "kestol/ReadDeck.h"
#include "results/NodeResults.h"
#include "tests/support/FrameDeck.h"
#include "tests/support/MeshDeck.h"

namespace kestol {

namespace {

using testing::ElementsAre;

constexpr const char* kSection = "E=2e11 A=1e-2 Iz=1e-5 Iy=2e-5 J=1e-5 G=8e10";

struct Solved {
  explicit Solved(const std::string& deck) : project(ReadDeckText(deck, "test")) {
    results = SolveOnce(project);
  }
  Project project;
  Results results;
};

// One beam of 4 m, clamped, under 10 per length: the solver prints K u, which knows nothing of the
// half of the load that falls on the clamp itself.
TEST(NodeResults, SupportForceOfALoadedClampIsTheWholeLoad) {
  FrameDeck deck(2);
  deck.Node(1, 0, 0).Node(2, 4, 0).Beam(1, 1, 2).Material(1, kSection).Clamp(1);
  deck.LineLoad("global_pressure_loads", 1, "0 -10");
  const Solved solved(deck.Text());
  const NodeForces force = SupportForce(solved.project, solved.results, 1);
  EXPECT_NEAR(force.force[1], 40.0, 1e-9);
  EXPECT_NEAR(force.moment[2], 80.0, 1e-9);
  EXPECT_NEAR(FindReaction(solved.results, NodeOfNumber(solved.project, 1).number)->values[1], 20.0,
              1e-9);
}

TEST(NodeResults, PlaneVectorsHaveTheRotationAboutZ) {
  FrameDeck deck(2);
  deck.Node(1, 0, 0).Node(2, 3, 0).Beam(1, 1, 2).Material(1, kSection).Clamp(1);
  deck.Load(2, {5, -1000, 7});
  const Solved solved(deck.Text());
  const NodeDisplacement tip = DisplacementOf(solved.project, solved.results, 2);
  EXPECT_NEAR(tip.u[1], -1000 * 27 / (3 * 2e6) + 7 * 9 / (2 * 2e6), 1e-12);
  EXPECT_EQ(tip.u[2], 0.0);
  EXPECT_THAT(std::vector(tip.rotation.begin(), tip.rotation.begin() + 2), ElementsAre(0.0, 0.0));
  EXPECT_NEAR(tip.rotation[2], -1000 * 9 / (2 * 2e6) + 7 * 3 / 2e6, 1e-12);
  const NodeForces load = LoadOn(solved.project, solved.results, 2);
  EXPECT_THAT(load.force, ElementsAre(5.0, -1000.0, 0.0));
  EXPECT_THAT(load.moment, ElementsAre(0.0, 0.0, 7.0));
}

TEST(NodeResults, SolidsHaveNeitherRotationsNorMoments) {
  const Solved solved(
      DeckOf(UnitTetrahedron(false), "",
             "materials\n1 E=1e3 nu=0.25\nend materials\nconstraints\n1 111 0 0 0\n"
             "2 111 0 0 0\n3 111 0 0 0\nend constraints\nnodal_point_loads\n4 1 2 3\n"
             "end nodal_point_loads\n"));
  const NodeDisplacement top = DisplacementOf(solved.project, solved.results, 4);
  EXPECT_NE(top.u[2], 0.0);
  EXPECT_THAT(top.rotation, ElementsAre(0.0, 0.0, 0.0));
  EXPECT_THAT(LoadOn(solved.project, solved.results, 4).force, ElementsAre(1.0, 2.0, 3.0));
}

// A roller whose own y is turned by 30 degrees gives a force along that axis only.
TEST(NodeResults, AnInclinedRollerGivesAForceAlongItsOwnAxis) {
  const double angle = std::acos(-1.0) / 6.0;
  FrameDeck deck(2);
  deck.Node(1, 0, 0).Node(2, 4, 0).Beam(1, 1, 2).Material(1, kSection);
  deck.Support(1, "110 0 0 0").Support(2, "010 0 0 0 Euler3=0.5235987755982988");
  deck.Load(2, {0, -100, 0}).LineLoad("global_pressure_loads", 1, "0 -10");
  const Solved solved(deck.Text());
  const Node& roller = NodeOfNumber(solved.project, 2);
  EXPECT_TRUE(IsInclined(roller));
  const NodeForces global = SupportForce(solved.project, solved.results, 2);
  EXPECT_NEAR(global.force[1], 120.0, 1e-9);  // half of the line and all of the point load
  EXPECT_NEAR(global.force[0], -120.0 * std::tan(angle), 1e-9);
  const NodeForces local = InSupportAxes(roller, global);
  EXPECT_NEAR(local.force[0], 0.0, 1e-12);
  EXPECT_NEAR(local.force[1], 120.0 / std::cos(angle), 1e-9);
  EXPECT_FALSE(IsInclined(NodeOfNumber(solved.project, 1)));
  EXPECT_EQ(InSupportAxes(NodeOfNumber(solved.project, 1), global).force, global.force);
}

TEST(NodeResults, ASpringGivesItsForceAndTheFreeDegreesExactlyNothing) {
  FrameDeck deck(2);
  deck.Node(1, 0, 0).Node(2, 3, 0).Beam(1, 1, 2).Material(1, kSection).Clamp(1);
  deck.Support(2, "020 0 5e5 0").Load(2, {3, -1000, 0});
  const Solved solved(deck.Text());
  const NodeForces spring = SupportForce(solved.project, solved.results, 2);
  const double v = DisplacementOf(solved.project, solved.results, 2).u[1];
  EXPECT_NEAR(spring.force[1], -5e5 * v, 1e-8);
  EXPECT_EQ(spring.force[0], 0.0);
  EXPECT_EQ(spring.moment[2], 0.0);
}

TEST(NodeResults, SupportedNodesAreThoseThatSomethingHolds) {
  FrameDeck deck(2);
  deck.Node(1, 0, 0).Node(2, 3, 0).Node(3, 6, 0).Beam(1, 1, 2).Beam(2, 2, 3).Material(1, kSection);
  deck.Clamp(3).Support(2, "000 0 0 0").Support(1, "020 0 5 0");
  const Solved solved(deck.Text());
  const std::vector<SupportedNode> supported = SupportedNodes(solved.project);
  ASSERT_EQ(supported.size(), 2u);
  EXPECT_EQ(supported[0].number, 1);
  EXPECT_EQ(supported[1].number, 3);
  EXPECT_THAT(supported[0].between, ElementsAre(0, 0));
  const NodeForces nothing = SupportForce(solved.project, solved.results, 2);
  EXPECT_EQ(nothing.force, Vector3{});
}

TEST(NodeResults, ACreatedMidSideNamesItsCorners) {
  const Solved solved(
      DeckOf(UnitSquare(), "ConvertTo6Nodes\n",
             "materials\n1 E=1e6 nu=0.3 t=0.1 G=384615\nend materials\nconstraints\n"
             "1 111111 0 0 0 0 0 0\n3 111111 0 0 0 0 0 0\nend constraints\nnodal_point_loads\n"
             "2 0 0 -1 0 0 0\nend nodal_point_loads\n"));
  const std::vector<SupportedNode> supported = SupportedNodes(solved.project);
  ASSERT_EQ(supported.size(), 3u);
  EXPECT_EQ(supported[2].number, 0);
  EXPECT_THAT(supported[2].between, ElementsAre(1, 3));
  double sum = 0.0;
  for (const SupportedNode& each : supported)
    sum += SupportForce(solved.project, solved.results, *each.node).force[2];
  EXPECT_NEAR(sum, 1.0, 1e-9);
}

TEST(NodeResults, AnUnknownNumberIsRefused) {
  FrameDeck deck(2);
  deck.Node(1, 0, 0).Node(2, 3, 0).Beam(1, 1, 2).Material(1, kSection).Clamp(1);
  const Solved solved(deck.Text());
  EXPECT_THROW(DisplacementOf(solved.project, solved.results, 3), FatalError);
}

TEST(NodeResults, EveryNodeThatWasReadIsVisitedOnce) {
  const Solved solved(
      DeckOf(UnitSquare(), "ConvertTo6Nodes\n",
             "materials\n1 E=1e6 nu=0.3 t=0.1 G=384615\nend materials\nconstraints\n"
             "1 111111 0 0 0 0 0 0\n3 111111 0 0 0 0 0 0\nend constraints\n"));
  std::vector<int> numbers;
  ForEachNode(solved.project, [&](int number, const Node&) { numbers.push_back(number); });
  EXPECT_THAT(numbers, ElementsAre(1, 2, 3, 4));
}

}  // namespace

}  // namespace kestol
