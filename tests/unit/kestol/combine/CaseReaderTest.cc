#include <fstream>

#include "kestol/LoadedHinges.h"
#include "kestol/ReadDeck.h"
#include "kestol/combine/CaseReader.h"
#include "kestol/combine/Superposition.h"
#include "tests/support/ExpectFatal.h"

namespace kestol {
namespace {

const std::string kModel =
    "problem portal\ntype 2d\n"
    "units_names\nkN-m kN m kPa 1000 1\nN-mm N mm MPa 1 0.001\nend\n"
    "units_mesh=m\nunits_mat_and_load=kN-m\nunits_res=kN-m\nGravityDirection 0 -1 0\n"
    "mesh dimension 2 elemtype Linear nnode 2\n"
    "coordinates\n1 0 0\n2 0 4\n3 6 4\n4 6 0\nend\nelements\n1 1 2 1\n2 2 3 1\n3 3 4 1\nend\n"
    "materials\n1 E=210e6 A=1e-2 Iz=1e-4 Weight=78.5\nend\n"
    "constraints\n1 111 0 0 0\n4 112 0 -0.02 500 Euler3=0.5\nend\n"
    "nodal_point_loads\n2 5 0 0\nend\nglobal_pressure_loads\n2 0 -10\nend\n";

class CaseReaderTest : public testing::Test {
protected:
  CaseLoads Read(const std::string& text) { return ReadCaseText(project, text, "case.dat"); }

  /// The refusal of a text: its message and its line.
  std::string Refusal(const std::string& text, long line) {
    try {
      Read(text);
    } catch (const FatalError& refusal) {
      EXPECT_STREQ(refusal.File(), "case.dat");
      EXPECT_EQ(refusal.Line(), line);
      EXPECT_EQ(refusal.Status(), 2);
      std::string message = refusal.what();
      error.Clear();
      return message;
    }
    ADD_FAILURE() << "read: " << text;
    return "";
  }

  Project project = ReadDeckText(kModel, "portal.dat");
  CaseLoads ofModel = TakeLoads(project);
};

TEST_F(CaseReaderTest, LoadsOfTheModelAreTakenOff) {
  EXPECT_EQ(ofModel.nodal.at(2)(1), 5.0);
  EXPECT_EQ(ofModel.distributed.at(2)->values(2), -10.0);
  EXPECT_EQ(ofModel.settlements.at(4)[1], -0.02);
  EXPECT_EQ(ofModel.settlements.size(), 1u);
  EXPECT_EQ(ofModel.gravity(2), -1.0);
  EXPECT_EQ(project.meshes[0]->nodes->Get(2)->load, nullptr);
  EXPECT_EQ(project.loads.Get(2), nullptr);
  EXPECT_EQ(project.gravity(2), 0.0);
  const Constraint& support = *project.meshes[0]->nodes->Get(4)->constraint;
  EXPECT_EQ(support.values[1], 0.0);
  EXPECT_EQ(support.values[2], 500.0) << "a spring is no load";
}

TEST_F(CaseReaderTest, AllSectionsAreRead) {
  const CaseLoads loads = Read(
      "# office\nnodal_point_loads\n 2 1 2 3\n 2 1 0 0\nend\n"
      "global_pressure_loads\n 1 0 -3\nend\nglobal_projected_pressure_loads\n1 0 -4\nend\n"
      "local_pressure_loads # comment\n 2 1 0\nend\n"
      "constraints\n 1 110 0.01 0 0\n 4 010 0 0.03 0\nend\n");
  EXPECT_EQ(loads.nodal.at(2)(1), 2.0);
  EXPECT_EQ(loads.nodal.at(2)(3), 3.0);
  EXPECT_EQ(loads.distributed.at(1)->kind, GlobalPressure);
  EXPECT_EQ(loads.distributed.at(1)->next->kind, GlobalProjected);
  EXPECT_EQ(loads.distributed.at(2)->kind, LocalPressure);
  EXPECT_EQ(loads.settlements.at(1)[0], 0.01);
  EXPECT_EQ(loads.settlements.at(4)[1], 0.03);
  EXPECT_EQ(loads.gravity(2), 0.0) << "the weight is that of the model";
  EXPECT_EQ(project.meshes[0]->nodes->Get(2)->load, nullptr);
}

TEST_F(CaseReaderTest, UnitsOfTheFileHoldWithinTheFile) {
  const CaseLoads named = Read("units_mat_and_load=N-mm\nnodal_point_loads\n2 1000 0 0\nend\n");
  EXPECT_DOUBLE_EQ(named.nodal.at(2)(1), 1.0);
  const CaseLoads own = Read(
      "units_names\nkN-m kN m kPa 1e3 1\nMN-m MN m MPa 1e6 1\nend\nunits_mat_and_load "
      "MN-m\nunits_mesh m\n"
      "units_res kN-m\nnodal_point_loads\n2 1 0 0\n3 7000 0 0 Units N-mm\nend\n");
  EXPECT_DOUBLE_EQ(own.nodal.at(2)(1), 1000.0);
  EXPECT_DOUBLE_EQ(own.nodal.at(3)(1), 7.0);
  EXPECT_DOUBLE_EQ(Read("nodal_point_loads\n2 1 0 0\nend\n").nodal.at(2)(1), 1.0);
  EXPECT_EQ(Refusal("\nunits_mat_and_load=MN-m\n", 2),
            "error: Unit name 'MN-m' has not been previously defined\n");
}

TEST_F(CaseReaderTest, SupportsOfTheModelMayBeRepeated) {
  const CaseLoads loads = Read("constraints\n4 112 0 0 500 Euler3=0.5\nend\n");
  EXPECT_EQ(loads.settlements.at(4)[1], 0.0);
}

TEST_F(CaseReaderTest, AnythingElseIsRefusedWithItsLine) {
  const std::string tail =
      "' does not belong in a load case, which holds load sections, constraints with settlements "
      "and units keywords\n";
  EXPECT_EQ(Refusal("\n# c\nmesh\n", 3), "error: 'mesh" + tail);
  for (const char* const word : {"materials", "rotules", "PROBLEM", "Solver", "GravityDirection"})
    EXPECT_EQ(Refusal(std::string("nodal_point_loads\n2 1 0 0\nend\n") + word + " 1\n", 4),
              std::string("error: '") + word + tail);
}

TEST_F(CaseReaderTest, OtherSupportsAreRefused) {
  EXPECT_EQ(Refusal("constraints\n2 100 0 0 0\nend\n", 2),
            "error: node 2 has no support in the model\n");
  EXPECT_EQ(Refusal("constraints\n1 110 0 0 0\n4 002 0 0 600\nend\n", 3),
            "error: the spring on degree 3 of node 4 is not that of the model, 500\n");
  EXPECT_EQ(Refusal("constraints\n4 001 0 0 0\nend\n", 2),
            "error: code 1 of degree 3 of node 4 is not that of the model, 2\n");
  EXPECT_EQ(Refusal("constraints\n4 110 0 0 0 Euler3=0.4\nend\n", 2),
            "error: the axes of the support of node 4 are not those of the model\n");
}

TEST_F(CaseReaderTest, MistakesOfRecordsHaveTheWordsOfTheSolver) {
  EXPECT_EQ(Refusal("nodal_point_loads\n2 1 0 0\n9 1 0 0\nend\n", 3),
            "error: Trying to assign Load to unknown node\n");
  EXPECT_EQ(Refusal("global_pressure_loads\n\n9 1 0\nend\n", 3),
            "error: trying to assign load to element number 9 and it does not exist\n");
  EXPECT_EQ(Refusal("constraints\n9 111 0 0 0\nend\n", 2),
            "error: Trying to assign constrain to unknown node\n");
  EXPECT_EQ(Refusal("units_names\n a b\nend\n", 2),
            "error: 'units_names' items should be: name nameN nameM namePa facN facM\n");
}

TEST_F(CaseReaderTest, SectionsNeedTheirEnd) {
  EXPECT_EQ(Refusal("\nnodal_point_loads\n2 1 0 0\n", 2),
            "error: section 'nodal_point_loads' of line 2 has no \"end\"\n");
  EXPECT_EQ(Refusal("nodal_point_loads\n2 1 0 0\nface_loads\n", 3),
            "error: section 'nodal_point_loads' of line 1 has no \"end\" before 'face_loads'\n");
  EXPECT_EQ(Refusal("units_names\nMN-m MN m MPa 1e6 1\nkN-m kN m kPa 1 1\nend\n", 3),
            "error: unit system 'kN-m' is known with other factors: give it another name\n");
  EXPECT_EQ(Refusal("units_names\n", 1),
            "error: 'units_names' should finish with the 'end' word\n");
}

TEST_F(CaseReaderTest, ResultsKeepTheUnitsOfTheModel) {
  EXPECT_EQ(Refusal("units_res=N-mm\n", 1),
            "error: the units of the results are those of the model\n");
}

TEST_F(CaseReaderTest, FileThatCannotBeOpenedIsRefused) {
  EXPECT_FATAL(ReadCase(project, "no-such-case.dat"), "can't open file no-such-case.dat\n");
}

TEST_F(CaseReaderTest, ModelCarriesTheSumOfTheCases) {
  std::vector<CaseLoads> cases;
  cases.push_back(std::move(ofModel));
  cases.push_back(
      Read("nodal_point_loads\n2 1 0 0\nend\nglobal_pressure_loads\n2 0 3\nend\n"
           "constraints\n4 110 0.01 0.02 0\nend\n"));
  PutLoads(project, cases, {2.0, -1.0}, MidSideSupports());
  EXPECT_EQ(project.gravity(2), -2.0);
  EXPECT_EQ((*project.meshes[0]->nodes->Get(2)->load)(1), 9.0);
  EXPECT_EQ(project.loads.Get(2)->values(2), -20.0);
  EXPECT_EQ(project.loads.Get(2)->next->values(2), -3.0);
  const Constraint& support = *project.meshes[0]->nodes->Get(4)->constraint;
  EXPECT_DOUBLE_EQ(support.values[0], -0.01);
  EXPECT_DOUBLE_EQ(support.values[1], -0.06);
  EXPECT_EQ(support.values[2], 500.0);
}

// --- hinges --------------------------------------------------------------------------------------

std::string HingedDeck(const std::string& secondBeam, const std::string& loads) {
  return "problem hinge\ntype 2d\nGravityDirection 0 -1 0\n"
         "mesh dimension 2 elemtype Linear nnode 2\n"
         "coordinates\n1 0 0\n2 3 0\n3 6 0\nend\nelements\n1 1 2 1\n2 " +
         secondBeam +
         " 1\nend\nmaterials\n1 E=1 A=1 Iz=1\nend\nconstraints\n1 111 0 0 0\n3 111 0 0 0\nend\n"
         "rotules\n2\nend\n" +
         loads;
}

std::vector<LoadedHinge> ObstaclesOf(const std::string& deck) {
  Project project = ReadDeckText(deck, "hinge.dat");
  std::vector<CaseLoads> cases;
  cases.push_back(TakeLoads(project));
  return Superposition(project, std::move(cases)).Obstacles();
}

TEST(LoadedHinges, BeamLoadedAcrossAndHingedAtItsFirstNodeIsFound) {
  const auto found = ObstaclesOf(HingedDeck("2 3", "global_pressure_loads\n2 0 -1\nend\n"));
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0].element, 2);
  EXPECT_EQ(found[0].node, 2);
  EXPECT_EQ(found[0].otherNode, 3);
}

TEST(LoadedHinges, LoadsAlongTheBeamAndHingesAtItsSecondNodeAreFine) {
  EXPECT_TRUE(ObstaclesOf(HingedDeck("2 3", "global_pressure_loads\n2 1 0\nend\n")).empty());
  EXPECT_TRUE(ObstaclesOf(HingedDeck("3 2", "global_pressure_loads\n2 0 -1\nend\n")).empty());
  EXPECT_TRUE(ObstaclesOf(HingedDeck("2 3", "nodal_point_loads\n2 0 -1 0\nend\n")).empty());
}

TEST(LoadedHinges, SolveRefusesThem) {
  Project project = ReadDeckText(HingedDeck("2 3", "global_pressure_loads\n2 0 -1\nend\n"), "h");
  std::vector<CaseLoads> cases;
  cases.push_back(TakeLoads(project));
  Superposition sums(project, std::move(cases));
  EXPECT_FATAL(sums.Solve(),
               "error: element 2 is loaded and hinged at its first node 2: write \"3 2\"\n");
}

}  // namespace
}  // namespace kestol
