#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "tests/support/ExpectFatal.h"
#include "tests/support/ReadDeck.h"

namespace kestol {

namespace {

// --- units ------------------------------------------------------------------------------------

TEST(UnitsKeywords, MeshUnitIsFoundByItsLengthName) {
  EXPECT_EQ(ReadKeywords(kSystems + "units_mesh mm")->units.meshLength, 0.001);
  EXPECT_FATAL(ReadKeywords(kSystems + "units_mesh MM"),
               "error: Unit length name 'MM' has not been previously defined\n");
  EXPECT_FATAL(ReadKeywords("units_mesh mm"),
               "error: Unit length name 'mm' has not been previously defined\n");
  EXPECT_FATAL(Read(kHeader + std::string("units_mesh")),
               "error: Unit length name '' has not been previously defined\n");
}

TEST(UnitsKeywords, MeshUnitIsTheFirstOfTheTable) {
  EXPECT_EQ(
      ReadKeywords("units_names\nb N in P 1 2\na N in P 1 3\nend\nunits_mesh=in")->units.meshLength,
      3.0);
}

TEST(UnitsKeywords, MeshUnitMustBePositive) {
  EXPECT_FATAL(ReadKeywords(kSystems + "units_mesh none"),
               "error: Units_mesh must be a positive number\n");
}

TEST(UnitsKeywords, MaterialAndLoadUnitsAreFoundByTheNameOfTheSystem) {
  const auto project = ReadKeywords(kSystems + "Units_Mat_And_Load: N-mm");
  EXPECT_EQ(project->units.materialForce, 1.0);
  EXPECT_EQ(project->units.materialLength, 0.001);
  EXPECT_FATAL(ReadKeywords(kSystems + "units_mat_and_load MKS"),
               "error: Unit name 'MKS' has not been previously defined\n");
  EXPECT_FATAL(ReadKeywords(kSystems + "units_mat_and_load zero"),
               "error: units_mat_and_load must be two positive numbers\n");
}

TEST(UnitsKeywords, ResultUnitsBringTheirNames) {
  const auto project = ReadKeywords(kSystems + "units_res kN-m");
  EXPECT_EQ(project->units.resultForce, 1000.0);
  EXPECT_EQ(project->units.resultLength, 1.0);
  EXPECT_EQ(project->units.resultForceName, "kN");
  EXPECT_EQ(project->units.resultLengthName, "m");
  EXPECT_EQ(project->units.resultPressureName, "kPa");
  EXPECT_EQ(ReadKeywords(kSystems + "units_res N-mm")->units.resultLengthName, "mm");
  EXPECT_FATAL(ReadKeywords(kSystems + "units_res zero"),
               "error: units_res must be two positive numbers and three names\n");
  EXPECT_FATAL(ReadKeywords(kSystems + "units_res = SI"),
               "error: Unit name '' has not been previously defined\n");
}

TEST(UnitsKeywords, NameOf21CharactersIsTooLong) {
  EXPECT_FATAL(ReadKeywords("units_res a23456789012345678901"),
               "error: Unit name 'a23456789012345678901' is too long\n");
  EXPECT_FATAL(ReadKeywords("units_res a2345678901234567890"),
               "error: Unit name 'a2345678901234567890' has not been previously defined\n");
}

TEST(UnitsKeywords, MayFollowTheirTableOnly) {
  EXPECT_FATAL(ReadKeywords("units_res SI\n" + kSystems),
               "error: Unit name 'SI' has not been previously defined\n");
}

TEST(UnitsKeywords, LaterResultUnitsRescaleNothing) {
  const auto project = Read(kHeader + kSystems + kMesh + "units_res N-mm\n");
  EXPECT_EQ(project->meshes[0]->nodes->Get(2)->x, 1.0);
}

TEST(UnitsKeywords, CoordinatesTurnIntoResultUnits) {
  const auto project = Read(kHeader + kSystems + "units_mesh m\nunits_res N-mm\n" + kMesh);
  EXPECT_DOUBLE_EQ(project->meshes[0]->nodes->Get(2)->x, 1000.0);
}

// --- materials --------------------------------------------------------------------------------

TEST(MaterialsSection, StoresByNumberUpToTheEnd) {
  const auto project = ReadKeywords("materials\n # steel\n 7 E=2 A=3\n:= 2 E=5\nend materials x\n");
  EXPECT_EQ(project->materials.Get(7)->A, 3.0);
  EXPECT_EQ(project->materials.Get(2)->E1, 5.0);
  EXPECT_EQ(project->materials.Highest(), 7);
}

TEST(MaterialsSection, RepeatedSectionGoesOnFilling) {
  const auto project = ReadKeywords("materials\n1 E=2\nend\nmaterials\n2 E=3\nend");
  EXPECT_EQ(project->materials.Get(1)->E1, 2.0);
  EXPECT_EQ(project->materials.Get(2)->E1, 3.0);
}

TEST(MaterialsSection, ClosesWithAnyWordThatContainsEnd) {
  EXPECT_EQ(ReadKeywords("materials\n1 E=2\nbending of beams\n")->materials.Highest(), 1);
  EXPECT_EQ(ReadKeywords("materials\nend materials\n")->materials.Highest(), 0);
}

TEST(MaterialsSection, RefusesATextWithoutEnd) {
  EXPECT_FATAL(Read(kHeader + std::string("materials\n1 E=2\n")),
               "can't find word ***end*** in input file\n");
}

TEST(MaterialsSection, RefusesAKeyWithoutValue) {
  EXPECT_FATAL(ReadKeywords("materials\n1 E=2 nu=\nend"),
               "error in materials. Key without value: 'nu'\n");
}

TEST(MaterialsSection, LineWithoutKeysIsAMaterialWithoutValues) {
  EXPECT_EQ(ReadKeywords("materials\n1\nend")->materials.Get(1)->E1, -1.0);
}

TEST(MaterialsSection, RefusesARepeatedOrUnusableNumber) {
  EXPECT_FATAL(ReadKeywords("materials\n1 E=2\n1 E=3\nend"), "Repeated index 1 in VoidPlex");
  EXPECT_FATAL(ReadKeywords("materials\n0 E=2\nend"), "Invalid void index 0");
  EXPECT_FATAL(ReadKeywords("materials\n-3 E=2\nend"), "Invalid void index -3");
  EXPECT_FATAL(ReadKeywords("materials\n2147483648 E=2\nend"),
               "error: number out of range in input file\n");
}

TEST(MaterialsSection, UsesTheUnitsInForce) {
  const auto project = ReadKeywords(kSystems + "units_mat_and_load kN-m\nmaterials\n1 E=2\nend\n");
  EXPECT_EQ(project->materials.Get(1)->E1, 2000.0);
}

}  // namespace

}  // namespace kestol
