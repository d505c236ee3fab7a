#include "analysis/BeamElement.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/FrameDeck.h"
#include "tests/support/RunDeck.h"

namespace kestol {

namespace {

const Elem& ElemOf(const Project& project, int number) {
  return *project.meshes[0]->elems.Get(number);
}

/// A bar going up along y, with weight and two loads.
FrameDeck Upright() {
  FrameDeck deck(2);
  deck.Node(1, 0, 0).Node(2, 0, 2).Beam(5, 1, 2).Clamp(1);
  deck.Material(1, "E=1 A=2 Iz=1 Weight=3").Key("GravityDirection 0 -1 0");
  deck.LineLoad("global_pressure_loads", 5, "7 0").LineLoad("local_pressure_loads", 5, "0 1");
  return deck;
}

TEST(BeamElement, TakesWeightFirstAndThenTheLoadsInInputOrder) {
  const auto project = ReadDeck(Upright().Text());
  BeamElement beam(*project);
  beam.SetElem(ElemOf(*project, 5));
  ASSERT_EQ(beam.loads.size(), 3U);
  EXPECT_DOUBLE_EQ(beam.loads[0].qx, -6.0);
  EXPECT_EQ(beam.loads[0].qy, 0.0);
  EXPECT_DOUBLE_EQ(beam.loads[1].qy, -7.0);  // local y points to -x
  EXPECT_EQ(beam.loads[2].qy, 1.0);
}

TEST(BeamElement, ForgetsTheLoadsOfTheBeamBefore) {
  const auto project =
      ReadDeck(Upright().Node(3, 3, 2).Beam(6, 2, 3, 2).Material(2, "E=1 A=1 Iz=1").Text());
  BeamElement beam(*project);
  beam.SetElem(ElemOf(*project, 5));
  EXPECT_TRUE(beam.HasLoads(ElemOf(*project, 5)));
  beam.SetElem(ElemOf(*project, 6));
  EXPECT_TRUE(beam.loads.empty());
  EXPECT_FALSE(beam.HasLoads(ElemOf(*project, 6)));
  EXPECT_EQ(beam.L, 3.0);
}

TEST(BeamElement, TurnsDisplacementsIntoLocalAxes) {
  const auto project = ReadDeck(Upright().Text());
  BeamElement beam(*project);
  beam.SetElem(ElemOf(*project, 5));
  ReaVecT global(6);
  for (int i = 1; i <= 6; ++i) global(i) = i;
  double u1[6], u2[6];
  beam.LocalDisplacements(global, u1, u2);
  EXPECT_EQ(u1[0], 2.0);
  EXPECT_EQ(u1[1], -1.0);
  EXPECT_EQ(u1[2], 3.0);
  EXPECT_EQ(u2[0], 5.0);
  EXPECT_EQ(u2[1], -4.0);
  EXPECT_EQ(u2[2], 6.0);
}

TEST(BeamElement, RefusesInItsOrder) {
  // Material, length, axes, values, then loads.
  FrameDeck deck(2);
  deck.Node(1, 0, 0).Node(2, 0, 0).Node(3, 1, 0).Clamp(1);
  deck.Beam(1, 1, 2, 9).Beam(2, 1, 2, 1).Beam(3, 1, 3, 1).Beam(4, 1, 3, 2).Beam(5, 1, 3, 3);
  deck.Material(1, "A=1 Iz=1 Euler3=1.5707963267948966").Material(2, "A=1 Iz=1");
  deck.Material(3, "E=1 A=1 Iz=1 Weight=1").LineLoad("face_loads", 4, "1 1");
  const auto project = ReadDeck(deck.Text());
  BeamElement beam(*project);
  const auto take = [&](int number) { beam.SetElem(ElemOf(*project, number)); };
  EXPECT_FATAL(take(1), "error: Material in element: 1 doesn't exist\n");
  EXPECT_FATAL(take(2), "error: element: 2 has length 0\n");
  EXPECT_FATAL(take(3),
               "error: Local x axe is orthogonal to the direction of the beam. Element: 3\n");
  EXPECT_FATAL(take(4), "error: material parameter E is 0 for element 4\n");
  EXPECT_FATAL(take(5), "error: for 2D problems GravityDirection_Z must be 0.0\n");
}

TEST(BeamElement, ABeamOutOfThePlaneIsRefused) {
  const auto project = ReadDeck(
      "problem a\ntype 2d\nmesh dimension 3 elemtype l nnode 2\ncoordinates\n1 0 0 0\n2 1 0 0.1\n"
      "end\nelements\n4 1 2 1\nend\nmaterials\n1 E=1 A=1 Iz=1\nend\n");
  BeamElement beam(*project);
  EXPECT_FATAL(beam.SetElem(ElemOf(*project, 4)),
               "error: element: 4 is not in the plane of a 2d problem\n");
}

TEST(BeamStrengths, StandByRunningPositionWhateverTheNumbers) {
  // Two hanging bars in a chain, numbers with a gap: 2 N above 1 N.
  FrameDeck deck(2);
  deck.Node(1, 0, 0).Node(2, 0, -1).Node(3, 0, -2).Beam(900, 2, 3).Beam(7, 1, 2);
  deck.Material(1, "E=1 A=1 Iz=1").Clamp(1).Load(2, {0, -1, 0}).Load(3, {0, -1, 0});
  const auto project = RunDeck(deck.Text());
  const ReaVecT& values = project->results.meshes[0].local;
  ASSERT_EQ(values.n, 12);
  EXPECT_NEAR(values(4), 2.0, 1e-12);   // element 7, end 2: pulled along the bar
  EXPECT_NEAR(values(10), 1.0, 1e-12);  // element 900, end 2
}

TEST(BeamStrengths, OfAMeshWithoutElementsAreNone) {
  FrameDeck deck(2);
  deck.Node(1, 0, 0).Node(2, 1, 0).Beam(1, 1, 2).Material(1, "E=1 A=1 Iz=1").Clamp(1);
  const auto project = RunDeck(
      deck.Text() +
      "mesh\ndimension = 2 elemtype Linear nnode = 2\ncoordinates\nend\nelements\nend\n"
      "mesh\ndimension = 2 elemtype Linear nnode = 2\ncoordinates\nend\nelements\n5 2 1 1\nend\n");
  EXPECT_EQ(project->results.meshes[0].local.n, 6);
  EXPECT_EQ(project->results.meshes[1].local.n, 0);
  EXPECT_EQ(project->results.meshes[2].local.n, 6);
}

TEST(BeamElement, HasAWeightOnlyWhenBothOfItsFactorsArePositive) {
  // What is not given is -1: two of them would make a weight of 1.
  for (const auto& [keys, weighs] : {
           std::pair{"A=2 Weight=3",   true },
           {"",               false},
           {"A=2",            false},
           {"Weight=3",       false},
           {"A=-2 Weight=-3", false},
           {"A=2 Weight=-3",  false},
           {"A=-2 Weight=3",  false}
  }) {
    FrameDeck deck(2);
    deck.Node(1, 0, 0).Node(2, 2, 0).Beam(1, 1, 2).Key("GravityDirection 0 -1 0");
    const auto project = ReadDeck(deck.Material(1, std::string("E=1 Iz=1 ") + keys).Text());
    BeamElement beam(*project);
    const Elem& elem = ElemOf(*project, 1);
    EXPECT_EQ(beam.HasLoads(elem), weighs) << keys;
    beam.SetAxes(elem);
    beam.SetLoads();
    EXPECT_EQ(beam.loads.size(), weighs ? 1u : 0u) << keys;
  }
}

}  // namespace

}  // namespace kestol
