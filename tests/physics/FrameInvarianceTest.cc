// What does not change the answer of a frame: cuts, turns, numbers, meshes, solvers.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "model/EulerAngles.h"
#include "tests/support/Answers.h"
#include "tests/support/RunDeck.h"
#include "tests/support/SpaceFrame.h"

namespace kestol {

namespace {

TEST(FrameInvariance, SplittingABeamChangesNothingAtCommonNodes) {
  const char* const sections[] = {"global_pressure_loads", "local_pressure_loads",
                                  "global_projected_pressure_loads"};
  for (const char* const section : sections) {
    const auto whole = RunDeck(SpaceFrame().LineLoad(section, 9, "1 -2 -3").Text());
    // Beam 9 from 5 to 7 becomes 9 (5 to 9) and 10 (9 to 7).
    FrameDeck deck(3);
    for (int n = 1; n <= kFrameNodes; ++n)
      deck.Node(n, kFrame[n - 1][0], kFrame[n - 1][1], kFrame[n - 1][2]);
    const Vector3 a = kFrame[4], b = kFrame[6];
    deck.Node(9, a[0] + 0.3 * (b[0] - a[0]), a[1] + 0.3 * (b[1] - a[1]),
              a[2] + 0.3 * (b[2] - a[2]));
    for (int i = 1; i <= 8; ++i) deck.Beam(i, kBeams[i - 1][0], kBeams[i - 1][1]);
    deck.Beam(9, 5, 9).Beam(10, 9, 7);
    deck.Material(1, "E=2e6 A=0.02 Iz=1e-3 Iy=1e-3 G=8e5 J=1.5e-3");
    for (int n = 1; n <= kFeet; ++n) deck.Clamp(n);
    const auto split =
        RunDeck(deck.LineLoad(section, 9, "1 -2 -3").LineLoad(section, 10, "1 -2 -3").Text());
    const double size = LargestDisplacement(*whole);
    for (int n = 1; n <= kFrameNodes; ++n)
      for (int d = 1; d <= 6; ++d)
        EXPECT_NEAR(Displacement(*split, n, d), Displacement(*whole, n, d), 1e-10 * size)
            << section;
    // The cut carries what the whole beam carries there.
    const std::vector<double> end = EndForces(*split, 9), begin = EndForces(*split, 10);
    for (int d = 0; d < 6; ++d) EXPECT_NEAR(end[6 + d], -begin[d], 1e-9);
  }
}

TEST(FrameInvariance, TurningTheWholeModelTurnsTheAnswer) {
  Matriu R(3, 3);
  EulerRotation(0.7, -0.4, 1.9, R);
  const auto turn = [&R](double x, double y, double z) {
    return Vector3{R(1, 1) * x + R(1, 2) * y + R(1, 3) * z, R(2, 1) * x + R(2, 2) * y + R(2, 3) * z,
                   R(3, 1) * x + R(3, 2) * y + R(3, 3) * z};
  };
  const auto straight = RunDeck(SpaceFrame().Load(7, {1, 2, 3, 0.4, 0.5, 0.6}).Text());
  const Vector3 f = turn(1, 2, 3), m = turn(0.4, 0.5, 0.6);
  const auto turned = RunDeck(SpaceFrame([&turn](const Vector3& p) {
                                const Vector3 q = turn(p[0], p[1], p[2]);
                                return Vector3{q[0] + 100, q[1] - 50, q[2] + 7};
                              })
                                  .Load(7, {f[0], f[1], f[2], m[0], m[1], m[2]})
                                  .Text());
  const double size = LargestDisplacement(*straight);
  for (int n = 1; n <= kFrameNodes; ++n)
    for (const int d : {1, 4}) {
      const Vector3 wanted = turn(Displacement(*straight, n, d), Displacement(*straight, n, d + 1),
                                  Displacement(*straight, n, d + 2));
      EXPECT_NEAR(Displacement(*turned, n, d), wanted[0], 1e-9 * size);
      EXPECT_NEAR(Displacement(*turned, n, d + 1), wanted[1], 1e-9 * size);
      EXPECT_NEAR(Displacement(*turned, n, d + 2), wanted[2], 1e-9 * size);
    }
}

TEST(FrameInvariance, InclinedSupportsInEveryDirectionAreTheSameClamp) {
  // All degrees held: the axes in which they are held cannot matter.
  const auto straight = RunDeck(SpaceFrame().Load(7, {1, 2, 3, 0, 0, 0}).Text());
  FrameDeck deck = SpaceFrame().Load(7, {1, 2, 3, 0, 0, 0});
  for (int n = 1; n <= kFeet; ++n)
    deck.Support(n, "111111 0 0 0 0 0 0 Euler1=0.3 Euler2=0.8 Euler3=2");
  for (const char* const solver : {"SkyLine", "Sparse 1e-12 1e-10 5000"}) {
    FrameDeck copy = deck;
    const auto turned = RunDeck(copy.Key(std::string("Solver ") + solver).Text());
    for (int d = 1; d <= 6; ++d) {
      EXPECT_NEAR(Displacement(*turned, 7, d), Displacement(*straight, 7, d),
                  1e-8 * LargestDisplacement(*straight));
      EXPECT_NEAR(PrintedReaction(*turned, 2, d), PrintedReaction(*straight, 2, d), 1e-6);
    }
  }
}

TEST(FrameInvariance, AnInclinedPrescribedMotionIsGivenInLocalAxes) {
  // A rigid shift of (0, 1, 0) seen from axes turned by 90 degrees about z is (1, 0, 0).
  FrameDeck deck = SpaceFrame();
  for (int n = 1; n <= kFeet; ++n) deck.Support(n, "111111 1 0 0 0 0 0 Euler3=1.5707963267948966");
  const auto project = RunDeck(deck.Text());
  for (int n = 1; n <= kFrameNodes; ++n) {
    EXPECT_NEAR(Displacement(*project, n, 1), 0.0, 1e-10);
    EXPECT_NEAR(Displacement(*project, n, 2), 1.0, 1e-10);
  }
  for (int beam = 1; beam <= kFrameBeams; ++beam)
    for (const double f : EndForces(*project, beam)) EXPECT_NEAR(f, 0.0, 1e-5);
}

TEST(FrameInvariance, BothSolversAndBothNumberingsAgree) {
  FrameDeck deck = SpaceFrame().LineLoad("global_pressure_loads", 9, "1 -2 -3");
  FrameDeck sky = deck, sparse = deck;
  sky.Key("Solver SkyLine");
  sparse.Key("Solver Sparse 1e-14 1e-10 5000");
  const auto reference = RunDeck(sky.Text(), 1);
  for (const std::string& other : {sky.Text(), sparse.Text(), deck.Text()}) {
    const auto project = RunDeck(other, 0);
    for (int n = 1; n <= kFrameNodes; ++n)
      for (int d = 1; d <= 6; ++d)
        EXPECT_NEAR(Displacement(*project, n, d), Displacement(*reference, n, d),
                    1e-8 * LargestDisplacement(*reference));
  }
}

/// Frames that use everything that goes into the equations.
std::vector<FrameDeck> EveryKindOfFrame() {
  std::vector<FrameDeck> decks;
  decks.push_back(SpaceFrame()
                      .Load(7, {1, 2, 3, 0.4, 0.5, 0.6})
                      .LineLoad("global_pressure_loads", 5, "0 3 -4")
                      .LineLoad("local_pressure_loads", 6, "2 -3 4 5")
                      .LineLoad("global_projected_pressure_loads", 9, "0 0 -8"));
  decks.push_back(SpaceFrame()
                      .Support(5, "012020 0 1e-3 400 0 50 0 Euler1=0.3 Euler2=0.8 Euler3=2")
                      .Support(8, "001000 0 0 -2e-3 0 0 0")
                      .Load(6, {3, -1, -9, 0, 0, 0}));
  decks.push_back(SpaceFrame()
                      .Rotule(5)
                      .Rotule(7)
                      .Load(7, {1, 2, 3, 0, 0, 0})
                      .LineLoad("global_pressure_loads", 5, "1 0 0"));
  decks.push_back(FrameDeck(2)
                      .Node(1, 0, 0)
                      .Node(2, 0.2, 3)
                      .Node(3, 4, 3.5)
                      .Node(4, 4, 0)
                      .Beam(1, 1, 2)
                      .Beam(2, 3, 2)
                      .Beam(3, 3, 4)
                      .Material(1, "E=1e5 A=0.1 Iz=0.01 Weight=7")
                      .Clamp(1)
                      .Rotule(3)
                      .Support(4, "122 1e-3 2e3 40 Euler3=0.4")
                      .Load(2, {12, 0, 5})
                      .Key("GravityDirection 0 -1 0"));
  return decks;
}

TEST(FrameInvariance, EverySolverGivesTheSameInEveryNumbering) {
  for (const FrameDeck& deck : EveryKindOfFrame()) {
    FrameDeck direct = deck;
    const std::vector<double> wanted = AnswersOf(*RunDeck(direct.Key("Solver SkyLine").Text(), 1));
    for (const char* const solver : {"SkyLine", "Sparse 1e-13 1e-10 5000", "Automatic", "Double"})
      for (const int renumber : {0, 1}) {
        FrameDeck copy = deck;
        const std::vector<double> answers =
            AnswersOf(*RunDeck(copy.Key(std::string("Solver ") + solver).Text(), renumber));
        ASSERT_EQ(answers.size(), wanted.size());
        for (std::size_t i = 0; i < wanted.size(); ++i)
          EXPECT_NEAR(answers[i], wanted[i], 1e-7 * std::max(std::abs(wanted[i]), 1.0))
              << solver << ' ' << renumber << ' ' << i;
      }
  }
}

TEST(FrameInvariance, NumbersDirectionsAndMeshesOfTheDeckDoNotMatter) {
  const int newNumber[kFrameNodes + 1] = {0, 6, 3, 8, 1, 7, 2, 4, 5};
  FrameDeck other(3);
  for (int n = kFrameNodes; n >= 1; --n)
    other.Node(newNumber[n], kFrame[n - 1][0], kFrame[n - 1][1], kFrame[n - 1][2]);
  for (int i = 9; i >= 1; --i) {  // the other way round, in three meshes
    other.Beam(20 - i, newNumber[kBeams[i - 1][1]], newNumber[kBeams[i - 1][0]]);
    if (i == 7 || i == 3) other.NextMesh();
  }
  other.Material(1, "E=2e6 A=0.02 Iz=1e-3 Iy=1e-3 G=8e5 J=1.5e-3");
  for (int n = 1; n <= kFeet; ++n) other.Clamp(newNumber[n]);
  other.Load(newNumber[7], {1, 2, 3, 0.4, 0.5, 0.6});
  other.LineLoad("global_pressure_loads", 20 - 5, "0 3 -4");
  const auto plain = RunDeck(SpaceFrame()
                                 .Load(7, {1, 2, 3, 0.4, 0.5, 0.6})
                                 .LineLoad("global_pressure_loads", 5, "0 3 -4")
                                 .Text());
  for (const int renumber : {0, 1}) {
    const auto mixed = RunDeck(other.Text(), renumber);
    ASSERT_EQ(mixed->meshes.size(), 3U);
    for (int d = 1; d <= 6; ++d) {
      for (int n = 1; n <= kFrameNodes; ++n)
        EXPECT_NEAR(Displacement(*mixed, newNumber[n], d), Displacement(*plain, n, d),
                    1e-10 * LargestDisplacement(*plain));
      for (int n = 1; n <= kFeet; ++n)
        EXPECT_NEAR(PrintedReaction(*mixed, newNumber[n], d), PrintedReaction(*plain, n, d), 1e-8);
    }
  }
}

}  // namespace

}  // namespace kestol
