#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "tests/support/SmallModel.h"

namespace kestol {

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

// One beam from (0, 0) to (0, 2); local y is -x. Node 2 moves by (0.5, -1) without turning.
SmallModel PlaneBeam(int divisions) {
  SmallModel model(Plane, 3);
  model.AddMesh(Linear, 2);
  model.AddNode(1, 0.0, 0.0);
  model.AddNode(2, 0.0, 2.0);
  model.AddElem(7, {1, 2});
  model.AddMaterial(1);
  model.Size();
  model.Displace(2, {0.5, -1.0, 0.0});
  model.Support(1, {0.25, -20.0, 3.0});
  model.project.NumOfDivisions = divisions;
  model.results.meshes[0].local = SmallModel::VectorOf({-10.0, 4.0, 6.0, 10.0, -4.0, 2.0});
  return model;
}

// One beam along x of a space frame: local y is y, local z is z.
SmallModel SpaceBeam() {
  SmallModel model(Space, 6);
  model.AddMesh(Linear, 2);
  model.AddNode(1, 0.0, 0.0, 0.0);
  model.AddNode(2, 2.0, 0.0, 0.0);
  model.AddElem(3, {1, 2});
  model.AddMaterial(1);
  model.Size();
  model.project.NumOfDivisions = 1;
  // End 1, then end 2: what is at end 1 less 0.5 acts there the other way round.
  model.results.meshes[0].local =
      SmallModel::VectorOf({-1, 2, 3, -4, 5, -6, 1.5, -2.5, -3.5, 4.5, -5.5, 6.5});
  return model;
}

// The zeros of a frame have either sign.
std::string PlainZeros(std::string text) {
  const std::string negative = "-0.000000e+00";
  for (std::size_t at = text.find(negative); at != std::string::npos; at = text.find(negative, at))
    text[at] = ' ';
  return text;
}

TEST(VemoBeams, PlaneFrameIsWrittenWhole) {
  EXPECT_EQ(PlaneBeam(2).Vemo(),
            "GaussPoints \"Beams\" ElemType Linear\n Number of Gauss Points: 3\n"
            "Natural Coordinates: Internal\nNodes included\nEnd gausspoints\n"
            "BDisplacements 4 1.0 Estatic 2 2 1 \"Beams\"\nX\nY\nZ\n"
            "7 0 0 0 \n"
            " 0.25 -0.5 0 \n"
            " 0.5 -1 0 \n"
            "X'_Shear       4 1.0 Estatic 2 2 0 \"Beams\"\n"
            "7   -1.000000e+01   0.000000e+00   0.000000e+00 10\n"
            "   -1.000000e+01   0.000000e+00   0.000000e+00 10\n"
            "   -1.000000e+01   0.000000e+00   0.000000e+00 10\n"
            "Y'_Shear       4 1.0 Estatic 2 2 0 \"Beams\"\n"
            "7   -4.000000e+00   0.000000e+00   0.000000e+00 4\n"
            "   -4.000000e+00   0.000000e+00   0.000000e+00 4\n"
            "   -4.000000e+00   0.000000e+00   0.000000e+00 4\n"
            "Z'_Momentus    4 1.0 Estatic 2 2 0 \"Beams\"\n"
            "7   -6.000000e+00   0.000000e+00   0.000000e+00 -6\n"
            "   -2.000000e+00   0.000000e+00   0.000000e+00 -2\n"
            "    2.000000e+00  -0.000000e+00  -0.000000e+00 2\n"
            "Local Axes Beam   4 1.0 Estatic 6 2 0 \"Beams\"\n"
            "7 1000 1000 1000\n"
            "  0 0 1.5708\n"
            " 1000 1000 1000\n"
            "Reactions       4 1.0 Estatic 2 1 1\nPx\nPy\nPz\n"
            "1 0.25 -20 \n"
            "2 0 0 0\n"
            "M Reactions     4 1.0 Estatic 1 1 1\nM\n"
            "1 3 \n"
            "2 0 0 0\n");
}

TEST(VemoBeams, SpaceFramesHaveOneBlockPerDegreeOfFreedom) {
  const std::string text = PlainZeros(SpaceBeam().Vemo());
  // Value at both ends; the vector along local y, or along local z for 3 and 5; negated from 4 on.
  EXPECT_THAT(text, HasSubstr("X'_Shear       4 1.0 Estatic 2 2 0 \"Beams\"\n"
                              "3    0.000000e+00   1.000000e+00   0.000000e+00 1\n"
                              "    0.000000e+00   1.500000e+00   0.000000e+00 1.5\n"
                              "Y'_Shear       4 1.0 Estatic 2 2 0 \"Beams\"\n"
                              "3    0.000000e+00   2.000000e+00   0.000000e+00 2\n"
                              "    0.000000e+00   2.500000e+00   0.000000e+00 2.5\n"
                              "Z'_Shear       4 1.0 Estatic 2 2 0 \"Beams\"\n"
                              "3    0.000000e+00   0.000000e+00   3.000000e+00 3\n"
                              "    0.000000e+00   0.000000e+00   3.500000e+00 3.5\n"
                              "X'_Momentus    4 1.0 Estatic 2 2 0 \"Beams\"\n"
                              "3    0.000000e+00  -4.000000e+00   0.000000e+00 4\n"
                              "    0.000000e+00  -4.500000e+00   0.000000e+00 4.5\n"
                              "Y'_Momentus    4 1.0 Estatic 2 2 0 \"Beams\"\n"
                              "3    0.000000e+00   0.000000e+00  -5.000000e+00 5\n"
                              "    0.000000e+00   0.000000e+00  -5.500000e+00 5.5\n"
                              "Z'_Momentus    4 1.0 Estatic 2 2 0 \"Beams\"\n"
                              "3    0.000000e+00  -6.000000e+00   0.000000e+00 6\n"
                              "    0.000000e+00  -6.500000e+00   0.000000e+00 6.5\n"
                              "Local Axes Beam   4"));
}

TEST(VemoBeams, HeadersPadTheNameToFifteenCharacters) {
  const std::string space = SpaceBeam().Vemo(), plane = PlaneBeam(1).Vemo();
  char header[100];
  for (const char* const name :
       {"X'_Shear", "Y'_Shear", "Z'_Shear", "X'_Momentus", "Y'_Momentus", "Z'_Momentus"}) {
    std::snprintf(header, sizeof header, "\n%-15s4 1.0 Estatic 2 2 0 \"Beams\"\n", name);
    EXPECT_THAT(space, HasSubstr(header));
  }
  for (const char* const name : {"X'_Shear", "Y'_Shear", "Z'_Momentus"}) {
    std::snprintf(header, sizeof header, "\n%-15s4 1.0 Estatic 2 2 0 \"Beams\"\n", name);
    EXPECT_THAT(plane, HasSubstr(header));
  }
}

TEST(VemoBeams, TwentyDivisionsHaveTheAxesAtStationTenOnly) {
  std::string before, after;
  for (int s = 0; s < 10; ++s) {
    before += " 1000 1000 1000\n";
    after += " 1000 1000 1000\n";
  }
  EXPECT_THAT(PlaneBeam(20).Vemo(),
              HasSubstr("\"Beams\"\n7" + before + "  0 0 1.5708\n" + after + "Reactions"));
}

TEST(VemoBeams, OddDivisionsRoundTheMiddleDown) {
  EXPECT_THAT(PlaneBeam(3).Vemo(), HasSubstr("\"Beams\"\n7 1000 1000 1000\n"
                                             "  0 0 1.5708\n"
                                             " 1000 1000 1000\n"
                                             " 1000 1000 1000\nReactions"));
}

TEST(VemoBeams, OneDivisionHasTheAxesAtStationZero) {
  EXPECT_THAT(PlaneBeam(1).Vemo(),
              HasSubstr("\"Beams\"\n7  0 0 1.5708\n 1000 1000 1000\nReactions"));
}

TEST(VemoBeams, SpaceAxesAreThoseOfTheThreeByThreeFrame) {
  SmallModel model = SpaceBeam();
  model.NodeOf(2).x = 0.0;
  model.NodeOf(2).z = 2.0;  // upwards: (0, -pi/2, 3 pi/2)
  EXPECT_THAT(model.Vemo(), HasSubstr("\n3  0 -1.5708 4.71239\n"));
}

TEST(VemoBeams, DisplacementsArePrintedInGlobalAxes) {
  SmallModel model = SpaceBeam();
  model.NodeOf(2).x = 0.0;
  model.NodeOf(2).z = 2.0;
  model.Displace(1, {1.0, 2.0, 3.0});
  model.Displace(2, {4.0, 5.0, 6.0});
  EXPECT_THAT(model.Vemo(), HasSubstr("X\nY\nZ\n3 1 2 3 \n 4 5 6 \nX'_Shear"));
}

TEST(VemoBeams, DisplacementsAreGlobalWhateverTheAxesOfTheMaterial) {
  SmallModel model = SpaceBeam();
  model.NodeOf(2).x = 1.0;
  model.NodeOf(2).y = model.NodeOf(2).z = 2.0;
  Material& material = *model.project.materials.Get(1);
  material.hasEuler = 1;
  material.Euler1 = 0.6;  // local y is not level, as it is without given axes
  model.Displace(1, {1.0, 2.0, 3.0});
  model.Displace(2, {4.0, 5.0, 6.0});
  EXPECT_THAT(model.Vemo(), HasSubstr("X\nY\nZ\n3 1 2 3 \n 4 5 6 \nX'_Shear"));
}

TEST(VemoBeams, OwnWeightBendsTheDiagrams) {
  SmallModel model = PlaneBeam(2);
  model.NodeOf(2).x = 2.0;
  model.NodeOf(2).y = 0.0;
  model.results.displacements.Fill(0.0);
  model.results.meshes[0].local.Fill(0.0);
  Material& material = *model.project.materials.Get(1);
  material.Weight =
      1200.0;  // 12 per length: 2 in the middle, 4 at the ends; the vector lies on the tension side
  model.project.gravity = ReaVec3(0.0, -1.0, 0.0);
  const std::string text = PlainZeros(model.Vemo());
  EXPECT_THAT(text, HasSubstr("Y'_Shear       4 1.0 Estatic 2 2 0 \"Beams\"\n"
                              "7    0.000000e+00   1.200000e+01   0.000000e+00 12\n"
                              "    0.000000e+00   0.000000e+00   0.000000e+00 0\n"
                              "    0.000000e+00  -1.200000e+01   0.000000e+00 -12\n"));
  EXPECT_THAT(text, HasSubstr("Z'_Momentus    4 1.0 Estatic 2 2 0 \"Beams\"\n"
                              "7    0.000000e+00   4.000000e+00   0.000000e+00 -4\n"
                              "    0.000000e+00  -2.000000e+00   0.000000e+00 2\n"
                              "    0.000000e+00   4.000000e+00   0.000000e+00 -4\n"));
  // q L^4 / 384 E I
  EXPECT_THAT(text, HasSubstr("X\nY\nZ\n7 0 0 0 \n 0 -2.5e-07 0 \n 0 0 0 \nX'_Shear"));
}

TEST(VemoBeams, EmptyMeshesHaveTheirHeadersOnly) {
  SmallModel model(Plane, 3);
  model.AddMesh(Linear, 2);
  model.Size();
  EXPECT_THAT(model.Vemo(), EndsWith("BDisplacements 4 1.0 Estatic 2 2 1 \"Beams\"\nX\nY\nZ\n"
                                     "X'_Shear       4 1.0 Estatic 2 2 0 \"Beams\"\n"
                                     "Y'_Shear       4 1.0 Estatic 2 2 0 \"Beams\"\n"
                                     "Z'_Momentus    4 1.0 Estatic 2 2 0 \"Beams\"\n"
                                     "Local Axes Beam   4 1.0 Estatic 6 2 0 \"Beams\"\n"
                                     "Reactions       4 1.0 Estatic 2 1 1\nPx\nPy\nPz\n"
                                     "M Reactions     4 1.0 Estatic 1 1 1\nM\n"));
}

TEST(VemoBeams, EveryElementTakesItsOwnStoredStrengths) {
  SmallModel model = SpaceBeam();
  model.AddElem(9, {2, 1});
  model.results.meshes[0].local = SmallModel::Counting(24, 1.0, 1.0);
  // Elements 3 and 9, value 2: +P at end 1, -P at end 2.
  const std::string text = model.Vemo();
  EXPECT_THAT(text, HasSubstr(" 2\n"));
  EXPECT_THAT(text, HasSubstr(" -8\n9"));
  EXPECT_THAT(text, HasSubstr(" 14\n"));
  EXPECT_THAT(text, HasSubstr(" -20\nZ'_Shear"));
}

TEST(VemoBeams, FilesOfBeamsBeginWithTheirDeclaration) {
  EXPECT_THAT(SpaceBeam().Vemo(), StartsWith("GaussPoints \"Beams\""));
}

}  // namespace

}  // namespace kestol
