// Frames that can move as a whole are refused, whatever rounding makes of their pivots.
#include <gtest/gtest.h>

#include <string>

#include "tests/support/FrameDeck.h"
#include "tests/support/Refused.h"
#include "tests/support/SpaceFrame.h"

namespace kestol {

namespace {

/// The frame of a house in SI units: large stiffnesses, pivots that rounding keeps from 0.
FrameDeck UnsupportedFrame() {
  FrameDeck deck = BareSpaceFrame([](const Vector3& p) { return p; });
  deck.Material(1, "E=2.1e11 A=5e-3 Iz=3e-5 Iy=1e-5 G=8e10 J=1e-6");
  return deck.Load(7, {1000, 2000, 3000, 0, 0, 0});
}

void ExpectRefused(const FrameDeck& deck, const std::string& warnings) {
  const auto with = [&](const std::string& key) { return FrameDeck(deck).Key(key).Text(); };
  kestol::ExpectRefused(with, warnings);
}

TEST(UnstableFrames, WithoutSupportsAreRefused) {
  ExpectRefused(UnsupportedFrame(), "There are no prescribed nodes in the model!!!\n");
}

TEST(UnstableFrames, OnOnePinAreRefused) {
  ExpectRefused(UnsupportedFrame().Support(1, "111000 0 0 0 0 0 0"),
                "There is only one prescribed node in the model!!!\n"
                "Its 6 degrees of freedom should be prescribed!!!\n");
}

TEST(UnstableFrames, ThatTurnAboutTwoPinsAreRefused) {
  FrameDeck deck = UnsupportedFrame();
  deck.Support(1, "111000 0 0 0 0 0 0").Support(2, "111000 0 0 0 0 0 0");
  ExpectRefused(deck,
                "There are only two prescribed nodew in the model!!!\n"
                "Model can rotate around axe:   -4.000000e+00  -3.000000e-01   0.000000e+00 !!!\n");
}

TEST(UnstableFrames, WithoutSupportInOneDirectionAreRefused) {
  FrameDeck deck = UnsupportedFrame();
  for (int n = 1; n <= kFeet; ++n) deck.Support(n, "110000 0 0 0 0 0 0");
  ExpectRefused(deck, "");
}

TEST(UnstableFrames, InThePlaneAreRefusedWithoutWarning) {
  FrameDeck deck(2);
  deck.Node(1, 0, 0).Node(2, 3.7, 1.3).Node(3, 7.1, 0.2).Beam(1, 1, 2).Beam(2, 2, 3);
  deck.Material(1, "E=2.1e11 A=5e-3 Iz=3e-5").Support(1, "110 0 0 0").Load(3, {0, -1000, 0});
  ExpectRefused(deck, "");
}

TEST(UnstableFrames, WithAPartThatIsNotHeldAreRefused) {
  FrameDeck deck = SpaceFrame().Node(9, 20, 0, 0).Node(10, 21, 2, 3).Beam(10, 9, 10);
  ExpectRefused(deck.Load(10, {1, 0, 0, 0, 0, 0}), "");
}

}  // namespace

}  // namespace kestol
