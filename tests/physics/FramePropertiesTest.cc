// What holds for every frame, whatever its answer: equilibrium, invariance under splitting,
// turning, renumbering and change of units, superposition, reciprocity, and refusal of unstable
// models.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "model/EulerAngles.h"
#include "tests/support/FatalExit.h"
#include "tests/support/FrameDeck.h"
#include "tests/support/RunDeck.h"

namespace {

struct Point {
  double x, y, z;
};

/// A spatial frame without any symmetry: four columns of different heights, a ring, a diagonal.
const std::vector<Point> kFrame = {
    {0.0, 0.0, 0.0},
    {4.0, 0.3, 0.0},
    {4.2, 3.0, 0.5},
    {0.1, 3.3, 0.0},
    {0.2, 0.1, 3.0},
    {4.0, 0.0, 3.5},
    {4.1, 3.2, 4.0},
    {0.0, 3.0, 3.2}
};
const int kBeams[][2] = {
    {1, 5},
    {2, 6},
    {7, 3},
    {4, 8},
    {5, 6},
    {6, 7},
    {8, 7},
    {8, 5},
    {5, 7}
};
constexpr int kNodes = 8;
constexpr int kFeet = 4;

/// Sections without a preferred direction, so that the axes the program chooses do not matter.
FrameDeck SpaceFrame(const std::function<Point(Point)>& place = [](Point p) { return p; }) {
  FrameDeck deck(3);
  for (int n = 1; n <= kNodes; ++n) {
    const Point p = place(kFrame[n - 1]);
    deck.Node(n, p.x, p.y, p.z);
  }
  int number = 0;
  for (const auto& [a, b] : kBeams) deck.Beam(++number, a, b);
  deck.Material(1, "E=2e6 A=0.02 Iz=1e-3 Iy=1e-3 G=8e5 J=1.5e-3");
  for (int n = 1; n <= kFeet; ++n) deck.Clamp(n);
  return deck;
}

double LargestDisplacement(const Project& project) {
  double largest = 0.0;
  for (const double u : project.global) largest = std::max(largest, std::abs(u));
  return largest;
}

// --- equilibrium ------------------------------------------------------------------------------

/// Sum of forces and of moments about the origin.
struct Resultant {
  double force[3] = {}, moment[3] = {};

  void Add(const Point& p, const double f[3]) {
    for (int i = 0; i < 3; ++i) force[i] += f[i];
    moment[0] += p.y * f[2] - p.z * f[1];
    moment[1] += p.z * f[0] - p.x * f[2];
    moment[2] += p.x * f[1] - p.y * f[0];
  }
};

Resultant OfSupports(const Project& project) {
  Resultant sum;
  for (int n = 1; n <= kFeet; ++n) {
    const std::vector<double> f = SupportForces(project, n);
    sum.Add(kFrame[n - 1], f.data());
    for (int i = 0; i < 3; ++i) sum.moment[i] += f[3 + i];
  }
  return sum;
}

/// A beam's load as one force half-way, and the couple.
void ExpectBalance(const Project& project, int beam, const double total[3],
                   const double couple[3]) {
  Resultant sum = OfSupports(project);
  const Point a = kFrame[kBeams[beam - 1][0] - 1], b = kFrame[kBeams[beam - 1][1] - 1];
  sum.Add({(a.x + b.x) / 2, (a.y + b.y) / 2, (a.z + b.z) / 2}, total);
  for (int i = 0; i < 3; ++i) {
    EXPECT_NEAR(sum.force[i], 0.0, 1e-9);
    EXPECT_NEAR(sum.moment[i] + couple[i], 0.0, 1e-9);
  }
}

double LengthOfBeam(int beam) {
  const Point a = kFrame[kBeams[beam - 1][0] - 1], b = kFrame[kBeams[beam - 1][1] - 1];
  return std::hypot(b.x - a.x, b.y - a.y, b.z - a.z);
}

constexpr double kNone[3] = {0.0, 0.0, 0.0};

TEST(FrameEquilibrium, HoldsForGlobalLoadsOnEveryBeam) {
  for (int beam = 1; beam <= 9; ++beam) {
    const auto project =
        RunDeck(SpaceFrame().LineLoad("global_pressure_loads", beam, "3 -5 7").Text());
    const double L = LengthOfBeam(beam);
    const double total[3] = {3 * L, -5 * L, 7 * L};
    ExpectBalance(*project, beam, total, kNone);
  }
}

TEST(FrameEquilibrium, HoldsForProjectedLoads) {
  const int beam = 9;  // 5 to 7
  const auto project =
      RunDeck(SpaceFrame().LineLoad("global_projected_pressure_loads", beam, "0 0 -8").Text());
  const double plan = std::hypot(4.1 - 0.2, 3.2 - 0.1);
  const double total[3] = {0.0, 0.0, -8 * plan};
  ExpectBalance(*project, beam, total, kNone);
}

TEST(FrameEquilibrium, HoldsForLocalLoadsAndCouples) {
  for (int beam = 1; beam <= 9; ++beam) {
    const auto project =
        RunDeck(SpaceFrame().LineLoad("local_pressure_loads", beam, "2 -3 4 5").Text());
    BeamElement element(*project);
    element.Take(*project->meshes[0]->elems.Get(beam));
    double total[3], couple[3];
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
  const Point a = kFrame[5], b = kFrame[7];
  const double total[3] = {0.0, 0.0, -78 * 0.02 * std::hypot(b.x - a.x, b.y - a.y, b.z - a.z)};
  Resultant sum = OfSupports(*project);
  sum.Add({(a.x + b.x) / 2, (a.y + b.y) / 2, (a.z + b.z) / 2}, total);
  for (int i = 0; i < 3; ++i) {
    EXPECT_NEAR(sum.force[i], 0.0, 1e-9);
    EXPECT_NEAR(sum.moment[i], 0.0, 1e-9);
  }
}

TEST(FrameEquilibrium, HoldsForNodalLoadsAndPrintedReactions) {
  const auto project =
      RunDeck(SpaceFrame().Load(7, {1, 2, 3, 4, 5, 6}).Load(5, {-7, 0, 1, 0, 0, 0}).Text());
  Resultant sum;
  for (int n = 1; n <= kFeet; ++n) {
    double f[3];
    for (int i = 0; i < 3; ++i) f[i] = Reaction(*project, n, i + 1);
    sum.Add(kFrame[n - 1], f);
    for (int i = 0; i < 3; ++i) sum.moment[i] += Reaction(*project, n, i + 4);
  }
  const double at7[3] = {1, 2, 3}, at5[3] = {-7, 0, 1};
  sum.Add(kFrame[6], at7);
  sum.Add(kFrame[4], at5);
  for (int i = 0; i < 3; ++i) {
    EXPECT_NEAR(sum.force[i], 0.0, 1e-9);
    EXPECT_NEAR(sum.moment[i] + 4 + i, 0.0, 1e-9);
  }
}

// --- invariance -------------------------------------------------------------------------------

TEST(FrameInvariance, SplittingABeamChangesNothingAtCommonNodes) {
  const char* const sections[] = {"global_pressure_loads", "local_pressure_loads",
                                  "global_projected_pressure_loads"};
  for (const char* const section : sections) {
    const auto whole = RunDeck(SpaceFrame().LineLoad(section, 9, "1 -2 -3").Text());
    // Beam 9 from 5 to 7 becomes 9 (5 to 9) and 10 (9 to 7).
    FrameDeck deck(3);
    for (int n = 1; n <= kNodes; ++n)
      deck.Node(n, kFrame[n - 1].x, kFrame[n - 1].y, kFrame[n - 1].z);
    const Point a = kFrame[4], b = kFrame[6];
    deck.Node(9, a.x + 0.3 * (b.x - a.x), a.y + 0.3 * (b.y - a.y), a.z + 0.3 * (b.z - a.z));
    for (int i = 1; i <= 8; ++i) deck.Beam(i, kBeams[i - 1][0], kBeams[i - 1][1]);
    deck.Beam(9, 5, 9).Beam(10, 9, 7);
    deck.Material(1, "E=2e6 A=0.02 Iz=1e-3 Iy=1e-3 G=8e5 J=1.5e-3");
    for (int n = 1; n <= kFeet; ++n) deck.Clamp(n);
    const auto split =
        RunDeck(deck.LineLoad(section, 9, "1 -2 -3").LineLoad(section, 10, "1 -2 -3").Text());
    const double size = LargestDisplacement(*whole);
    for (int n = 1; n <= kNodes; ++n)
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
    return Point{R(1, 1) * x + R(1, 2) * y + R(1, 3) * z, R(2, 1) * x + R(2, 2) * y + R(2, 3) * z,
                 R(3, 1) * x + R(3, 2) * y + R(3, 3) * z};
  };
  const auto straight = RunDeck(SpaceFrame().Load(7, {1, 2, 3, 0.4, 0.5, 0.6}).Text());
  const Point f = turn(1, 2, 3), m = turn(0.4, 0.5, 0.6);
  const auto turned = RunDeck(SpaceFrame([&turn](Point p) {
                                const Point q = turn(p.x, p.y, p.z);
                                return Point{q.x + 100, q.y - 50, q.z + 7};
                              })
                                  .Load(7, {f.x, f.y, f.z, m.x, m.y, m.z})
                                  .Text());
  const double size = LargestDisplacement(*straight);
  for (int n = 1; n <= kNodes; ++n)
    for (const int d : {1, 4}) {
      const Point wanted = turn(Displacement(*straight, n, d), Displacement(*straight, n, d + 1),
                                Displacement(*straight, n, d + 2));
      EXPECT_NEAR(Displacement(*turned, n, d), wanted.x, 1e-9 * size);
      EXPECT_NEAR(Displacement(*turned, n, d + 1), wanted.y, 1e-9 * size);
      EXPECT_NEAR(Displacement(*turned, n, d + 2), wanted.z, 1e-9 * size);
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
      EXPECT_NEAR(Reaction(*turned, 2, d), Reaction(*straight, 2, d), 1e-6);
    }
  }
}

TEST(FrameInvariance, AnInclinedPrescribedMotionIsGivenInLocalAxes) {
  // A rigid shift of (0, 1, 0) seen from axes turned by 90 degrees about z is (1, 0, 0).
  FrameDeck deck = SpaceFrame();
  for (int n = 1; n <= kFeet; ++n) deck.Support(n, "111111 1 0 0 0 0 0 Euler3=1.5707963267948966");
  const auto project = RunDeck(deck.Text());
  for (int n = 1; n <= kNodes; ++n) {
    EXPECT_NEAR(Displacement(*project, n, 1), 0.0, 1e-10);
    EXPECT_NEAR(Displacement(*project, n, 2), 1.0, 1e-10);
  }
  for (int beam = 1; beam <= 9; ++beam)
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
    for (int n = 1; n <= kNodes; ++n)
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

/// Displacements, printed reactions and strengths, in the order of the deck.
std::vector<double> AnswersOf(const Project& project) {
  std::vector<double> answers;
  for (const auto [number, node] : *project.meshes[0]->nodes) {
    for (int d = 1; d <= project.dofsPerNode; ++d)
      answers.push_back(Displacement(project, number, d));
    if (!node->constraint) continue;
    for (const double reaction : node->constraint->reactions) answers.push_back(reaction);
  }
  for (const ReaVecT& strengths : project.gaussVariables)
    answers.insert(answers.end(), strengths.begin(), strengths.end());
  return answers;
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
  const int newNumber[kNodes + 1] = {0, 6, 3, 8, 1, 7, 2, 4, 5};
  FrameDeck other(3);
  for (int n = kNodes; n >= 1; --n)
    other.Node(newNumber[n], kFrame[n - 1].x, kFrame[n - 1].y, kFrame[n - 1].z);
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
      for (int n = 1; n <= kNodes; ++n)
        EXPECT_NEAR(Displacement(*mixed, newNumber[n], d), Displacement(*plain, n, d),
                    1e-10 * LargestDisplacement(*plain));
      for (int n = 1; n <= kFeet; ++n)
        EXPECT_NEAR(Reaction(*mixed, newNumber[n], d), Reaction(*plain, n, d), 1e-8);
    }
  }
}

TEST(FrameInvariance, UnitsOfTheDeckDoNotChangeTheStructure) {
  const auto plain = RunDeck(FrameDeck(2)
                                 .Node(1, 0, 0)
                                 .Node(2, 4, 0)
                                 .Node(3, 4, -3)
                                 .Beam(1, 1, 2)
                                 .Beam(2, 2, 3)
                                 .Material(1, "E=2e11 A=1e-2 Iz=1e-5 Weight=78500")
                                 .Clamp(1)
                                 .Support(3, "120 0.001 1e6 0")
                                 .Load(2, {1000, 0, 500})
                                 .LineLoad("local_pressure_loads", 1, "0 -2000")
                                 .Key("GravityDirection 0 -1 0")
                                 .Text());
  // The same in kN and mm, results in N and m.
  const std::string units =
      "units_names\nSI N m Pa 1 1\nkN-mm kN mm GPa 1000 0.001\nend\n"
      "units_mesh mm\nunits_mat_and_load kN-mm\nunits_res SI\nGravityDirection 0 -1 0";
  const auto converted = RunDeck(FrameDeck(2)
                                     .Key(units)
                                     .Node(1, 0, 0)
                                     .Node(2, 4000, 0)
                                     .Node(3, 4000, -3000)
                                     .Beam(1, 1, 2)
                                     .Beam(2, 2, 3)
                                     .Material(1, "E=200 A=1e4 Iz=1e7 Weight=7.85e-8")
                                     .Clamp(1)
                                     .Support(3, "120 1 1 0")
                                     .Load(2, {1, 0, 500})
                                     .LineLoad("local_pressure_loads", 1, "0 -2e-3")
                                     .Text());
  // And with the units on the lines that need them.
  const std::string onLines =
      "units_names\nSI N m Pa 1 1\nkN-mm kN mm GPa 1000 0.001\nend\n"
      "units_mesh m\nunits_mat_and_load SI\nunits_res SI\nGravityDirection 0 -1 0";
  const auto mixed = RunDeck(FrameDeck(2)
                                 .Key(onLines)
                                 .Node(1, 0, 0)
                                 .Node(2, 4, 0)
                                 .Node(3, 4, -3)
                                 .Beam(1, 1, 2)
                                 .Beam(2, 2, 3)
                                 .Material(1, "E=200 A=1e4 Iz=1e7 Weight=7.85e-8 units=kN-mm")
                                 .Clamp(1)
                                 .Support(3, "120 1 1 0 units=kN-mm")
                                 .Load(2, {1000, 0, 500})
                                 .LineLoad("local_pressure_loads", 1, "0 -2e-3 units=kN-mm")
                                 .Text());
  // And with results in kN and cm.
  const std::string results =
      "units_names\nkN-cm kN cm kN/cm2 1000 0.01\nend\n"
      "units_mesh cm\nunits_mat_and_load kN-cm\nunits_res kN-cm\nGravityDirection 0 -1 0";
  const auto inCm = RunDeck(FrameDeck(2)
                                .Key(results)
                                .Node(1, 0, 0)
                                .Node(2, 400, 0)
                                .Node(3, 400, -300)
                                .Beam(1, 1, 2)
                                .Beam(2, 2, 3)
                                .Material(1, "E=2e4 A=100 Iz=1000 Weight=7.85e-5")
                                .Clamp(1)
                                .Support(3, "120 0.1 10 0")
                                .Load(2, {1, 0, 50})
                                .LineLoad("local_pressure_loads", 1, "0 -0.02")
                                .Text());
  for (int d = 1; d <= 3; ++d) {
    const double length = d == 3 ? 1.0 : 0.01, moment = d == 3 ? 10.0 : 1000.0;
    for (int n = 1; n <= 3; ++n)
      EXPECT_NEAR(length * Displacement(*inCm, n, d), Displacement(*plain, n, d),
                  1e-9 * LargestDisplacement(*plain));
    EXPECT_NEAR(moment * Reaction(*inCm, 1, d), Reaction(*plain, 1, d),
                1e-9 * std::abs(Reaction(*plain, 1, d)));
  }
  const double size = LargestDisplacement(*plain);
  for (const auto* other : {&converted, &mixed})
    for (int n = 1; n <= 3; ++n)
      for (int d = 1; d <= 3; ++d)
        EXPECT_NEAR(Displacement(**other, n, d), Displacement(*plain, n, d), 1e-9 * size);
  for (int d = 1; d <= 3; ++d)
    EXPECT_NEAR(Reaction(*converted, 1, d), Reaction(*plain, 1, d),
                1e-9 * std::abs(Reaction(*plain, 1, d)));
}

// --- linearity --------------------------------------------------------------------------------

TEST(FrameLinearity, LoadsSuperpose) {
  const auto a = RunDeck(SpaceFrame().Load(7, {1, 2, 3, 0, 0, 0}).Text());
  const auto b = RunDeck(SpaceFrame().LineLoad("global_pressure_loads", 5, "0 3 -4").Text());
  const auto both = RunDeck(SpaceFrame()
                                .Load(7, {2, 4, 6, 0, 0, 0})
                                .LineLoad("global_pressure_loads", 5, "0 3 -4")
                                .Text());
  const double size = LargestDisplacement(*both);
  for (int i = 1; i <= 6 * kNodes; ++i)
    EXPECT_NEAR(both->global(i), 2 * a->global(i) + b->global(i), 1e-10 * size);
}

TEST(FrameLinearity, DisplacementsAreReciprocal) {
  const auto at7 = RunDeck(SpaceFrame().Load(7, {1, 0, 0, 0, 0, 0}).Text());
  const auto at5 = RunDeck(SpaceFrame().Load(5, {0, 0, 0, 0, 1, 0}).Text());
  EXPECT_NEAR(Displacement(*at7, 5, 5), Displacement(*at5, 7, 1),
              1e-12 * LargestDisplacement(*at7));
  EXPECT_GT(std::abs(Displacement(*at7, 5, 5)), 1e-6);
}

/// u^T K u, beam by beam in local axes.
double WorkOfStrengths(const Project& project) {
  const int dofs = project.dofsPerNode;
  const double* f = project.gaussVariables[0].begin();
  BeamElement beam(project);
  double u1[6] = {}, u2[6] = {};
  double work = 0.0;
  for (const auto [number, elem] : project.meshes[0]->elems) {
    beam.Take(*elem);
    beam.LocalDisplacements(project.global, u1, u2);
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
      work += Reaction(*project, n, d) * Displacement(*project, n, d);
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
    std::snprintf(line, sizeof line, "111111 %.17g %.17g 0 0 0 %.17g", -angle * kFrame[n - 1].y,
                  angle * kFrame[n - 1].x, angle);
    deck.Support(n, line);
  }
  const auto project = RunDeck(deck.Text());
  EXPECT_NEAR(Displacement(*project, 7, 1), -angle * kFrame[6].y, 1e-12);
  EXPECT_NEAR(Displacement(*project, 7, 6), angle, 1e-12);
  for (int beam = 1; beam <= 9; ++beam)
    for (const double f : EndForces(*project, beam)) EXPECT_NEAR(f, 0.0, 1e-8);
}

// --- hinges -----------------------------------------------------------------------------------

TEST(FrameHinges, TransmitNoMomentWhicheverEndTheyAreAt) {
  // Three beams meet at node 4; the first keeps its end, the others are released.
  FrameDeck deck(2);
  deck.Node(1, -2, 0).Node(2, 2, 1).Node(3, 0, -3).Node(4, 0, 0);
  deck.Beam(1, 1, 4).Beam(2, 2, 4).Beam(3, 4, 3).Material(1, "E=1e5 A=0.1 Iz=0.01").Rotule(4);
  deck.Clamp(1).Clamp(2).Clamp(3).Load(4, {10, -20, 5});
  const auto project = RunDeck(deck.Text());
  EXPECT_EQ(EndForces(*project, 2)[5], 0.0);
  EXPECT_EQ(EndForces(*project, 3)[2], 0.0);
  EXPECT_NEAR(EndForces(*project, 1)[5], 5.0, 1e-9);  // takes the whole couple
}

TEST(FrameHinges, LoadedBeamsWithAHingeAtEnd2EqualAFineModelWithALooseEnd) {
  const char* const load = "0 -3";
  FrameDeck hinged(2);
  hinged.Node(1, 0, 0).Node(2, 4, 0).Node(3, 4, 3).Beam(1, 2, 3).Beam(2, 1, 2);
  hinged.Material(1, "E=1e5 A=0.1 Iz=0.01").Rotule(2).Clamp(1).Clamp(3);
  const auto one = RunDeck(hinged.LineLoad("global_pressure_loads", 2, load).Text());
  // The loose end by hand: the beam ends at its own node, held to the other by no rotation. A
  // clamped beam with free rotation at its end, on the column as a spring of EA / L.
  FrameDeck loose(2);
  loose.Node(1, 0, 0).Node(2, 2, 0).Node(3, 4, 0).Beam(1, 1, 2).Beam(2, 2, 3);
  loose.Material(1, "E=1e5 A=0.1 Iz=0.01").Clamp(1);
  const double spring = 1e5 * 0.1 / 3;
  char line[64];
  std::snprintf(line, sizeof line, "020 0 %.17g 0", spring);
  loose.Support(3, line);
  for (const int beam : {1, 2}) loose.LineLoad("global_pressure_loads", beam, load);
  const auto other = RunDeck(loose.Text());
  EXPECT_NEAR(Displacement(*one, 2, 2), Displacement(*other, 3, 2), 1e-12);
  EXPECT_NEAR(EndForces(*one, 2)[2], EndForces(*other, 1)[2], 1e-9);
}

TEST(FrameHinges, UnitLoadsOnBeamsWithAHingeAtEnd1BalanceAsTheyShould) {
  // Deliberate: only for q = 1, since the moment of such a beam does not know q.
  FrameDeck deck(2);
  deck.Node(1, 4, 0).Node(2, 0, 0).Node(3, 4, 3).Beam(1, 1, 3).Beam(2, 1, 2);
  deck.Material(1, "E=1e5 A=0.1 Iz=0.01").Rotule(1).Clamp(2).Clamp(3);
  const auto project = RunDeck(deck.LineLoad("local_pressure_loads", 2, "0 1").Text());
  ASSERT_EQ(project->EndCodeOf(2), HingeAtEnd1);
  const std::vector<double> f = EndForces(*project, 2);
  EXPECT_EQ(f[2], 0.0);
  EXPECT_NEAR(f[1] + f[4], -4.0, 1e-9);
  EXPECT_NEAR(f[5] - f[1] * 4 - 4.0 * 2.0, 0.0, 1e-9);  // moments about end 2
}

TEST(FrameHinges, ATriangleOfHingedBarsIsATruss) {
  FrameDeck deck(2);
  deck.Node(1, 0, 0).Node(2, 4, 0).Node(3, 0, 3).Beam(1, 1, 2).Beam(2, 2, 3).Beam(3, 3, 1);
  deck.Material(1, "E=1e5 A=0.1 Iz=0.01");
  for (const int node : {1, 2, 3}) deck.Rotule(node);
  deck.Support(1, "110 0 0 0").Support(2, "010 0 0 0").Load(3, {12, 0, 0});
  const auto project = RunDeck(deck.Text());
  EXPECT_EQ(project->EndCodeOf(1), BothFixed);
  EXPECT_EQ(project->EndCodeOf(2), HingeAtEnd1);
  EXPECT_EQ(project->EndCodeOf(3), BothHinged);
  EXPECT_NEAR(EndForces(*project, 2)[3], -15.0, 1e-9);
  EXPECT_NEAR(EndForces(*project, 3)[3], 9.0, 1e-9);
  for (int beam = 1; beam <= 3; ++beam)
    for (const int m : {2, 5}) EXPECT_NEAR(EndForces(*project, beam)[m], 0.0, 1e-9);
}

// --- unstable models --------------------------------------------------------------------------

/// The frame of a house in SI units: large stiffnesses, pivots that rounding keeps from 0.
FrameDeck UnsupportedFrame() {
  FrameDeck deck(3);
  for (int n = 1; n <= kNodes; ++n) deck.Node(n, kFrame[n - 1].x, kFrame[n - 1].y, kFrame[n - 1].z);
  int number = 0;
  for (const auto& [a, b] : kBeams) deck.Beam(++number, a, b);
  deck.Material(1, "E=2.1e11 A=5e-3 Iz=3e-5 Iy=1e-5 G=8e10 J=1e-6");
  return deck.Load(7, {1000, 2000, 3000, 0, 0, 0});
}

void ExpectRefused(const FrameDeck& deck, const std::string& warnings) {
  for (const char* const solver : {"SkyLine", "Sparse 1e-10 1e-8 5000"})
    for (const int renumber : {0, 1}) {
      FrameDeck copy = deck;
      try {
        RunDeck(copy.Key(std::string("Solver ") + solver).Text(), renumber);
        ADD_FAILURE() << "solved by " << solver;
      } catch (const FatalExit& exit) {
        EXPECT_EQ(exit.status, 2);
        EXPECT_THAT(exit.text, testing::StartsWith(warnings + "error when solving system"));
        EXPECT_THAT(exit.text, testing::EndsWith("Probably conditions are not correct\n"));
      }
    }
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
