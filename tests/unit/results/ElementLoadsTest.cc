// The loads and the released ends of an element, as results show them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "kestol/LinearSystem.h"
#include "kestol/ReadDeck.h"
#include "results/ElementLoads.h"
#include "tests/support/FrameDeck.h"
#include "tests/support/MeshDeck.h"

namespace kestol {

namespace {

using testing::ElementsAre;

constexpr double kNear = 1e-12;

const Elem& ElementOf(const Project& project, int number) {
  return *project.meshes[0]->elems.Get(number);
}

TEST(ElementLoads, LoadsOfABeamAreSummedInGlobalAxes) {
  FrameDeck deck(3);
  deck.Node(1, 0, 0, 0).Node(2, 0, 3, 4).Beam(1, 1, 2).Clamp(1);
  deck.Material(1, "E=2e11 A=1e-2 Iz=1e-5 Iy=2e-5 J=1e-5 G=8e10 Weight=7");
  deck.LineLoad("global_pressure_loads", 1, "0 0 -10")
      .LineLoad("local_pressure_loads", 1, "5 0 0 2");
  deck.LineLoad("global_projected_pressure_loads", 1, "0 0 -10");
  const Project project = ReadDeckText(deck.Text(), "test");
  const ElementLoads loads = LoadsOnElement(project, ElementOf(project, 1));
  EXPECT_NEAR(loads.perLength[1], 5 * 0.6, kNear);
  EXPECT_NEAR(loads.perLength[2], -10 - 10 * 0.6 + 5 * 0.8, kNear);
  EXPECT_NEAR(loads.couplePerLength[1], 2 * 0.6, kNear);
  EXPECT_NEAR(loads.couplePerLength[2], 2 * 0.8, kNear);
  EXPECT_EQ(loads.perArea, Vector3{});
}

TEST(ElementLoads, ShellsCarryLoadsPerAreaAndOnTheirEdges) {
  const std::string deck =
      DeckOf(Grid(2, 2, Cut::Cross, Same), "",
             "materials\n1 E=1e6 nu=0 t=0.1 G=5e5\nend materials\n"
             "local_pressure_loads\n1 0 0 -3 2\nend\nface_loads\n1 0 4 5 6\nend\n");
  const Project project = ReadDeckText(deck, "test");
  const ElementLoads loads = LoadsOnElement(project, ElementOf(project, 1));
  EXPECT_THAT(loads.perArea, ElementsAre(0.0, 0.0, -3.0));
  EXPECT_THAT(loads.perLength, ElementsAre(4.0, 5.0, 6.0));
  EXPECT_NEAR(Norm(loads.couplePerArea), 2.0, kNear);
  EXPECT_EQ(LoadsOnElement(project, ElementOf(project, 2)).perArea, Vector3{});
}

TEST(ElementLoads, SolidsCarryLoadsPerVolumeAndOnTheirFaces) {
  for (const bool ten : {false, true}) {
    const std::string deck =
        DeckOf(UnitTetrahedron(ten), "",
               "materials\n1 E=1e3 nu=0.25\nend materials\nglobal_pressure_loads\n1 -1 1 2 3\nend\n"
               "local_pressure_loads\n1 0 0 0 5\nend\n");
    const Project project = ReadDeckText(deck, "test");
    const ElementLoads loads = LoadsOnElement(project, ElementOf(project, 1));
    EXPECT_THAT(loads.perVolume, ElementsAre(1.0, 2.0, 3.0));
    EXPECT_NEAR(loads.perArea[2], -5.0, 1e-12);  // along the outward normal of z = 0
    EXPECT_NEAR(loads.perArea[0], 0.0, 1e-12);
  }
}

TEST(ElementLoads, HingesAreReleasedEnds) {
  FrameDeck deck(2);
  deck.Node(1, 0, 0).Node(2, 2, 0).Node(3, 4, 0).Beam(1, 1, 2).Beam(2, 2, 3);
  deck.Material(1, "E=2e11 A=1e-2 Iz=1e-5").Clamp(1).Clamp(3).Rotule(2);
  Project project = ReadDeckText(deck.Text(), "test");
  EXPECT_FALSE(HingesOf(project, ElementOf(project, 2)).end1);
  SolveOnce(project);
  EXPECT_FALSE(HingesOf(project, ElementOf(project, 1)).end2);
  EXPECT_TRUE(HingesOf(project, ElementOf(project, 2)).end1);
  EXPECT_FALSE(HingesOf(project, ElementOf(project, 2)).end2);
}

}  // namespace

}  // namespace kestol
