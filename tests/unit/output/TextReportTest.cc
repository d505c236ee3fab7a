#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/support/ExpectFatal.h"
#include "tests/support/SmallModel.h"

namespace kestol {

namespace {

using testing::HasSubstr;
using testing::Not;

// Two beams in a row, node 1 clamped.
SmallModel PlaneFrame() {
  SmallModel model(Plane, 3);
  model.AddMesh(Linear, 2);
  for (int i = 1; i <= 3; ++i) model.AddNode(i, 2.0 * (i - 1), 0.0);
  model.AddElem(1, {1, 2});
  model.AddElem(2, {2, 3});
  model.AddMaterial(1);
  model.Size();
  model.Displace(2, {0.001, -0.5, 1e-05});
  model.Displace(3, {0.002, -1.25, 123456.7});
  model.Support(1, {-1.5, 1000.0, 0.333333333});
  model.results.meshes[0].local =
      SmallModel::VectorOf({1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0, 9.0, 10.0, 11.0, 1e-12});
  return model;
}

TEST(TextReport, PlaneFrameIsWrittenWhole) {
  EXPECT_EQ(PlaneFrame().Report(),
            "\n\nNODAL DISPLACEMENTS (x y theta)\n"
            "1 0 0 0\n"
            "2 0.001 -0.5 1e-05\n"
            "3 0.002 -1.25 123457\n"
            "\n\nELEMENT STRENGTH (Px,local  Py,local  Mlocal)\n"
            "Element 1 local strength. nodes: 1 2\n"
            "1 2 3 \n"
            "4 5 6 \n"
            "Element 2 local strength. nodes: 2 3\n"
            "7 8 9 \n"
            "10 11 1e-12 \n"
            "\n\nREACTIONS (Px Py M)\n"
            "1 -1.5 1000 0.333333\n");
}

TEST(TextReport, SpaceFrameNamesSixValues) {
  SmallModel model(Space, 6);
  model.AddMesh(Linear, 2);
  model.AddNode(1, 0.0, 0.0);
  model.AddNode(2, 1.0, 0.0);
  model.AddElem(7, {2, 1});
  model.AddMaterial(1);
  model.Size();
  model.Displace(1, {1, 2, 3, 4, 5, 6});
  model.Support(2, {6, 5, 4, 3, 2, 1});
  model.results.meshes[0].local = SmallModel::Counting(12, 0.5, 1.0);
  EXPECT_EQ(model.Report(),
            "\n\nNODAL DISPLACEMENTS (x y z thetax thetay thetaz)\n"
            "1 1 2 3 4 5 6\n"
            "2 0 0 0 0 0 0\n"
            "\n\nELEMENT STRENGTH (Px,local  Py,local  Pz,local  Mx,local  My,local  Mz,local)\n"
            "Element 7 local strength. nodes: 2 1\n"
            "0.5 1.5 2.5 3.5 4.5 5.5 \n"
            "6.5 7.5 8.5 9.5 10.5 11.5 \n"
            "\n\nREACTIONS (Px Py Pz Mx My Mz)\n"
            "2 6 5 4 3 2 1\n");
}

TEST(TextReport, StrengthHeadingIsRepeatedForEachLinearMesh) {
  SmallModel model = PlaneFrame();
  model.AddMesh(Linear, 2);
  EXPECT_THAT(model.Report(), HasSubstr("10 11 1e-12 \n"
                                        "\n\nELEMENT STRENGTH (Px,local  Py,local  Mlocal)\n"
                                        "\n\nREACTIONS (Px Py M)\n"));
}

TEST(TextReport, ShellsHaveNoStrengthHeading) {
  SmallModel model(Space, 6);
  model.AddMesh(Triangle, 3);
  for (int i = 1; i <= 3; ++i) model.AddNode(i, i == 2, i == 3);
  model.AddElem(1, {1, 2, 3});
  model.Size();
  EXPECT_EQ(model.Report(),
            "\n\nNODAL DISPLACEMENTS (x y z thetax thetay thetaz)\n"
            "1 0 0 0 0 0 0\n2 0 0 0 0 0 0\n3 0 0 0 0 0 0\n"
            "\n\nREACTIONS (Px Py Pz Mx My Mz)\n");
}

TEST(TextReport, SolidsPrintThreeValuesUnderSixNames) {
  SmallModel model(Space, 3);
  model.AddMesh(Tetrahedra, 4);
  model.AddNode(1, 0.0, 0.0);
  model.Size();
  model.Displace(1, {1.0, 2.0, 3.0});
  model.Support(1, {4.0, 5.0, 6.0});
  EXPECT_EQ(model.Report(),
            "\n\nNODAL DISPLACEMENTS (x y z thetax thetay thetaz)\n1 1 2 3\n"
            "\n\nREACTIONS (Px Py Pz Mx My Mz)\n1 4 5 6\n");
}

TEST(TextReport, FreeDegreesOfASupportShowWhatTheirRecordHolds) {
  SmallModel model = PlaneFrame();
  model.NodeOf(1).constraint->codes[1] = Free;
  model.results.reactions[0].values[1] = 0.0;
  EXPECT_THAT(model.Report(), HasSubstr("\n1 -1.5 0 0.333333\n"));
}

TEST(TextReport, RenumberedModelsPrintTheNumbersOfTheInput) {
  SmallModel model = PlaneFrame();
  // Inside, the nodes run the other way round.
  model.Renumber({3, 2, 1});
  model.results.displacements.Fill(0.0);
  model.Displace(3, {3.0, 3.0, 3.0});
  const std::string report = model.Report();
  EXPECT_THAT(report, HasSubstr("1 0 0 0\n2 0 0 0\n3 3 3 3\n"));
  EXPECT_THAT(report, HasSubstr("Element 2 local strength. nodes: 2 3\n"));
  EXPECT_THAT(report, HasSubstr("M)\n1 -1.5 1000 0.333333\n"));
  EXPECT_EQ(model.results.displacements(1), 3.0);
}

TEST(TextReport, NodesThatWereNotReadAreNotListed) {
  SmallModel model = PlaneFrame();
  model.AddNode(4, 1.0, 0.0);
  model.project.numNodes = 4;
  model.results.displacements.Resize(12, 9.0);
  model.Support(4, {9.0, 9.0, 9.0});
  EXPECT_EQ(model.Report(), PlaneFrame().Report());
}

TEST(TextReport, GapsInTheNodeNumbersLeaveNoLine) {
  SmallModel model(Plane, 3);
  model.AddMesh(Linear, 2);
  model.AddNode(1, 0.0, 0.0);
  model.AddNode(5, 1.0, 0.0);
  model.Size();
  EXPECT_THAT(model.Report(), HasSubstr("(x y theta)\n1 0 0 0\n5 0 0 0\n\n\n"));
}

TEST(TextReport, LoadsOnTheBeamAreTakenFromTheStoredStrengths) {
  SmallModel model = PlaneFrame();
  model.Load(1, LocalPressure, {0.0, -12.0, 0.0});
  model.Load(1, LocalPressure, {3.0, 0.0, 0.0});
  // q L / 2 = 12 and q L^2 / 12 = 4 of the transverse, 3 of the axial load, with L = 2.
  EXPECT_THAT(model.Report(), HasSubstr("Element 1 local strength. nodes: 1 2\n"
                                        "-2 14 7 \n"
                                        "1 17 2 \n"
                                        "Element 2 local strength. nodes: 2 3\n"
                                        "7 8 9 \n"));
}

TEST(TextReport, OwnWeightIsALoadAlongTheGravityDirection) {
  SmallModel model = PlaneFrame();
  Material& material = *model.project.materials.Get(1);
  material.A = 2.0;
  material.Weight = 6.0;
  model.project.gravity = ReaVec3(0.0, -1.0, 0.0);
  EXPECT_THAT(model.Report(), HasSubstr("1 14 7 \n4 17 2 \n"));
}

TEST(TextReport, BeamsWithoutWeightOrWithoutAreaPrintTheStoredStrengths) {
  SmallModel model = PlaneFrame();
  model.project.gravity = ReaVec3(0.0, -1.0, 0.0);
  Material& material = *model.project.materials.Get(1);
  material.Weight = 0.0;
  EXPECT_EQ(model.Report(), PlaneFrame().Report());
  material.Weight = 6.0;
  material.A = 0.0;
  EXPECT_EQ(model.Report(), PlaneFrame().Report());
}

TEST(TextReport, HingedEndsTakeNoMomentOfTheLoad) {
  SmallModel model = PlaneFrame();
  model.project.endCodes = {HingeAtEnd2, BothFixed};
  model.Load(1, LocalPressure, {0.0, -16.0, 0.0});
  // 5 q L / 8, q L^2 / 8 and 3 q L / 8.
  EXPECT_THAT(model.Report(), HasSubstr("1 22 11 \n4 17 6 \n"));
}

TEST(TextReport, UnknownProblemTypeEndsTheRun) {
  SmallModel model = PlaneFrame();
  model.project.problemType = static_cast<ProblemType>(2);
  EXPECT_FATAL(model.Report(), "error: Project::WriteResults. problemtype unknown\n");
}

TEST(TextReport, QuadrilateralsAndHexahedraEndTheRunBehindTheDisplacements) {
  for (const int elemType : {Quadrilateral, Hexahedra}) {
    SmallModel model = PlaneFrame();
    model.AddMesh(elemType, 4);
    OutputText output;
    EXPECT_FATAL(model.project.WriteResults(model.results, output), "error: elemtype unknown\n");
    EXPECT_THAT(output.Text(), HasSubstr("NODAL DISPLACEMENTS"));
    EXPECT_THAT(output.Text(), Not(HasSubstr("REACTIONS")));
  }
}

}  // namespace

}  // namespace kestol
