// Superposition, reciprocity, work and rigid motions of frames.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "tests/support/Answers.h"
#include "tests/support/RunDeck.h"
#include "tests/support/SpaceFrame.h"

namespace kestol {

namespace {

TEST(FrameLinearity, LoadsSuperpose) {
  const auto a = RunDeck(SpaceFrame().Load(7, {1, 2, 3, 0, 0, 0}).Text());
  const auto b = RunDeck(SpaceFrame().LineLoad("global_pressure_loads", 5, "0 3 -4").Text());
  const auto both = RunDeck(SpaceFrame()
                                .Load(7, {2, 4, 6, 0, 0, 0})
                                .LineLoad("global_pressure_loads", 5, "0 3 -4")
                                .Text());
  const double size = LargestDisplacement(*both);
  for (int i = 1; i <= 6 * kFrameNodes; ++i)
    EXPECT_NEAR(both->results.displacements(i),
                2 * a->results.displacements(i) + b->results.displacements(i), 1e-10 * size);
}

TEST(FrameLinearity, DisplacementsAreReciprocal) {
  const auto at7 = RunDeck(SpaceFrame().Load(7, {1, 0, 0, 0, 0, 0}).Text());
  const auto at5 = RunDeck(SpaceFrame().Load(5, {0, 0, 0, 0, 1, 0}).Text());
  EXPECT_NEAR(Displacement(*at7, 5, 5), Displacement(*at5, 7, 1),
              1e-12 * LargestDisplacement(*at7));
  EXPECT_GT(std::abs(Displacement(*at7, 5, 5)), 1e-6);
}

/// u^T K u, beam by beam in local axes.
double WorkOfStrengths(const SolvedProject& project) {
  const int dofs = project.dofsPerNode;
  const double* f = project.results.meshes[0].local.begin();
  BeamElement beam(project);
  double u1[6] = {}, u2[6] = {};
  double work = 0.0;
  for (const auto [number, elem] : project.meshes[0]->elems) {
    beam.SetElem(*elem);
    beam.LocalDisplacements(project.results.displacements, u1, u2);
    for (int d = 0; d < dofs; ++d) work += f[d] * u1[d] + f[dofs + d] * u2[d];
    f += 2 * dofs;
  }
  return work;
}

TEST(FrameLinearity, TheWorkOfLoadsAndSupportsIsThatOfTheStrengths) {
  FrameDeck deck = SpaceFrame().Rotule(6).Load(7, {1, 2, 3, 4, 5, 6}).Load(5, {-7, 0, 1, 0, 0, 0});
  const auto project =
      RunDeck(deck.Support(8, "020001 0 300 0 0 0 1e-3").Support(2, "111111 .01 0 0 0 0 0").Text());
  double work = -7 * Displacement(*project, 5, 1) + Displacement(*project, 5, 3);
  for (int d = 1; d <= 6; ++d) {
    work += d * Displacement(*project, 7, d);
    for (const int n : {1, 2, 3, 4, 8})
      work += PrintedReaction(*project, n, d) * Displacement(*project, n, d);
  }
  EXPECT_GT(work, 1e-3);
  EXPECT_NEAR(WorkOfStrengths(*project), work, 1e-9 * work);
}

TEST(FrameLinearity, RigidMotionsOfTheSupportsGiveNoForces) {
  // All feet turn by a small angle about z through the origin.
  const double angle = 1e-3;
  FrameDeck deck = SpaceFrame();
  for (int n = 1; n <= kFeet; ++n) {
    char line[128];
    std::snprintf(line, sizeof line, "111111 %.17g %.17g 0 0 0 %.17g", -angle * kFrame[n - 1][1],
                  angle * kFrame[n - 1][0], angle);
    deck.Support(n, line);
  }
  const auto project = RunDeck(deck.Text());
  EXPECT_NEAR(Displacement(*project, 7, 1), -angle * kFrame[6][1], 1e-12);
  EXPECT_NEAR(Displacement(*project, 7, 6), angle, 1e-12);
  for (int beam = 1; beam <= kFrameBeams; ++beam)
    for (const double f : EndForces(*project, beam)) EXPECT_NEAR(f, 0.0, 1e-8);
}

}  // namespace

}  // namespace kestol
