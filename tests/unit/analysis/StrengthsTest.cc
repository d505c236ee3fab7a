// The step from displacements to strengths as a whole.
#include <cmath>
#include <sstream>

#include "analysis/PointLayout.h"
#include "analysis/Strengths.h"
#include "output/OutputText.h"
#include "output/VemoFiles.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/MeshDeck.h"
#include "tests/support/RunDeck.h"
#include "tests/support/Vectors.h"

namespace kestol {

namespace {

std::string Held(const TestMesh& mesh, const char* codes) {
  std::string lines;
  for (std::size_t i = 1; i <= mesh.nodes.size(); ++i) lines += Print("%d %s\n", int(i), codes);
  return Section("constraints", lines);
}

const char* const kEmptyMesh =
    "mesh dimension = 3 elemtype Triangle nnode = 3\ncoordinates\nend\nelements\nend\n";
const char* const kMaterial =
    "materials\n1 E=1000 nu=0.25 G=400 t=0.1 A=1 Iy=1 Iz=1 J=1\nend materials\n";

TEST(ComputeStrengths, KeepsTheValuesOfEveryPointOfEachMesh) {
  TestMesh six = UnitSquare();
  ToSix(six);
  const auto shells = RunDeck(
      DeckOf(six, "",
             std::string("mesh dimension = 3 elemtype Triangle nnode = 3\ncoordinates\nend\n"
                         "elements\n7 1 2 4 1\nend\n"
                         "mesh dimension = 3 elemtype Linear nnode = 2\ncoordinates\nend\n"
                         "elements\n9 1 2 1\n8 1 4 1\n11 2 4 1\nend\n") +
                 kEmptyMesh + kMaterial + Held(six, "111111 0 0 0 0 0 0")));
  EXPECT_EQ(shells->results.meshes[0].local.n, 2 * 3 * 8);
  EXPECT_EQ(shells->results.meshes[1].local.n, 8);
  EXPECT_EQ(shells->results.meshes[2].local.n, 3 * 2 * 6);
  EXPECT_EQ(shells->results.meshes[3].local.n, 0);
  for (int m = 0; m < 4; ++m)
    EXPECT_EQ(PointLayoutOf(*shells, *shells->meshes[m]).PerElement() * shells->numElements[m],
              shells->results.meshes[m].local.n);
  for (const bool ten : {false, true}) {
    const TestMesh box = Box(1, 1, 1, ten, Same);
    const auto solid = RunDeck(DeckOf(box, "", kMaterial + Held(box, "111 0 0 0")));
    EXPECT_EQ(solid->results.meshes[0].local.n, 6 * (ten ? 4 : 1) * 6);
    EXPECT_EQ(PointLayoutOf(*solid, *solid->meshes[0]).PerElement(), (ten ? 4 : 1) * 6);
    EXPECT_EQ(solid->results.nodalStresses.n, 6 * static_cast<int>(box.nodes.size()));
  }
}

TEST(ComputeStrengths, RefusesElementsThatAreOnlyRead) {
  const auto project = ReadDeck(DeckOf(UnitSquare(), "", kMaterial));
  for (const int type : {Quadrilateral, Hexahedra}) {
    project->meshes[0]->elemType = type;
    EXPECT_FATAL(ComputePointValues(*project, project->results), "error: elemtype unknown\n");
  }
}

TEST(ComputeStrengths, AnEmptyTriangleMeshHasBlocksWithoutLines) {
  for (const char* const option : {"", "MainStresses\n", "MainAndLocalStresses\n"}) {
    const auto project = RunDeck(
        DeckOf(UnitSquare(), std::string(option) + "DoSmoothing 0.1",
               std::string(kEmptyMesh) + kMaterial + Held(UnitSquare(), "111111 0 0 0 0 0 0")));
    OutputText file;
    WriteVemoFiles(*project, project->results, file, nullptr);
    const std::string text = file.Text();
    const std::string second = text.substr(text.rfind("\nDisplacements"));
    EXPECT_NE(second.find(*option == 'M' ? "M22\n0\nS" : "Mxy'\nS"), std::string::npos)
        << option << second;
  }
}

// --- main values and smoothing ------------------------------------------------------------------

std::string Bent(const std::string& keywords) {
  return DeckOf(UnitSquare(), keywords,
                kMaterial + Section("constraints", "1 111111 0 0 0 0 0 0\n3 111111 0 0 0 0 0 0\n") +
                    Section("nodal_point_loads", "2 1 2 3 0 0 0\n4 0.5 -1 2 0 0 0\n"));
}

TEST(StressOptions, KeepMainValuesBesideTheLocalOnes) {
  for (const char* const conversion : {"", "ConvertTo6Nodes\n"}) {
    const int points = *conversion == '\0' ? 2 : 6;
    const auto valuesWith = [&](const char* option) {
      return std::move(RunDeck(Bent(std::string(conversion) + option))->results.meshes[0]);
    };
    const PointValues local = valuesWith(""), main = valuesWith("MainStresses"),
                      both = valuesWith("MainAndLocalStresses");
    ASSERT_EQ(local.local.n, 8 * points);
    ASSERT_EQ(main.main.n, 8 * points);
    ASSERT_EQ(main.angles.n, 6 * points);
    EXPECT_EQ(local.angles.n, 0);
    EXPECT_EQ(local.main.n, 0);
    EXPECT_EQ(Entries(main.local), Entries(local.local));
    EXPECT_EQ(Entries(both.local), Entries(local.local));
    EXPECT_EQ(Entries(both.main), Entries(main.main));
    EXPECT_EQ(Entries(both.angles), Entries(main.angles));
    for (const PointValues* const values : {&local, &main, &both})
      EXPECT_EQ(values->smoothed.n, 0) << "nobody asked for it";
    for (int p = 0; p < points; ++p) {
      const double* const l = local.local.begin() + 8 * p;
      const double* const m = main.main.begin() + 8 * p;
      for (const int k : {0, 3}) {
        EXPECT_NEAR(m[k] + m[k + 1], l[k] + l[k + 1], 1e-9);
        EXPECT_NEAR(m[k] * m[k + 1], l[k] * l[k + 1] - l[k + 2] * l[k + 2], 1e-7);
        EXPECT_EQ(m[k + 2], 0.0);
      }
      EXPECT_NEAR(m[6] * m[6] + m[7] * m[7], l[6] * l[6] + l[7] * l[7], 1e-7);
      EXPECT_GT(std::abs(l[2]), 1e-3);
    }
  }
}

TEST(StressOptions, LeaveBeamsAlone) {
  const auto solve = [](const std::string& keywords) {
    return RunDeck(Bent(keywords) +
                   "mesh dimension = 3 elemtype Linear nnode = 2\ncoordinates\nend\n"
                   "elements\n9 1 2 1\n8 2 4 1\nend\n");
  };
  const auto plain = solve("");
  EXPECT_GT(std::abs(plain->results.meshes[1].local(1)), 1e-3);
  for (const char* const option : {"MainStresses", "MainAndLocalStresses\nDoSmoothing 0.1"}) {
    const auto project = solve(option);
    EXPECT_EQ(Entries(project->results.meshes[1].local), Entries(plain->results.meshes[1].local));
    EXPECT_EQ(project->results.meshes[1].angles.n, 0);
    EXPECT_EQ(project->results.meshes[1].main.n, 0);
    EXPECT_EQ(project->results.meshes[1].smoothed.n, 0);
  }
}

TEST(SmoothingOfARun, ComesOnRequestAndIsAnnounced) {
  const std::string text = "Beginning smooth of the gaussian variables\n";
  std::ostringstream quiet, loud;
  const auto raw = RunDeck(Bent(""), 1, &quiet);
  const auto smooth = RunDeck(Bent("DoSmoothing 0.1"), 1, &loud);
  EXPECT_EQ(quiet.str().find(text), std::string::npos);
  EXPECT_EQ(loud.str().substr(loud.str().size() - text.size()), text);
  const ReaVecT &r = raw->results.meshes[0].local, &s = smooth->results.meshes[0].smoothed;
  EXPECT_EQ(Entries(smooth->results.meshes[0].local), Entries(r)) << "as computed";
  for (int k = 1; k <= 8;
       ++k) {  // one corner of each keeps its own: both move a third of their difference
    EXPECT_NEAR(s(k), r(k) + (r(8 + k) - r(k)) / 3, 1e-12 * std::abs(r(k)) + 1e-15) << k;
    EXPECT_NEAR(s(8 + k), r(8 + k) - (r(8 + k) - r(k)) / 3, 1e-12 * std::abs(r(k)) + 1e-15) << k;
  }
}

}  // namespace

}  // namespace kestol
