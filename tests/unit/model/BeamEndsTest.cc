#include <vector>

#include "model/BeamEnds.h"

namespace kestol {

namespace {

std::vector<BeamEnds> AllEnds() {
  std::vector<BeamEnds> all;
  for (int code = -1; code <= 111; ++code)
    if (const BeamEnds* const ends = FindBeamEnds(code)) all.push_back(*ends);
  return all;
}

TEST(BeamEnds, DigitsOfTheCodeSayWhichEndIsHinged) {
  std::vector<int> codes;
  for (const BeamEnds& ends : AllEnds()) {
    codes.push_back(ends.code);
    EXPECT_EQ(ends.hinged1, ends.code / 10 == 0) << ends.code;
    EXPECT_EQ(ends.hinged2, ends.code % 10 == 0) << ends.code;
    EXPECT_EQ(EndCodeOf(ends.hinged1, ends.hinged2), ends.code);
  }
  EXPECT_THAT(codes, testing::ElementsAre(0, 1, 10, 11));
}

TEST(BeamEnds, BendingIsInEquilibriumAndFreeAtHinges) {
  for (const BeamEnds& ends : AllEnds()) {
    const BendingTerms& k = ends.bending;
    EXPECT_EQ(k.r1r1 + k.r1r2, k.vr1) << ends.code;  // the end moments are held by the shears
    EXPECT_EQ(k.r1r2 + k.r2r2, k.vr2) << ends.code;
    EXPECT_EQ(k.vr1 + k.vr2, k.vv) << ends.code;
    EXPECT_EQ(k.r1r1 == 0.0, ends.hinged1) << ends.code;
    EXPECT_EQ(k.r2r2 == 0.0, ends.hinged2) << ends.code;
  }
}

TEST(BeamEnds, LoadedBeamIsHeldAtItsEndsAndFreeAtHinges) {
  for (const BeamEnds& ends : AllEnds()) {
    EXPECT_EQ(ends.deflection(0.0), 0.0) << ends.code;
    EXPECT_EQ(ends.deflection(1.0), 0.0) << ends.code;
    EXPECT_EQ(ends.slope(0.0) == 0.0, !ends.hinged1) << ends.code;
    EXPECT_EQ(ends.slope(1.0) == 0.0, !ends.hinged2) << ends.code;
    EXPECT_EQ(ends.moment(0.0, 1.0, 1.0) == 0.0, ends.hinged1) << ends.code;
    EXPECT_EQ(ends.moment(1.0, 1.0, 1.0) == 0.0, ends.hinged2) << ends.code;
  }
}

TEST(BeamEnds, SlopeIsTheDerivativeOfTheDeflectionAndTheMomentThatOfTheSlope) {
  constexpr double h = 1e-5;
  for (const BeamEnds& ends : AllEnds())
    for (const double xi : {0.1, 0.3, 0.5, 0.8}) {
      EXPECT_NEAR((ends.deflection(xi + h) - ends.deflection(xi - h)) / (2 * h), ends.slope(xi),
                  1e-10)
          << ends.code;
      EXPECT_NEAR((ends.slope(xi + h) - ends.slope(xi - h)) / (2 * h), ends.moment(xi, 1.0, 1.0),
                  1e-9)
          << ends.code;
    }
}

TEST(BeamEnds, ShearIsTheDerivativeOfTheMoment) {
  constexpr double h = 1e-5, L = 3.0;
  for (const BeamEnds& ends : AllEnds())
    for (const double x : {0.2, 1.5, 2.4})
      EXPECT_NEAR((ends.moment(x + h, L, 1.0) - ends.moment(x - h, L, 1.0)) / (2 * h),
                  -ends.axial(x, L, 1.0), 1e-9)
          << ends.code;
}

}  // namespace

}  // namespace kestol
