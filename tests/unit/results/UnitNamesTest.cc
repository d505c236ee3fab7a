#include <gtest/gtest.h>

#include <string>

#include "kestol/ReadDeck.h"
#include "results/UnitNames.h"
#include "tests/support/FrameDeck.h"

namespace kestol {

namespace {

UnitNames NamesUnder(const std::string& keys) {
  FrameDeck deck(2);
  deck.Node(1, 0, 0).Node(2, 2, 0).Beam(1, 1, 2).Material(1, "E=2e11 A=1e-2 Iz=1e-5").Clamp(1);
  deck.Key(keys);
  return UnitNamesOf(ReadDeckText(deck.Text(), "test").units);
}

TEST(UnitNames, AreThoseOfTheResultSystem) {
  const UnitNames names =
      NamesUnder("units_names\nSI N m Pa 1 1\nkN-m kN m kPa 1000 1\nend\nunits_res kN-m");
  EXPECT_TRUE(names.Known());
  EXPECT_EQ(names.force, "kN");
  EXPECT_EQ(names.length, "m");
  EXPECT_EQ(names.pressure, "kPa");
}

TEST(UnitNames, AreEmptyWhereTheDeckChoosesNone) {
  EXPECT_FALSE(NamesUnder("").Known());
  EXPECT_FALSE(NamesUnder("units_names\nkN-m kN m kPa 1000 1\nend").Known());
}

}  // namespace

}  // namespace kestol
