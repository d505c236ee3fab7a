#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/SmallModel.h"

namespace kestol {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

// Two triangles with the normals +z and +x: angles (0, 0, 0) and (pi/2, 0, pi/2). The values of
// the arrays tell place and array: 1.. local values, 101.. main values, 201.. their angles.
SmallModel Shell(StressOption stressOption) {
  SmallModel model(Space, 6);
  model.AddMesh(Triangle, 3);
  model.AddNode(1, 0, 0, 0);
  model.AddNode(2, 1, 0, 0);
  model.AddNode(3, 0, 1, 0);
  model.AddNode(4, 0, 0, 1);
  model.AddElem(1, {1, 2, 3});
  model.AddElem(5, {1, 3, 4});
  model.Size();
  model.Displace(2, {0.5, -1.5, 1e-9, 9, 9, 9});
  model.Support(1, {1, 2, 3, 4, 5, 6});
  model.project.stressOption = stressOption;
  PointValues& values = model.results.meshes[0];
  values.local = SmallModel::Counting(16, 1, 1);
  if (stressOption == LocalStresses) return model;
  values.main = SmallModel::Counting(16, 101, 1);
  values.angles = SmallModel::Counting(12, 201, 1);
  return model;
}

const char* const kHead =
    "GaussPoints \"Triangles\" ElemType Triangle\n Number of Gauss Points: 1\n"
    "Natural Coordinates: Internal\nEnd gausspoints\n"
    "Displacements   4 1.0 Estatic 2 1 1\nX\nY\nZ\n"
    "1  0 0 0\n"
    "2  0.5 -1.5 1e-09\n"
    "3  0 0 0\n"
    "4  0 0 0\n";
const char* const kTail =
    "Reactions       4 1.0 Estatic 2 1 1\nPx\nPy\nPz\n"
    "1 1 2 3 \n2 0 0 0\n3 0 0 0\n4 0 0 0\n"
    "M Reactions     4 1.0 Estatic 2 1 1\nMx\nMy\nMz\n"
    "1 4 5 6 \n2 0 0 0\n3 0 0 0\n4 0 0 0\n";

TEST(VemoTriangles, WithoutAnOptionTheLocalValuesAreWritten) {
  EXPECT_EQ(Shell(LocalStresses).Vemo(),
            std::string(kHead) +
                "Axial Force     4 1.0 Estatic 2 2 1 \"Triangles\"\nNx'\nNy'\nNxy'\n"
                "1 1 2 3\n"
                "5 9 10 11\n"
                "Momentus        4 1.0 Estatic 2 2 1 \"Triangles\"\nMx'\nMy'\nMxy'\n"
                "1 4 5 6\n"
                "5 12 13 14\n"
                "Shear          4 1.0 Estatic 2 2 1 \"Triangles\"\nQx'\nQy'\n0\n"
                "1 7 8 0\n"
                "5 15 16 0\n"
                "Local Axes      4 1.0 Estatic 6 2 0 \"Triangles\"\n"
                "1 0 0 0\n"
                "5 1.5708 0 1.5708\n" +
                kTail);
}

TEST(VemoTriangles, MainStressesReplaceTheLocalOnes) {
  EXPECT_EQ(Shell(MainStresses).Vemo(),
            std::string(kHead) +
                "Main Ax. Force  4 1.0 Estatic 2 2 1 \"Triangles\"\nN11\nN22\n0\n"
                "1 101 102 103\n"
                "5 109 110 111\n"
                "Main Momentus   4 1.0 Estatic 2 2 1 \"Triangles\"\nM11\nM22\n0\n"
                "1 104 105 106\n"
                "5 112 113 114\n"
                "Shear in Main  4 1.0 Estatic 2 2 1 \"Triangles\"\nQm1\nQm2\n0\n"
                "1 107 108 0\n"
                "5 115 116 0\n"
                "L Axes Axial    4 1.0 Estatic 6 2 0 \"Triangles\"\n"
                "1 201 202 203\n"
                "5 207 208 209\n"
                "L Axes Momentus 4 1.0 Estatic 6 2 0 \"Triangles\"\n"
                "1 204 205 206\n"
                "5 210 211 212\n" +
                kTail);
}

// First words of the lines that head a block.
std::vector<std::string> HeadersOf(const std::string& text) {
  std::vector<std::string> headers;
  for (std::size_t at = text.find(" 4 1.0 Estatic"); at != std::string::npos;
       at = text.find(" 4 1.0 Estatic", at + 1)) {
    const std::size_t start = text.rfind('\n', at) + 1;
    std::string name = text.substr(start, at - start);
    while (name.back() == ' ') name.pop_back();
    headers.push_back(name);
  }
  return headers;
}

TEST(VemoTriangles, MainAndLocalStressesWriteAllTenBlocksInOrder) {
  const std::string text = Shell(MainAndLocalStresses).Vemo();
  EXPECT_THAT(HeadersOf(text),
              ElementsAre("Displacements", "Axial Force", "Main Ax. Force", "Momentus",
                          "Main Momentus", "Shear", "Shear in Main", "Local Axes", "L Axes Axial",
                          "L Axes Momentus", "Reactions", "M Reactions"));
}

TEST(VemoTriangles, MainAndLocalStressesTakeTheMainOnesFromTheirOwnArray) {
  const std::string text = Shell(MainAndLocalStresses).Vemo();
  EXPECT_THAT(text, HasSubstr("\nNxy'\n1 1 2 3\n5 9 10 11\n"));
  EXPECT_THAT(text, HasSubstr("\nN11\nN22\n0\n1 101 102 103\n5 109 110 111\n"));
  EXPECT_THAT(text, HasSubstr("\nM11\nM22\n0\n1 104 105 106\n5 112 113 114\n"));
  EXPECT_THAT(text, HasSubstr("\nQx'\nQy'\n0\n1 7 8 0\n5 15 16 0\n"));
  EXPECT_THAT(text, HasSubstr("\nQm1\nQm2\n0\n1 107 108 0\n5 115 116 0\n"));
}

TEST(VemoTriangles, SmoothedModelsWriteTheSmoothedLocalValues) {
  for (const StressOption option : {LocalStresses, MainAndLocalStresses}) {
    SmallModel model = Shell(option);
    model.project.DoSmoothing = 1;
    model.results.meshes[0].smoothed = SmallModel::Counting(16, 301, 1);
    const std::string text = model.Vemo();
    EXPECT_THAT(text, HasSubstr("\nNxy'\n1 301 302 303\n5 309 310 311\n"));
    EXPECT_THAT(text, HasSubstr("\nMxy'\n1 304 305 306\n5 312 313 314\n"));
    EXPECT_THAT(text, HasSubstr("\nQx'\nQy'\n0\n1 307 308 0\n5 315 316 0\n"));
    EXPECT_EQ(text.find("\nN11\nN22\n0\n1 101 102 103\n5 109 110 111\n") != std::string::npos,
              option == MainAndLocalStresses);
  }
}

TEST(VemoTriangles, SixNodesHaveThreePointsOnThreeLines) {
  SmallModel model(Space, 6);
  model.AddMesh(Triangle, 6);
  for (int i = 1; i <= 6; ++i) model.AddNode(i, i == 2, i == 3);
  model.AddElem(8, {1, 2, 3, 4, 5, 6});
  model.Size();
  model.project.nodesAsRead = 3;
  model.project.stressOption = MainAndLocalStresses;
  model.results.meshes[0].local = SmallModel::Counting(24, 1, 1);
  model.results.meshes[0].main = SmallModel::Counting(24, 101, 1);
  model.results.meshes[0].angles = SmallModel::Counting(18, 201, 1);
  const std::string text = model.Vemo();
  EXPECT_THAT(text, HasSubstr(" Number of Gauss Points: 3\n"));
  EXPECT_THAT(text, HasSubstr("Nxy'\n8 1 2 3\n 9 10 11\n 17 18 19\nMain Ax. Force"));
  EXPECT_THAT(text, HasSubstr("Qy'\n0\n8 7 8 0\n 15 16 0\n 23 24 0\nShear in Main"));
  EXPECT_THAT(text, HasSubstr("8 107 108 0\n 115 116 0\n 123 124 0\nLocal Axes"));
  EXPECT_THAT(text, HasSubstr("\n8 0 0 0\n 0 0 0\n 0 0 0\nL Axes Axial"));
  EXPECT_THAT(text, HasSubstr("\n8 201 202 203\n 207 208 209\n 213 214 215\nL Axes Momentus"));
  EXPECT_THAT(text, HasSubstr("\n8 204 205 206\n 210 211 212\n 216 217 218\nReactions"));
  EXPECT_THAT(text, HasSubstr("X\nY\nZ\n1  0 0 0\n2  0 0 0\n3  0 0 0\nAxial Force"));
}

TEST(VemoTriangles, LocalAxesFollowTheEulerAnglesOfTheMaterial) {
  SmallModel model = Shell(LocalStresses);
  Material& material = model.AddMaterial(1);
  material.hasEuler = 1;
  material.Euler3 = 0.5;
  EXPECT_THAT(model.Vemo(), HasSubstr("\"Triangles\"\n1 0 0 0.5\n5 "));
}

TEST(VemoTriangles, EveryMeshHasItsOwnStrideAndItsOwnDisplacements) {
  SmallModel model = Shell(LocalStresses);
  model.AddMesh(Triangle, 6);
  model.AddElem(9, {1, 2, 3, 4, 1, 2});
  model.results.meshes[1].local = SmallModel::Counting(24, 31, 1);
  const std::string text = model.Vemo();
  EXPECT_THAT(text, HasSubstr("Nxy'\n1 1 2 3\n5 9 10 11\nMomentus"));
  EXPECT_THAT(text, HasSubstr("Nxy'\n9 31 32 33\n 39 40 41\n 47 48 49\nMomentus"));
  EXPECT_NE(text.find("Displacements "), text.rfind("Displacements "));
}

TEST(VemoTriangles, ModelsWithoutShellsOrSolidsHaveNoNodalDisplacements) {
  SmallModel model(Plane, 3);
  model.AddMesh(Linear, 2);
  model.Size();
  EXPECT_THAT(model.Vemo(), Not(HasSubstr("\nDisplacements")));
}

}  // namespace

}  // namespace kestol
