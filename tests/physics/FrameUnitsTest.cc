// One plane frame in several systems of units.
#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <string>

#include "tests/support/Answers.h"
#include "tests/support/FrameDeck.h"
#include "tests/support/RunDeck.h"

namespace kestol {

namespace {

/// What one author writes for the frame.
struct Written {
  std::string keys;  ///< unit keywords
  double metre;      ///< 1 m in the unit of the coordinates
  std::string material, spring;
  std::initializer_list<double> nodalLoad;
  std::string lineLoad;
};

/// A beam of 4 m and a column of 3 m that stands on a spring and has settled by 1 mm sideways.
std::unique_ptr<SolvedProject> RunFrame(const Written& w) {
  return RunDeck(FrameDeck(2)
                     .Key(w.keys + "\nGravityDirection 0 -1 0")
                     .Node(1, 0, 0)
                     .Node(2, 4 * w.metre, 0)
                     .Node(3, 4 * w.metre, -3 * w.metre)
                     .Beam(1, 1, 2)
                     .Beam(2, 2, 3)
                     .Material(1, w.material)
                     .Clamp(1)
                     .Support(3, w.spring)
                     .Load(2, w.nodalLoad)
                     .LineLoad("local_pressure_loads", 1, w.lineLoad)
                     .Text());
}

std::unique_ptr<SolvedProject> PlainFrame() {
  return RunFrame({
      "", 1.0, "E=2e11 A=1e-2 Iz=1e-5 Weight=78500", "120 0.001 1e6 0", {1000, 0, 500},
          "0 -2000"
  });
}

/// Expects the answer of the plain frame, whose unit of length is `length` and of force `force`
/// times that of the other.
void ExpectSameFrame(const SolvedProject& other, double length, double force) {
  const auto plain = PlainFrame();
  for (int d = 1; d <= 3; ++d) {
    const double u = d == 3 ? 1.0 : length, f = d == 3 ? force * length : force;
    for (int n = 1; n <= 3; ++n)
      EXPECT_NEAR(Displacement(other, n, d), u * Displacement(*plain, n, d),
                  1e-9 * u * LargestDisplacement(*plain));
    EXPECT_NEAR(PrintedReaction(other, 1, d), f * PrintedReaction(*plain, 1, d),
                1e-9 * f * std::abs(PrintedReaction(*plain, 1, d)));
  }
}

const std::string kTable =
    "units_names\nSI N m Pa 1 1\nkN-mm kN mm GPa 1000 0.001\nkN-cm kN cm kN/cm2 1000 0.01\nend\n";

TEST(FrameUnits, ADeckInKilonewtonsAndMillimetresAnswersInNewtonsAndMetres) {
  ExpectSameFrame(*RunFrame({
                      kTable + "units_mesh mm\nunits_mat_and_load kN-mm\nunits_res SI",
                      1000,
                      "E=200 A=1e4 Iz=1e7 Weight=7.85e-8",
                      "120 1 1 0",
                      {1, 0, 500},
                      "0 -2e-3"
  }),
                  1, 1);
}

TEST(FrameUnits, LinesMayNameTheirOwnUnits) {
  ExpectSameFrame(*RunFrame({
                      kTable + "units_mesh m\nunits_mat_and_load SI\nunits_res SI",
                      1,
                      "E=200 A=1e4 Iz=1e7 Weight=7.85e-8 units=kN-mm",
                      "120 1 1 0 units=kN-mm",
                      {1000, 0, 500},
                      "0 -2e-3 units=kN-mm"
  }),
                  1, 1);
}

TEST(FrameUnits, AnswersComeInTheUnitsOfTheResults) {
  ExpectSameFrame(*RunFrame({
                      kTable + "units_mesh cm\nunits_mat_and_load kN-cm\nunits_res kN-cm",
                      100,
                      "E=2e4 A=100 Iz=1000 Weight=7.85e-5",
                      "120 0.1 10 0",
                      {1, 0, 50},
                      "0 -0.02"
  }),
                  100, 1e-3);
}

}  // namespace

}  // namespace kestol
