#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "kestol/LinearSystem.h"
#include "kestol/ReadDeck.h"
#include "results/BeamResults.h"
#include "results/NodeResults.h"
#include "tests/support/FrameDeck.h"

namespace kestol {

namespace {

using testing::ElementsAre;

constexpr const char* kSection = "E=2e11 A=1e-2 Iz=1e-5 Iy=2e-5 J=1e-5 G=8e10";

struct Solved {
  Solved(const std::string& deck, int stations) : project(ReadDeckText(deck, "test")) {
    results = SolveOnce(project);
    table = TableOfBeams(project, results, stations);
  }
  Project project;
  Results results;
  BeamTable table;
};

FrameDeck Bracket() {
  FrameDeck deck(3);
  deck.Node(1, 0, 0, 0).Node(2, 0, 0, 4).Node(3, 3, 0, 4).Beam(7, 1, 2).Beam(9, 2, 3);
  deck.Material(1, kSection).Clamp(1).Load(3, {10, 200, -1000, 5, 6, 7});
  return deck;
}

TEST(BeamResults, EveryBeamHasItsStationsInTheOrderOfTheMeshes) {
  const Solved solved(Bracket().Text(), 5);
  ASSERT_EQ(solved.table.Count(), 2);
  EXPECT_EQ(solved.table.beams[0]->number, 7);
  EXPECT_EQ(solved.table.beams[1]->number, 9);
  EXPECT_EQ(solved.table.values[kN].size(), 10u);
  EXPECT_EQ(solved.table.displacements.size(), 10u);
  EXPECT_EQ(solved.table.rotations.size(), 10u);
  EXPECT_THAT(solved.table.lengths, ElementsAre(4.0, 3.0));
  EXPECT_THAT(solved.table.PositionOf(1, 2), ElementsAre(1.5, 0.0, 4.0));
  EXPECT_EQ(solved.table.Place(1, 2), 7u);
}

TEST(BeamResults, StationsOfTheDeckAreItsDivisionsAndOne) {
  const Solved solved(Bracket().Key("NumOfDivisions 6").Text(), 2);
  EXPECT_EQ(DeckStations(solved.project), 7);
}

// At a rigid end displacement and rotation are those of the node.
TEST(BeamResults, EndsMoveAndTurnWithTheirNodes) {
  const Solved solved(Bracket().LineLoad("local_pressure_loads", 9, "3 4 5 6").Text(), 5);
  for (int b = 0; b < 2; ++b)
    for (const int end : {0, 1}) {
      const Elem& elem = *solved.table.beams[static_cast<std::size_t>(b)];
      const NodeDisplacement node =
          DisplacementOf(solved.project, solved.results, *elem.nodes[end]);
      const std::size_t place = solved.table.Place(b, end == 0 ? 0 : 4);
      for (std::size_t k = 0; k < 3; ++k) {
        EXPECT_NEAR(solved.table.displacements[place][k], node.u[k], 1e-12);
        EXPECT_NEAR(solved.table.rotations[place][k], node.rotation[k], 1e-12);
      }
    }
}

// Rotations about y and z are slopes; for all hinges and a load of every kind.
TEST(BeamResults, RotationsAreTheSlopesOfTheDeflection) {
  for (const char* hinges : {"", "1", "2", "12"}) {
    FrameDeck deck(3);
    deck.Node(1, 0, 0, 0).Node(2, 2, 0, 0).Node(3, 5, 0, 0).Node(4, 7, 0, 0);
    deck.Beam(1, 1, 2).Beam(2, 3, 4).Beam(3, 2, 3).Material(1, kSection).Clamp(1).Clamp(4);
    const std::string which(hinges);
    if (which.find('1') != std::string::npos) deck.Rotule(2);
    if (which.find('2') != std::string::npos) deck.Rotule(3);
    deck.LineLoad("local_pressure_loads", 3, "3 4 5 0");
    constexpr int kStations = 4001;
    const Solved solved(deck.Text(), kStations);
    const double h = 3.0 / (kStations - 1);
    for (const int s : {1, 700, 2000, 3999}) {
      const auto at = [&](int station) {
        return solved.table.displacements[solved.table.Place(2, station)];
      };
      const Vector3 slope = Times(Minus(at(s + 1), at(s - 1)), 1.0 / (2 * h));
      const Vector3 rotation = solved.table.rotations[solved.table.Place(2, s)];
      EXPECT_NEAR(rotation[2], slope[1], 1e-9) << hinges << ' ' << s;
      EXPECT_NEAR(rotation[1], -slope[2], 1e-9) << hinges << ' ' << s;
    }
  }
}

// GJ theta'' = -m between clamped ends: m L^2 / 8 GJ in the middle.
TEST(BeamResults, ATorsionalLoadTwistsTheMiddle) {
  FrameDeck deck(3);
  deck.Node(1, 0, 0, 0).Node(2, 4, 0, 0).Beam(1, 1, 2).Material(1, kSection).Clamp(1).Clamp(2);
  deck.LineLoad("local_pressure_loads", 1, "0 0 0 30");
  const Solved solved(deck.Text(), 3);
  EXPECT_NEAR(solved.table.rotations[1][0], 30.0 * 16 / (8 * 8e10 * 1e-5), 1e-15);
}

// Simply supported under 12 per length: V and M of the books, M on the tension side.
TEST(BeamResults, DiagramsOfASimplySupportedBeam) {
  FrameDeck deck(2);
  deck.Node(1, 0, 0).Node(2, 4, 0).Beam(1, 1, 2).Material(1, kSection);
  deck.Support(1, "110 0 0 0")
      .Support(2, "010 0 0 0")
      .LineLoad("global_pressure_loads", 1, "0 -12");
  const Solved solved(deck.Text(), 5);
  EXPECT_NEAR(solved.table.values[kVy][0], 24.0, 1e-9);
  EXPECT_NEAR(solved.table.values[kVy][4], -24.0, 1e-9);
  EXPECT_NEAR(solved.table.values[kMz][2], 24.0, 1e-9);
  EXPECT_NEAR(solved.table.values[kMz][1], 18.0, 1e-9);
  for (const BeamValue value : {kVz, kT, kMy})
    EXPECT_THAT(solved.table.values[value], ElementsAre(0.0, 0.0, 0.0, 0.0, 0.0));
  // A sagging moment is drawn below.
  EXPECT_THAT(solved.table.DiagramDirection(0, kMz, Plane), ElementsAre(0.0, -1.0, 0.0));
  EXPECT_THAT(solved.table.DiagramDirection(0, kVy, Plane), ElementsAre(0.0, 1.0, 0.0));
}

TEST(BeamResults, StrengthsOfThePlaneAreThreeOfSix) {
  EXPECT_EQ(StrengthOf(kN, Plane), 1);
  EXPECT_EQ(StrengthOf(kVy, Plane), 2);
  EXPECT_EQ(StrengthOf(kMz, Plane), 3);
  for (const BeamValue value : {kVz, kT, kMy}) EXPECT_EQ(StrengthOf(value, Plane), 0);
  for (int value = 0; value < kBeamValues; ++value)
    EXPECT_EQ(StrengthOf(static_cast<BeamValue>(value), Space), value + 1);
}

// What the nodes exert on the ends, loads along the beam included.
TEST(BeamResults, EndForcesCarryTheLoadOfTheBeam) {
  FrameDeck deck(2);
  deck.Node(1, 0, 0).Node(2, 4, 0).Beam(1, 1, 2).Material(1, kSection).Clamp(1);
  deck.LineLoad("global_pressure_loads", 1, "0 -10").Load(2, {6, 0, 0});
  const Solved solved(deck.Text(), 2);
  const BeamEndForces& ends = solved.table.ends[0];
  EXPECT_NEAR(ends.f1[0], -6.0, 1e-9);
  EXPECT_NEAR(ends.f1[1], 40.0, 1e-9);
  EXPECT_NEAR(ends.f1[2], 80.0, 1e-9);
  EXPECT_NEAR(ends.f2[0], 6.0, 1e-9);
  EXPECT_NEAR(ends.f2[1], 0.0, 1e-9);
}

TEST(BeamResults, GeometryAloneNeedsNoResults) {
  const Project project = ReadDeckText(Bracket().Text(), "test");
  const BeamTable table = GeometryOfBeams(project);
  EXPECT_EQ(table.Count(), 2);
  EXPECT_EQ(table.stations, 2);
  EXPECT_THAT(table.PositionOf(0, 1), ElementsAre(0.0, 0.0, 4.0));
  EXPECT_THAT(table.axes[1].x, ElementsAre(1.0, 0.0, 0.0));
}

}  // namespace

}  // namespace kestol
