#include <gtest/gtest.h>

#include <string>

#include "input/TextInput.h"
#include "input/Units.h"
#include "input/Words.h"
#include "tests/support/ExpectFatal.h"

namespace kestol {

namespace {

constexpr char kItems[] =
    "error: 'units_names' items should be: name nameN nameM namePa facN facM\n";
constexpr char kNoEnd[] = "error: 'units_names' should finish with the 'end' word\n";

// The names of the table's systems, each followed by a bar.
std::string Names(const Units& units) {
  std::string names;
  for (const UnitSystem& system : units.table) names += system.name + "|";
  return names;
}

Units Read(const std::string& block) {
  Units units;
  TextInput input(block);
  ReadUnitsNames(units, input);
  return units;
}

Units TwoSystems() {
  return Read("\nSI N m Pa 1 1\nkN-m kN m kPa 1000 1\nend\n");
}

TEST(ReadUnitsNames, RowHasFourNamesAndTwoFactors) {
  const Units units = TwoSystems();
  const UnitSystem& system = FindUnits(units, "kN-m");
  EXPECT_EQ(system.name, "kN-m");
  EXPECT_EQ(system.nameN, "kN");
  EXPECT_EQ(system.nameM, "m");
  EXPECT_EQ(system.namePa, "kPa");
  EXPECT_EQ(system.facN, 1000.0);
  EXPECT_EQ(system.facM, 1.0);
  EXPECT_EQ(units.table.size(), 2U);
}

TEST(ReadUnitsNames, TableIsSortedByTheBytesOfTheName) {
  EXPECT_EQ(Names(Read("b N m P 1 1\nB N m P 1 1\n\xc3\xa9 N m P 1 1\na N m P 1 1\nend")),
            "B|a|b|\xc3\xa9|");
}

TEST(ReadUnitsNames, EqualNamesKeepTheirOrder) {
  const Units units = Read("a N first P 1 1\nb N x P 1 1\na N second P 1 1\nend");
  EXPECT_EQ(units.table[0].nameM, "first");
  EXPECT_EQ(units.table[1].nameM, "second");
}

TEST(ReadUnitsNames, SecondBlockAddsToTheTable) {
  Units units = TwoSystems();
  TextInput input("Aa N m Pa 1 1\nend");
  ReadUnitsNames(units, input);
  EXPECT_EQ(Names(units), "Aa|SI|kN-m|");
}

TEST(ReadUnitsNames, AnyLineThatBeginsWithEndClosesTheBlock) {
  for (const char* end : {"end", "END", "ending of the list", "End units_names"}) {
    Units units;
    TextInput input("SI N m Pa 1 1\n" + std::string(end) + "\nmesh");
    ReadUnitsNames(units, input);
    EXPECT_EQ(units.table.size(), 1U);
    EXPECT_EQ(ReadWord(input), "mesh") << end;
  }
}

TEST(ReadUnitsNames, RecordNamedLikeTheEndClosesTheBlock) {
  EXPECT_EQ(Names(Read("SI N m Pa 1 1\nendless N m Pa 1 1\n")), "SI|");
}

TEST(ReadUnitsNames, SkipsSignsCommentsAndEmptyLines) {
  EXPECT_EQ(Names(Read(" : =\n\n# SI N m\n \t\r\n = SI N m Pa 1 1\r\n#end\nend\r\n")), "SI|");
}

TEST(ReadUnitsNames, CommentMayBeLongerThan1024Characters) {
  EXPECT_EQ(Names(Read("#" + std::string(3000, 'c') + "\nSI N m Pa 1 1\nend")), "SI|");
}

TEST(ReadUnitsNames, RefusesFewerThanSixFields) {
  for (const char* line : {"SI N m Pa 1", "SI N m Pa", "SI", "SI N m Pa x 1", "SI N m Pa 1 x"}) {
    EXPECT_FATAL(Read(std::string(line) + "\nend"), kItems);
  }
}

TEST(ReadUnitsNames, IgnoresWhatFollowsTheSixFields) {
  EXPECT_EQ(Names(Read("SI N m Pa 1 1 and more\nend")), "SI|");
}

TEST(ReadUnitsNames, NameLongerThan20CharactersSpillsOver) {
  const std::string name(20, 'n');
  EXPECT_FATAL(Read(name + "x N m Pa 1 1\nend"), kItems);
  const Units units = Read(name + "x m Pa 1 1\nend");  // the x is the force unit then
  EXPECT_EQ(FindUnits(units, name).nameN, "x");
}

TEST(ReadUnitsNames, RefusesABlockWithoutEnd) {
  for (const char* block : {"", "\n", "SI N m Pa 1 1\n", "SI N m Pa 1 1", "# end"}) {
    EXPECT_FATAL(Read(block), kNoEnd);
  }
}

TEST(ReadUnitsNames, LineCutByTheEndOfTheTextIsParsedFirst) {
  EXPECT_FATAL(Read("SI N m Pa 1"), kItems);
}

TEST(ReadUnitsNames, TakesMoreThanAHundredRecords) {
  std::string block;
  for (int i = 0; i < 120; ++i)
    block += "s" + std::to_string(i) + " N m Pa " + std::to_string(i) + " 1\n";
  const Units units = Read(block + "end");
  EXPECT_EQ(units.table.size(), 120U);
  for (int i = 0; i < 120; ++i) EXPECT_EQ(FindUnits(units, "s" + std::to_string(i)).facN, i);
}

TEST(FindUnits, ComparesWithCase) {
  const Units units = TwoSystems();
  EXPECT_FATAL(FindUnits(units, "si"), "error: Unit name 'si' has not been previously defined\n");
}

TEST(FindUnits, RefusesAnEmptyTableAndAnEmptyName) {
  EXPECT_FATAL(FindUnits(Units(), "SI"), "error: Unit name 'SI' has not been previously defined\n");
  EXPECT_FATAL(FindUnits(TwoSystems(), ""),
               "error: Unit name '' has not been previously defined\n");
}

TEST(FindUnits, TestsTheLengthFirst) {
  EXPECT_FATAL(FindUnits(Units(), "a23456789012345678901"),
               "error: Unit name 'a23456789012345678901' is too long\n");
  EXPECT_FATAL(FindUnits(Units(), "a2345678901234567890"),
               "error: Unit name 'a2345678901234567890' has not been previously defined\n");
}

TEST(IsUnitsKey, KnowsTheBeginningOfAKeyInThreeSpellings) {
  for (const char* key : {"units", "Units", "UNITS", "unitsx", "units_of_line"}) {
    EXPECT_TRUE(IsUnitsKey(key)) << key;
  }
  for (const char* key : {"uNits", "unit", "myunits", ""}) EXPECT_FALSE(IsUnitsKey(key)) << key;
}

TEST(FindUnitsInLine, KnowsThreeSpellings) {
  const Units units = TwoSystems();
  for (const char* line :
       {"units=SI", "1 0 0 Units: SI", "UNITS SI x", "units : = SI", "unitsSI"}) {
    const UnitSystem* system = FindUnitsInLine(units, line);
    ASSERT_NE(system, nullptr) << line;
    EXPECT_EQ(system->name, "SI");
  }
  EXPECT_EQ(FindUnitsInLine(units, "uNits: SI"), nullptr);
  EXPECT_EQ(FindUnitsInLine(units, "unit SI"), nullptr);
  EXPECT_EQ(FindUnitsInLine(units, ""), nullptr);
}

TEST(FindUnitsInLine, SmallLettersComeFirstWhereverTheyStand) {
  const Units units = TwoSystems();
  EXPECT_EQ(FindUnitsInLine(units, "UNITS=x Units=y myunits=SI")->name, "SI");
  EXPECT_EQ(FindUnitsInLine(units, "UNITS=x Units=SI")->name, "SI");
}

TEST(FindUnitsInLine, WordWithoutANameSelectsNothing) {
  EXPECT_EQ(FindUnitsInLine(TwoSystems(), "units"), nullptr);
  EXPECT_EQ(FindUnitsInLine(TwoSystems(), "1 2 units = : "), nullptr);
}

TEST(FindUnitsInLine, RefusesAnUnknownName) {
  EXPECT_FATAL(FindUnitsInLine(TwoSystems(), "units: MKS 1"),
               "error: Unit name 'MKS' has not been previously defined\n");
}

TEST(FindUnitsInLine, NameIsCutAt99Characters) {
  EXPECT_FATAL(FindUnitsInLine(TwoSystems(), "units " + std::string(150, 'n')),
               "error: Unit name '" + std::string(99, 'n') + "' is too long\n");
}

TEST(UnitFactors, AreRatiosToTheResultUnits) {
  Units units = TwoSystems();
  units.meshLength = 0.001;
  units.materialForce = 1000.0;
  units.materialLength = 0.01;
  units.resultForce = 10.0;
  units.resultLength = 0.1;
  EXPECT_DOUBLE_EQ(MeshLengthFactor(units), 0.01);
  EXPECT_DOUBLE_EQ(DefaultFactors(units).force, 100.0);
  EXPECT_DOUBLE_EQ(DefaultFactors(units).length, 0.1);
  EXPECT_DOUBLE_EQ(FactorsOf(units, FindUnits(units, "kN-m")).force, 100.0);
  EXPECT_DOUBLE_EQ(FactorsOf(units, FindUnits(units, "kN-m")).length, 10.0);
}

TEST(UnitFactors, AreOneWithoutAnyUnits) {
  const Units units;
  EXPECT_EQ(MeshLengthFactor(units), 1.0);
  EXPECT_EQ(DefaultFactors(units).force, 1.0);
  EXPECT_EQ(DefaultFactors(units).length, 1.0);
}

TEST(UnitFactors, BothFactorsOfASystemMustBePositive) {
  for (const char* factors : {"0 1", "1 0", "-1 1", "9e-16 1", "1 nan", "inf 1", "1 1e999"}) {
    const Units units = Read("bad N m Pa " + std::string(factors) + "\nend");
    EXPECT_FATAL(FactorsOf(units, FindUnits(units, "bad")),
                 "error: factors of unit system 'bad' must be two positive numbers\n");
  }
  const Units units = Read("tiny N m Pa 1e-15 1e-15\nend");
  EXPECT_EQ(FactorsOf(units, FindUnits(units, "tiny")).force, 1e-15);
}

TEST(TakeUnits, TakesTheNameBehindTheSigns) {
  const Units units = TwoSystems();
  std::string_view text = " = : kN-m E=1";
  EXPECT_EQ(TakeUnits(units, text).force, 1000.0);
  EXPECT_EQ(TakeKey(text), "E");
}

TEST(TakeUnits, RefusesAMissingName) {
  std::string_view text = " = ";
  EXPECT_FATAL(TakeUnits(TwoSystems(), text),
               "error: Unit name '' has not been previously defined\n");
}

}  // namespace

}  // namespace kestol
