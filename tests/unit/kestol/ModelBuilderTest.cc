#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include "kestol/CopyModel.h"
#include "kestol/ModelBuilder.h"
#include "kestol/ReadDeck.h"
#include "kestol/WriteDeck.h"
#include "main/ErrorChannel.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/ReadDeck.h"

namespace kestol {

namespace {

std::string Written(const Project& project) {
  std::ostringstream stream;
  WriteDeck(project, stream);
  return stream.str();
}

const std::vector<int> kFour = {1, 2, 3, 4};

/// Four nodes on a line and one beam: the model of kMesh.
ModelBuilder Line() {
  ModelBuilder builder(2);
  builder.AddNodes(kFour, std::vector<double>{0, 0, 1, 0, 2, 0, 3, 0});
  return builder;
}

void AddBeam(ModelBuilder& builder, int number, int node1, int node2) {
  const std::vector<int> nodes = {node1, node2}, numbers = {number}, materials = {1};
  builder.AddElements({Linear, 2, numbers, nodes, materials});
}

TEST(ModelBuilder, GivesTheModelOfTheDeck) {
  ModelBuilder builder = Line();
  AddBeam(builder, 1, 1, 2);
  builder.AddRecord("materials", "1 E=2 A=3 Iz=4");
  builder.AddRecord("constraints", "1 111 0 0 0");
  builder.AddRecord("rotules", "2");
  builder.AddRecord("nodal_point_loads", "2 0 -1 0");
  builder.AddRecord("global_pressure_loads", "1 0 5");
  builder.Say("Solver SkyLine");
  builder.Check();
  const Project read = ReadDeckText(
      kHeader + kMesh +
          "materials\n1 E=2 A=3 Iz=4\nend\nconstraints\n1 111 0 0 0\nend\nrotules\n2\nend\n"
          "nodal_point_loads\n2 0 -1 0\nend\nglobal_pressure_loads\n1 0 5\nend\nSolver SkyLine\n",
      "a.dat");
  EXPECT_EQ(Written(builder.Model()), Written(read));
  EXPECT_EQ(builder.Model().numElements, read.numElements);
  EXPECT_EQ(builder.Model().nodesAsRead, 4);
  EXPECT_TRUE(builder.Model().hasHinges);
}

TEST(ModelBuilder, MakesOneMeshOfEachKind) {
  ModelBuilder builder(3);
  builder.AddNodes(kFour, std::vector<double>{0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1});
  AddBeam(builder, 5, 1, 2);
  const std::vector<int> numbers = {6}, nodes = {1, 2, 3}, materials = {2};
  builder.AddElements({Triangle, 3, numbers, nodes, materials});
  AddBeam(builder, 8, 3, 4);
  builder.Check();
  ASSERT_EQ(builder.Model().meshes.size(), 2U);
  EXPECT_EQ(builder.Model().numElements[0], 2);
  EXPECT_EQ(builder.Model().numElements[1], 1);
  EXPECT_EQ(builder.NextElementNumber(), 9);
  EXPECT_EQ(builder.NextNodeNumber(), 5);
}

TEST(ModelBuilder, SolidsHaveThreeDegrees) {
  ModelBuilder builder(3);
  builder.AddNodes(kFour, std::vector<double>{0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1});
  const std::vector<int> numbers = {1}, materials = {1};
  builder.AddElements({Tetrahedra, 4, numbers, kFour, materials});
  builder.AddRecord("constraints", "1 111 0 0 0");
  builder.Check();
  EXPECT_EQ(builder.Model().dofsPerNode, 3);
  EXPECT_EQ(builder.Model().DoSmoothing, 1);
}

TEST(ModelBuilder, SolidsComeBeforeSupportsAndLoads) {
  ModelBuilder builder(3);
  builder.AddNodes(kFour, std::vector<double>{0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1});
  builder.AddRecord("constraints", "1 111000 0 0 0 0 0 0");
  const std::vector<int> numbers = {1}, materials = {1};
  EXPECT_FATAL(builder.AddElements({Tetrahedra, 4, numbers, kFour, materials}),
               "error: solids must be added before supports and loads\n");
}

TEST(ModelBuilder, ScalesCoordinatesByTheUnitOfTheMesh) {
  ModelBuilder builder(2);
  builder.AddUnits("SI N m Pa 1 1");
  builder.AddUnits("N-mm N mm MPa 1 0.001");
  builder.Say("units_res SI");
  builder.Say("units_mesh mm");
  builder.AddNodes(std::vector<int>{1}, std::vector<double>{1000, 500});
  EXPECT_EQ(builder.Model().meshes[0]->nodes->Get(1)->x, 1.0);
  EXPECT_EQ(builder.Model().meshes[0]->nodes->Get(1)->y, 0.5);
}

TEST(ModelBuilder, RefusesNodesThatCannotBe) {
  ModelBuilder builder = Line();
  const std::vector<double> origin = {0, 0}, twice = {0, 0, 1, 1};
  EXPECT_FATAL(ModelBuilder(4), "error: mesh dimension must be 2 or 3\n");
  EXPECT_FATAL(builder.AddNodes(std::vector{4}, origin), "error: node: 4 is there already\n");
  EXPECT_FATAL(builder.AddNodes(std::vector{0}, origin), "error: node number 0 is not above 0\n");
  EXPECT_FATAL(builder.AddNodes(std::vector{6, 6}, twice), "error: node number 6 is given twice\n");
  EXPECT_FATAL(builder.AddNodes(std::vector{6}, twice), "error: nodes need 2 coordinates each\n");
  const std::vector<double> infinite = {0, std::numeric_limits<double>::infinity()};
  EXPECT_FATAL(builder.AddNodes(std::vector{6}, infinite),
               "error: node: 6 has not correct coordinates\n");
  EXPECT_EQ(builder.NextNodeNumber(), 5);
}

TEST(ModelBuilder, RefusesElementsThatCannotBe) {
  ModelBuilder empty(2);
  EXPECT_FATAL(AddBeam(empty, 1, 1, 2), "error: list of nodes does not contain any node\n");
  ModelBuilder builder = Line();
  AddBeam(builder, 1, 1, 2);
  EXPECT_FATAL(AddBeam(builder, 1, 2, 3),
               "error: All elements must have different number. Check elm num: 1\n");
  EXPECT_FATAL(AddBeam(builder, 2, 2, 9), "error: element: 2 has an unknown node: 9\n");
  EXPECT_FATAL(AddBeam(builder, 2, 2, 2), "error: element: 2 have both nodes equal\n");
  EXPECT_FATAL(AddBeam(builder, -2, 2, 3), "error: element number -2 is not above 0\n");
  const std::vector<int> numbers = {3, 4}, nodes = {1, 2, 3, 4}, one = {1}, three = {1, 1, 1};
  EXPECT_FATAL(builder.AddElements({Linear, 2, one, nodes, one}),
               "error: elements need 2 nodes each\n");
  EXPECT_FATAL(builder.AddElements({Linear, 2, numbers, nodes, three}),
               "error: elements need one material each, or one for all\n");
  EXPECT_FATAL(builder.AddElements({
                   Linear, 2, std::vector{3, 3},
                     nodes, one
  }),
               "error: element number 3 is given twice\n");
  EXPECT_EQ(builder.Model().numElements[0], 1);
}

TEST(ModelBuilder, RefusesModelsThatNoDeckHolds) {
  ModelBuilder builder(2);
  EXPECT_FATAL(builder.Check(), "error: it is necessary at least one mesh\n");
  builder.AddNodes(std::vector{1, 3}, std::vector<double>{0, 0, 1, 1});
  EXPECT_FATAL(builder.Check(), "error: the model has no element\n");
  AddBeam(builder, 1, 1, 3);
  EXPECT_FATAL(builder.Check(), "error: list of nodes does not contain all numbers\n");
}

TEST(ModelBuilder, RefusesWhatTheReadersRefuse) {
  ModelBuilder builder = Line();
  EXPECT_FATAL(builder.AddRecord("materials", "1 E="),
               "error in materials. Key without value: 'E'\n");
  EXPECT_FATAL(builder.AddRecord("constraints", "9 111 0 0 0"),
               "error: Trying to assign constrain to unknown node\n");
  EXPECT_FATAL(builder.Say("Solver none"),
               "error: type of solver must be: Automatic, SkyLine, Double or Sparse\n");
  EXPECT_FATAL(builder.AddRecord("rotules", "1\n2"), "error: a record of a deck is one line\n");
  EXPECT_FATAL(builder.Say("NumOfDivisions 3\nSolver none"),
               "error: a record of a deck is one line\n");
}

TEST(ModelBuilder, RefusesMaterialsInWordsOfItsOwn) {
  ModelBuilder builder(2);
  builder.AddRecord("materials", "1 E=2");
  const std::string before = Written(builder.Model());
  EXPECT_FATAL(builder.AddRecord("materials", "1 E=3"), "error: material 1 is given twice\n");
  EXPECT_FATAL(builder.AddRecord("Materials", " 1 E=3"), "error: material 1 is given twice\n");
  EXPECT_FATAL(builder.AddRecord("materials", "0 E=3"), "error: material numbers begin at 1\n");
  EXPECT_FATAL(builder.AddRecord("materials", "-1 E=3"), "error: material numbers begin at 1\n");
  EXPECT_EQ(Written(builder.Model()), before);
  builder.AddRecord("materials", "2 E=3");
  EXPECT_EQ(builder.Model().materials.Get(2)->E1, 3.0);
}

TEST(ModelBuilder, KeepsNothingOfARefusedRecord) {
  ModelBuilder builder = Line();
  const std::string before = Written(builder.Model());
  EXPECT_FATAL(builder.AddRecord("constraints", "1 11 0 0 0"),
               "Not reading correctly the constraints. Number=1\n");
  EXPECT_FATAL(builder.AddUnits("SI N m Pa 1"),
               "error: 'units_names' items should be: name nameN nameM namePa facN facM\n");
  EXPECT_EQ(builder.Model().meshes[0]->nodes->Get(1)->constraint, nullptr);
  EXPECT_EQ(Written(builder.Model()), before);
}

TEST(ModelBuilder, KeepsNothingOfARefusedStatement) {
  ModelBuilder builder(2);
  builder.AddUnits("SI N m Pa 1 1");
  builder.AddUnits("none N m Pa 0 0");
  ModelBuilder unchanged(CopyModel(builder.Model()));
  const std::string before = Written(builder.Model());
  for (const char* statement :
       {"NumOfDivisions 0", "DoSmoothing 4", "CoplanarityAngle 0", "Solver Sparse 0 0 10",
        "GravityDirection 0 0 0", "units_res none", "units_mat_and_load none", "units_mesh ft",
        "MainStresses ConvertTo6Nodes units_res SI units_mesh m GravityDirection 1 0 0 Solver "
        "no"}) {
    SCOPED_TRACE(statement);
    EXPECT_THROW(unchanged.Say(statement), FatalError);
    EXPECT_EQ(Written(unchanged.Model()), before);
    EXPECT_FALSE(unchanged.IsChanged());
  }
  unchanged.Say("NumOfDivisions 4");
  EXPECT_TRUE(unchanged.IsChanged());
}

}  // namespace

}  // namespace kestol
