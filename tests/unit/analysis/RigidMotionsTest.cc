#include "analysis/RigidMotions.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/FrameDeck.h"
#include "tests/support/RunDeck.h"

namespace kestol {

namespace {

bool Stopped(const FrameDeck& deck) {
  return SupportsStopRigidMotions(*ReadDeck(deck.Text()));
}

/// A plane bar along x from (0, 0) to (1e3, 0), far from the size 1.
FrameDeck PlaneBar() {
  return FrameDeck(2).Node(1, 0, 0).Node(2, 1000, 0).Beam(1, 1, 2).Material(1, "E=1 A=1 Iz=1");
}

/// An L of two bars in space.
FrameDeck SpaceBars() {
  return FrameDeck(3)
      .Node(1, 0, 0, 0)
      .Node(2, 2, 0, 0)
      .Node(3, 2, 3, 0)
      .Beam(1, 1, 2)
      .Beam(2, 2, 3)
      .Material(1, "E=1 A=1 Iz=1 Iy=1 G=1 J=1");
}

TEST(RigidMotions, AreFreeWithoutSupports) {
  EXPECT_FALSE(Stopped(PlaneBar()));
  EXPECT_FALSE(Stopped(SpaceBars()));
}

TEST(RigidMotions, AreStoppedByOneClamp) {
  EXPECT_TRUE(Stopped(PlaneBar().Clamp(1)));
  EXPECT_TRUE(Stopped(SpaceBars().Clamp(3)));
}

TEST(RigidMotions, OfAPlaneBarNeedThreeIndependentDegrees) {
  EXPECT_TRUE(Stopped(PlaneBar().Support(1, "110 0 0 0").Support(2, "010 0 0 0")));
  EXPECT_FALSE(Stopped(PlaneBar().Support(1, "110 0 0 0").Support(2, "100 0 0 0")));
  EXPECT_FALSE(Stopped(PlaneBar().Support(1, "110 0 0 0")));
  EXPECT_FALSE(Stopped(PlaneBar().Support(1, "010 0 0 0").Support(2, "010 0 0 0")));
  EXPECT_FALSE(Stopped(PlaneBar().Support(1, "101 0 0 0").Support(2, "101 0 0 0")));
}

TEST(RigidMotions, OfASpaceFrameCanBeStoppedWithSixTranslations) {
  FrameDeck deck = SpaceBars();
  deck.Support(1, "111000 0 0 0 0 0 0").Support(2, "011000 0 0 0 0 0 0");
  EXPECT_FALSE(Stopped(deck));  // free to turn about the line through both
  EXPECT_TRUE(Stopped(deck.Support(3, "001000 0 0 0 0 0 0")));
}

TEST(RigidMotions, AreStoppedByHeldRotationsToo) {
  EXPECT_TRUE(
      Stopped(SpaceBars().Support(1, "111000 0 0 0 0 0 0").Support(3, "000111 0 0 0 0 0 0")));
  EXPECT_FALSE(Stopped(SpaceBars().Support(3, "000111 0 0 0 0 0 0")));
}

TEST(RigidMotions, AreStoppedBySpringsThatAreNotZero) {
  EXPECT_TRUE(Stopped(PlaneBar().Support(1, "222 5 5 5")));
  EXPECT_TRUE(Stopped(PlaneBar().Support(1, "222 5 5 -5")));
  EXPECT_FALSE(Stopped(PlaneBar().Support(1, "222 5 5 0")));
  EXPECT_FALSE(Stopped(PlaneBar().Support(1, "222 5 5 1e-15")));
}

TEST(RigidMotions, AreNotStoppedByOtherCodes) {
  EXPECT_FALSE(Stopped(PlaneBar().Support(1, "113 0 0 0")));
}

TEST(RigidMotions, DependOnTheAxesOfInclinedSupports) {
  // A roller that lets go along the bar holds nothing that the pin does not hold, unless turned.
  FrameDeck deck = PlaneBar().Support(1, "110 0 0 0");
  FrameDeck straight = deck, turned = deck;
  EXPECT_FALSE(Stopped(straight.Support(2, "100 0 0 0")));
  EXPECT_TRUE(Stopped(turned.Support(2, "100 0 0 0 Euler3=0.1")));
}

TEST(RigidMotions, AreStoppedByARollerThatIsTurnedAsLittleAsRoundingAllows) {
  // What is left of the roller's row is its angle times the square root of 2; below 1e-9 it is
  // taken for rounding.
  const auto stopped = [](const char* angle) {
    return Stopped(
        PlaneBar().Support(1, "110 0 0 0").Support(2, std::string("100 0 0 0 Euler3=") + angle));
  };
  EXPECT_TRUE(stopped("1e-4"));
  EXPECT_TRUE(stopped("1e-6"));
  EXPECT_TRUE(stopped("2e-9"));
  EXPECT_FALSE(stopped("5e-10"));
}

TEST(RigidMotions, AreLookedAtPartByPart) {
  FrameDeck deck = PlaneBar().Clamp(1).Node(3, 0, 5).Node(4, 1, 5).Beam(2, 3, 4);
  EXPECT_FALSE(Stopped(deck));
  EXPECT_TRUE(Stopped(deck.Clamp(4)));
}

TEST(RigidMotions, OfNodesWithoutElementsAreLeftOut) {
  EXPECT_TRUE(Stopped(PlaneBar().Clamp(1).Node(3, 0, 5)));
}

TEST(RigidMotions, OfSolidsAreStoppedByTranslationsAlone) {
  const std::string tetra =
      "problem a\ntype 3d\nmesh dimension 3 elemtype tetra nnode 4\ncoordinates\n"
      "1 0 0 0\n2 1 0 0\n3 0 1 0\n4 0 0 1\nend\nelements\n1 1 2 3 4 1\nend\nconstraints\n";
  EXPECT_TRUE(
      SupportsStopRigidMotions(*ReadDeck(tetra + "1 111 0 0 0\n2 011 0 0 0\n3 001 0 0 0\nend\n")));
  EXPECT_FALSE(SupportsStopRigidMotions(*ReadDeck(tetra + "1 111 0 0 0\n2 011 0 0 0\nend\n")));
  EXPECT_FALSE(SupportsStopRigidMotions(*ReadDeck(tetra + "1 111 0 0 0\n2 111 0 0 0\nend\n")));
}

TEST(RigidMotions, OfSolidsAreThoseOfSpaceInAPlaneProblemToo) {
  const std::string tetra =
      "problem a\ntype 2d\nmesh dimension 3 elemtype tetra nnode 4\ncoordinates\n"
      "1 0 0 0\n2 1 0 0\n3 0 1 0\n4 0 0 1\nend\nelements\n1 1 2 3 4 1\nend\nconstraints\n";
  EXPECT_TRUE(
      SupportsStopRigidMotions(*ReadDeck(tetra + "1 111 0 0 0\n2 011 0 0 0\n3 001 0 0 0\nend\n")));
  EXPECT_FALSE(SupportsStopRigidMotions(*ReadDeck(tetra + "1 111 0 0 0\n2 011 0 0 0\nend\n")));
}

TEST(RigidMotions, AreTheSameForPartsOfAnySizeAtAnyPlace) {
  for (const double size : {1e-5, 1.0, 1e5})
    for (const double offset : {0.0, 4e9}) {  // in sizes
      const double place = offset * size;
      FrameDeck plane(2);
      plane.Node(1, place, place).Node(2, place + size, place).Beam(1, 1, 2);
      plane.Support(1, "110 0 0 0");
      EXPECT_FALSE(Stopped(plane)) << size << ' ' << offset;
      EXPECT_TRUE(Stopped(plane.Support(2, "010 0 0 0"))) << size << ' ' << offset;

      FrameDeck space(3);
      space.Node(1, place, place, place).Node(2, place + size, place, place + size).Beam(1, 1, 2);
      space.Node(3, place, place + size, place - size).Beam(2, 1, 3);
      space.Support(1, "111000 0 0 0 0 0 0").Support(2, "111000 0 0 0 0 0 0");
      EXPECT_FALSE(Stopped(space)) << size << ' ' << offset;
      EXPECT_TRUE(Stopped(space.Support(3, "111000 0 0 0 0 0 0"))) << size << ' ' << offset;
    }
}

}  // namespace

}  // namespace kestol
