#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "output/VemoFiles.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/OwnFolder.h"
#include "tests/support/SmallModel.h"

namespace kestol {

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

const char* const kBeamPoints =
    "GaussPoints \"Beams\" ElemType Linear\n Number of Gauss Points: 21\n"
    "Natural Coordinates: Internal\nNodes included\nEnd gausspoints\n";
const char* const kTrianglePoints =
    "GaussPoints \"Triangles\" ElemType Triangle\n Number of Gauss Points: 1\n"
    "Natural Coordinates: Internal\nEnd gausspoints\n";

SmallModel Nodes(ProblemType problemType, int dofsPerNode, int count) {
  SmallModel model(problemType, dofsPerNode);
  model.AddMesh(problemType == Plane ? Linear : Triangle, problemType == Plane ? 2 : 3);
  for (int i = 1; i <= count; ++i) model.AddNode(i, 0.5 * i, -2.0 * i * i, 3.0);
  model.Size();
  model.AddMaterial(1);
  model.results.meshes[0].local = SmallModel::Counting(24, 0.0, 0.0);
  return model;
}

// --- mesh file ---------------------------------------------------------------------------------

class VemoMeshFile : public testing::Test {
protected:
  OwnFolder folder_;
  const std::string name_ = folder_.Path("model.msh");

  std::string MeshTextOf(const SmallModel& model) const {
    OutputText file;
    WriteVemoFiles(model.project, model.results, file, &name_);
    return ContentsOf(name_);
  }
};

TEST_F(VemoMeshFile, PlaneFramesRepeatTheSecondNodeOfABeam) {
  SmallModel model = Nodes(Plane, 3, 2);
  model.AddElem(12, {2, 1}).materialNumber = 9;
  model.AddMaterial(9);
  EXPECT_EQ(MeshTextOf(model),
            "\n\n\n\n\nNumElems NumNodes ElemType\n1 2 7\nnode x y z\n"
            "1    5.000000e-01  -2.000000e+00\n"
            "2    1.000000e+00  -8.000000e+00\n"
            "element node1 node2 node3 material\n"
            "12 2 1 1  9\n");
}

TEST_F(VemoMeshFile, SpaceModelsHaveThreeCoordinates) {
  SmallModel model = Nodes(Space, 6, 3);
  model.AddElem(1, {1, 2, 3});
  EXPECT_EQ(MeshTextOf(model),
            "\n\n\n\n\nNumElems NumNodes ElemType\n1 3 7\nnode x y z\n"
            "1    5.000000e-01  -2.000000e+00   3.000000e+00\n"
            "2    1.000000e+00  -8.000000e+00   3.000000e+00\n"
            "3    1.500000e+00  -1.800000e+01   3.000000e+00\n"
            "element node1 node2 node3 material\n"
            "1 1 2 3  1\n");
}

TEST_F(VemoMeshFile, MaterialsOfAnElementsOwnAreWrittenAsZero) {
  SmallModel model = Nodes(Plane, 3, 2);
  Elem& elem = model.AddElem(1, {1, 2});
  elem.material = std::make_unique<Material>();
  elem.material->E1 = elem.material->A = elem.material->Iz = 1.0;
  EXPECT_THAT(MeshTextOf(model), EndsWith("\n1 1 2 2  0\n"));
}

TEST_F(VemoMeshFile, ElementsOfLaterMeshesAreLeftOut) {
  SmallModel model = Nodes(Plane, 3, 2);
  model.AddElem(1, {1, 2});
  model.AddMesh(Linear, 2);
  model.AddElem(2, {2, 1});
  model.results.meshes[1].local = model.results.meshes[0].local;
  const std::string text = MeshTextOf(model);
  EXPECT_THAT(text, HasSubstr("\n1 2 7\n"));
  EXPECT_THAT(text, EndsWith("material\n1 1 2 2  1\n"));
}

TEST_F(VemoMeshFile, ConvertedMeshesListTheNodesAsReadAndTheCorners) {
  SmallModel model(Space, 6);
  model.AddMesh(Triangle, 6);
  for (int i = 1; i <= 6; ++i) model.AddNode(i, i == 1, i == 2);
  model.AddElem(1, {3, 1, 2, 4, 5, 6});
  model.Size();
  model.project.nodesAsRead = 3;
  model.results.meshes[0].local = SmallModel::Counting(24, 0.0, 0.0);
  const std::string text = MeshTextOf(model);
  EXPECT_THAT(text, HasSubstr("\n1 3 7\n"));
  EXPECT_THAT(text, Not(HasSubstr("\n4  ")));
  EXPECT_THAT(text, EndsWith("material\n1 3 1 2  1\n"));
}

TEST_F(VemoMeshFile, RenumberedMeshesPrintTheNumbersOfTheInput) {
  SmallModel model = Nodes(Plane, 3, 3);
  model.AddElem(1, {3, 1});
  model.Renumber({3, 1, 2});
  EXPECT_THAT(MeshTextOf(model), EndsWith("material\n1 3 1 1  1\n"));
}

TEST_F(VemoMeshFile, IsWrittenBeforeTheMeshTypesAreTested) {
  SmallModel model = Nodes(Plane, 3, 2);
  model.AddMesh(Hexahedra, 8);
  EXPECT_FATAL(MeshTextOf(model), "error: elemtype unknown\n");
  EXPECT_TRUE(std::ifstream(name_).good());
}

TEST_F(VemoMeshFile, MeshFileThatCannotBeCreatedEndsTheRun) {
  const SmallModel model = Nodes(Plane, 3, 2);
  const std::string name = "/nowhere/model.kestol.bon";
  OutputText file;
  EXPECT_FATAL(WriteVemoFiles(model.project, model.results, file, &name),
               "can't open file /nowhere/model.kestol.bon\n");
}

TEST_F(VemoMeshFile, FullDiskEndsTheRun) {
  const SmallModel model = Nodes(Plane, 3, 2);
  const std::string name = "/dev/full";
  OutputText file;
  EXPECT_FATAL(WriteVemoFiles(model.project, model.results, file, &name),
               "error: Failed writing to disk. Probably the disk is full\n");
}

// --- declarations and order --------------------------------------------------------------------

TEST(VemoFiles, BeamsAreDeclaredBeforeTriangles) {
  SmallModel model(Space, 6);
  model.AddMesh(Triangle, 3);
  model.AddMesh(Linear, 2);
  model.Size();
  EXPECT_THAT(model.Vemo(), StartsWith(std::string(kBeamPoints) + kTrianglePoints +
                                       "Displacements   4 1.0 Estatic 2 1 1\n"));
}

TEST(VemoFiles, NumberOfStationsIsTheDivisionsPlusOne) {
  SmallModel model = Nodes(Plane, 3, 2);
  model.project.NumOfDivisions = 2147483647;
  EXPECT_THAT(model.Vemo(), HasSubstr(" Number of Gauss Points: 2147483648\n"));
}

TEST(VemoFiles, LastTriangleMeshDecidesAboutTheDeclaredPoints) {
  SmallModel model(Space, 6);
  model.AddMesh(Triangle, 3);
  model.AddMesh(Triangle, 6);
  model.Size();
  EXPECT_THAT(model.Vemo(), StartsWith("GaussPoints \"Triangles\" ElemType Triangle\n"
                                       " Number of Gauss Points: 3\n"
                                       "Natural Coordinates: Internal\nEnd gausspoints\n"));
}

TEST(VemoFiles, MeshesComeInTheirOrder) {
  SmallModel model(Space, 6);
  model.AddMesh(Linear, 2);
  model.AddMesh(Triangle, 3);
  model.Size();
  const std::string text = model.Vemo();
  EXPECT_LT(text.find("BDisplacements"), text.find("Axial Force"));
  EXPECT_LT(text.find("Axial Force"), text.find("Reactions"));
}

TEST(VemoFiles, QuadrilateralsAndHexahedraEndTheRun) {
  for (const int elemType : {Quadrilateral, Hexahedra}) {
    SmallModel model = Nodes(Space, 6, 2);
    model.AddMesh(elemType, 8);
    EXPECT_FATAL(model.Vemo(), "error: elemtype unknown\n");
  }
}

TEST(VemoFiles, SolidsBesideAnotherMeshEndTheRun) {
  SmallModel model(Space, 3);
  model.AddMesh(Tetrahedra, 4);
  model.AddMesh(Tetrahedra, 4);
  EXPECT_FATAL(model.Vemo(), "tetrahedra elements cannot be mixed with other elements\n");
}

// --- reactions ---------------------------------------------------------------------------------

TEST(VemoReactions, PlaneWritesTwoForcesUnderThreeNamesAndAScalarMoment) {
  SmallModel model = Nodes(Plane, 3, 3);
  model.Support(2, {1.5, -2.0, 0.25});
  EXPECT_THAT(model.Vemo(), EndsWith("Reactions       4 1.0 Estatic 2 1 1\nPx\nPy\nPz\n"
                                     "1 0 0 0\n"
                                     "2 1.5 -2 \n"
                                     "3 0 0 0\n"
                                     "M Reactions     4 1.0 Estatic 1 1 1\nM\n"
                                     "1 0 0 0\n"
                                     "2 0.25 \n"
                                     "3 0 0 0\n"));
}

TEST(VemoReactions, SpaceWritesThreeForcesAndThreeMoments) {
  SmallModel model = Nodes(Space, 6, 2);
  model.Support(1, {1, 2, 3, 4, 5, 6});
  EXPECT_THAT(model.Vemo(), EndsWith("Reactions       4 1.0 Estatic 2 1 1\nPx\nPy\nPz\n"
                                     "1 1 2 3 \n"
                                     "2 0 0 0\n"
                                     "M Reactions     4 1.0 Estatic 2 1 1\nMx\nMy\nMz\n"
                                     "1 4 5 6 \n"
                                     "2 0 0 0\n"));
}

TEST(VemoReactions, SolidsHaveNoMoments) {
  SmallModel model(Space, 3);
  model.AddMesh(Tetrahedra, 4);
  model.AddNode(1, 0.0, 0.0);
  model.Size();
  model.Support(1, {1, 2, 3});
  const std::string text = model.Vemo();
  EXPECT_THAT(text, EndsWith("Px\nPy\nPz\n1 1 2 3 \n"));
  EXPECT_THAT(text, Not(HasSubstr("M Reactions")));
}

TEST(VemoReactions, SolidsInAPlaneProblemPrintThePlaneBlocks) {
  SmallModel model(Plane, 3);
  model.AddMesh(Tetrahedra, 4);
  model.AddNode(1, 0.0, 0.0);
  model.Size();
  model.Support(1, {1, 2, 3});
  EXPECT_THAT(model.Vemo(), EndsWith("Px\nPy\nPz\n1 1 2 \n"
                                     "M Reactions     4 1.0 Estatic 1 1 1\nM\n1 3 \n"));
}

TEST(VemoReactions, LinesAreNumberedByARunningCount) {
  SmallModel model(Plane, 3);
  model.AddMesh(Linear, 2);
  for (const int number : {3, 7, 20}) model.AddNode(number, number, 0.0);
  model.Size();
  model.Support(7, {1, 2, 3});
  EXPECT_THAT(model.Vemo(), HasSubstr("Pz\n1 0 0 0\n2 1 2 \n3 0 0 0\nM Reactions"));
}

TEST(VemoReactions, NodesThatWereNotReadHaveNoLine) {
  SmallModel model = Nodes(Plane, 3, 3);
  model.project.nodesAsRead = 2;
  EXPECT_THAT(model.Vemo(), HasSubstr("Pz\n1 0 0 0\n2 0 0 0\nM Reactions"));
}

}  // namespace

}  // namespace kestol
