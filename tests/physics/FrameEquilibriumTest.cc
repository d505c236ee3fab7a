// Whatever the load on a frame, its supports balance it.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "tests/support/Resultant.h"
#include "tests/support/RunDeck.h"
#include "tests/support/SpaceFrame.h"

namespace kestol {

namespace {

Resultant OfSupports(const SolvedProject& project) {
  Resultant sum;
  for (int n = 1; n <= kFeet; ++n) {
    const std::vector<double> f = SupportForces(project, n);
    sum.AddForce(kFrame[n - 1], {f[0], f[1], f[2]});
    sum.AddCouple({f[3], f[4], f[5]});
  }
  return sum;
}

const Vector3& End(int beam, int end) {
  return kFrame[kBeams[beam - 1][end] - 1];
}

Vector3 Chord(int beam) {
  return Minus(End(beam, 1), End(beam, 0));
}

/// A beam's load as one force half-way, and the couple.
void ExpectBalance(const SolvedProject& project, int beam, const Vector3& total,
                   const Vector3& couple = {}) {
  Resultant sum = OfSupports(project);
  sum.AddForce(Times(Plus(End(beam, 0), End(beam, 1)), 0.5), total);
  sum.AddCouple(couple);
  ExpectNone(sum, 1e-9);
}

TEST(FrameEquilibrium, HoldsForGlobalLoadsOnEveryBeam) {
  for (int beam = 1; beam <= kFrameBeams; ++beam) {
    const auto project =
        RunDeck(SpaceFrame().LineLoad("global_pressure_loads", beam, "3 -5 7").Text());
    ExpectBalance(*project, beam, Times({3, -5, 7}, Norm(Chord(beam))));
  }
}

TEST(FrameEquilibrium, HoldsForProjectedLoads) {
  const int beam = 9;  // 5 to 7
  const auto project =
      RunDeck(SpaceFrame().LineLoad("global_projected_pressure_loads", beam, "0 0 -8").Text());
  const double plan = std::hypot(Chord(beam)[0], Chord(beam)[1]);
  ExpectBalance(*project, beam, {0.0, 0.0, -8 * plan});
}

TEST(FrameEquilibrium, HoldsForLocalLoadsAndCouples) {
  for (int beam = 1; beam <= kFrameBeams; ++beam) {
    const auto project =
        RunDeck(SpaceFrame().LineLoad("local_pressure_loads", beam, "2 -3 4 5").Text());
    BeamElement element(*project);
    element.SetElem(*project->meshes[0]->elems.Get(beam));
    Vector3 total, couple;
    for (int i = 1; i <= 3; ++i) {
      const Matriu& T = element.T;
      total[i - 1] = (2 * T(i, 1) - 3 * T(i, 2) + 4 * T(i, 3)) * element.L;
      couple[i - 1] = 5 * T(i, 1) * element.L;
    }
    ExpectBalance(*project, beam, total, couple);
  }
}

TEST(FrameEquilibrium, HoldsForOwnWeight) {
  FrameDeck deck = SpaceFrame().Material(2, "E=2e6 A=0.02 Iz=1e-3 Iy=1e-3 G=8e5 J=1e-3 Weight=78");
  deck.Beam(10, 6, 8, 2).Key("GravityDirection 0 0 -1");
  const auto project = RunDeck(deck.Text());
  const Vector3 a = kFrame[5], b = kFrame[7];
  Resultant sum = OfSupports(*project);
  sum.AddForce(Times(Plus(a, b), 0.5), {0.0, 0.0, -78 * 0.02 * Norm(Minus(b, a))});
  ExpectNone(sum, 1e-9);
}

TEST(FrameEquilibrium, HoldsForNodalLoadsAndPrintedReactions) {
  const auto project =
      RunDeck(SpaceFrame().Load(7, {1, 2, 3, 4, 5, 6}).Load(5, {-7, 0, 1, 0, 0, 0}).Text());
  Resultant sum;
  const auto reactions = [&](int n, int d) {
    return Vector3{PrintedReaction(*project, n, d), PrintedReaction(*project, n, d + 1),
                   PrintedReaction(*project, n, d + 2)};
  };
  for (int n = 1; n <= kFeet; ++n) {
    sum.AddForce(kFrame[n - 1], reactions(n, 1));
    sum.AddCouple(reactions(n, 4));
  }
  sum.AddForce(kFrame[6], {1, 2, 3});
  sum.AddCouple({4, 5, 6});
  sum.AddForce(kFrame[4], {-7, 0, 1});
  ExpectNone(sum, 1e-9);
}

}  // namespace

}  // namespace kestol
