#include <gtest/gtest.h>

#include <cstdio>
#include <ctime>
#include <fstream>
#include <sstream>
#include <string>

#include "input/TimeTable.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/OwnFolder.h"

namespace kestol {

namespace {

double now = 0.0;  // the clock of these tests, in milliseconds

double Now() {
  return now;
}

// A table on that clock, with a report name of its own.
class TimeTableTest : public testing::Test {
protected:
  TimeTableTest() : table(Now) {
    now = 1000.0;
    table.SetOutputName(folder.Path("model"));
  }

  // Enters and leaves a phase of that length.
  void Spend(const char* name, double milliseconds) {
    const TimeTable::Handle handle = table.Start(name);
    now += milliseconds;
    table.Stop(handle);
  }

  std::string Report() const { return ContentsOf(folder.Path("model.tim")); }

  OwnFolder folder;
  TimeTable table;
};

constexpr char kHeader[] = "\n   Time Table: ...............  cputime[s] (percent[%]) Uses\n\n";

TEST_F(TimeTableTest, RootAloneIsOneLine) {
  Spend("run", 250.0);
  EXPECT_EQ(Report(), kHeader + std::string("   run........................... ") +
                          "0.25000[s] (100.0[%]) 1\n\n\n");
}

TEST_F(TimeTableTest, PhaseStartedThreeTimesIsOneLineWithItsSum) {
  const auto root = table.Start("run");
  const char* const phase = "assembly";
  for (int i = 0; i < 3; ++i) Spend(phase, 200.0);
  now += 300.0;
  table.Stop(root);
  EXPECT_EQ(Report(), kHeader + std::string("   run........................... ") +
                          "0.90000[s] (100.0[%]) 1\n" +
                          "    . assembly...................... 0.60000[s] (66.7[%]) 3\n\n\n");
}

TEST_F(TimeTableTest, ChildrenStandInTheOrderOfTheirFirstStart) {
  const char* const a = "a";
  const char* const b = "b";
  const auto root = table.Start("run");
  Spend(b, 10.0);
  Spend(a, 10.0);
  Spend(b, 10.0);
  table.Stop(root);
  const std::string report = Report();
  EXPECT_LT(report.find(" . b..."), report.find(" . a..."));
}

TEST_F(TimeTableTest, EqualTextsAtTwoAddressesAreTwoPhases) {
  const char first[] = "phase";
  const char second[] = "phase";
  const auto root = table.Start("run");
  Spend(first, 100.0);
  Spend(second, 300.0);
  table.Stop(root);
  EXPECT_NE(Report().find("phase......................... 0.10000[s] (25.0[%]) 1\n"),
            std::string::npos);
  EXPECT_NE(Report().find("phase......................... 0.30000[s] (75.0[%]) 1\n"),
            std::string::npos);
}

TEST_F(TimeTableTest, PhaseInsideItselfIsItsChild) {
  const char* const name = "step";
  const auto root = table.Start(name);
  Spend(name, 500.0);
  table.Stop(root);
  EXPECT_NE(Report().find("\n    . step.......................... 0.50000[s] (100.0[%]) 1\n"),
            std::string::npos);
}

TEST_F(TimeTableTest, DepthIndentsTheName) {
  const auto root = table.Start("run");
  const auto outer = table.Start("outer");
  Spend("inner", 100.0);
  table.Stop(outer);
  table.Stop(root);
  EXPECT_NE(Report().find("\n    .  . inner......................... 0.10000[s]"),
            std::string::npos);
}

TEST_F(TimeTableTest, PhaseOfLessThanASecondHasNoOtherOperations) {
  const auto root = table.Start("run");
  Spend("part", 100.0);
  now += 800.0;
  table.Stop(root);
  EXPECT_EQ(Report().find("Other"), std::string::npos);
}

TEST_F(TimeTableTest, RestOfALongPhaseIsOtherOperations) {
  const auto root = table.Start("run");
  Spend("part", 1000.0);
  now += 3000.0;
  table.Stop(root);
  EXPECT_EQ(Report(), kHeader + std::string("   run........................... ") +
                          "4.00000[s] (100.0[%]) 1\n" +
                          "    . part.......................... 1.00000[s] (25.0[%]) 1\n" +
                          "    . Other operations.............. 3.00000[s] (75.0[%])\n\n\n");
}

TEST_F(TimeTableTest, PhaseOfExactlyASecondHasNoOtherOperations) {
  const auto root = table.Start("run");
  Spend("part", 500.0);
  now += 500.0;
  table.Stop(root);
  EXPECT_EQ(Report().find("Other"), std::string::npos);
}

TEST_F(TimeTableTest, PhaseOfLittleMoreThanASecondHasOtherOperations) {
  const auto root = table.Start("run");
  Spend("part", 251.0);
  now += 753.0;
  table.Stop(root);
  EXPECT_NE(Report().find("\n    . Other operations.............. 0.75300[s] (75.0[%])\n"),
            std::string::npos);
}

TEST_F(TimeTableTest, OtherOperationsHaveARateToo) {
  table.SetCount("elements", 1000);
  const auto root = table.Start("run");
  Spend("part", 1000.0);
  now += 3000.0;
  table.Stop(root);
  EXPECT_NE(Report().find("\n    . Other operations.............. 3.00000[s] (75.0[%]) -- 20000\n"),
            std::string::npos);
}

TEST_F(TimeTableTest, SmallRestIsNotListed) {
  const auto root = table.Start("run");
  Spend("part", 4000.0);
  now += 100.0;  // not more than a tenth of a second
  table.Stop(root);
  EXPECT_EQ(Report().find("Other"), std::string::npos);
}

TEST_F(TimeTableTest, RestBelowATenthOfAPercentIsNotListed) {
  const auto root = table.Start("run");
  Spend("part", 400000.0);
  now += 300.0;
  table.Stop(root);
  EXPECT_EQ(Report().find("Other"), std::string::npos);
}

TEST_F(TimeTableTest, RestOfExactlyATenthOfAPercentIsNotListed) {
  const auto root = table.Start("run");
  Spend("part", 124875.0);
  now += 125.0;
  table.Stop(root);
  EXPECT_EQ(Report().find("Other"), std::string::npos);
}

TEST_F(TimeTableTest, LongPhaseWithoutChildrenHasNoOtherOperations) {
  Spend("run", 5000.0);
  EXPECT_EQ(Report().find("Other"), std::string::npos);
}

TEST_F(TimeTableTest, RootOfNoTimeIs100PercentAndSoIsEachChild) {
  const auto root = table.Start("run");
  Spend("a", 0.0);
  Spend("b", 0.0);
  table.Stop(root);
  EXPECT_EQ(Report(), kHeader + std::string("   run........................... ") +
                          "0.00000[s] (100.0[%]) 1\n" +
                          "    . a............................. 0.00000[s] (100.0[%]) 1\n" +
                          "    . b............................. 0.00000[s] (100.0[%]) 1\n\n\n");
}

TEST_F(TimeTableTest, CountAddsARate) {
  table.SetCount("elements", 1000);
  const auto root = table.Start("run");
  Spend("idle", 0.0);
  Spend("work", 500.0);
  table.Stop(root);
  EXPECT_EQ(Report(),
            "\n Number of elements=1000\n\n"
            "\n   Time Table: ...............  cputime[s] (percent[%]) Uses -- elements/min\n\n"
            "   run........................... 0.50000[s] (100.0[%]) 1 -- 120000\n"
            "    . idle.......................... 0.00000[s] ( 0.0[%]) 1\n"
            "    . work.......................... 0.50000[s] (100.0[%]) 1 -- 120000\n\n\n");
}

TEST_F(TimeTableTest, CountHoldsForOneTable) {
  table.SetCount("elements", 1000);
  Spend("run", 500.0);
  Spend("run", 500.0);
  EXPECT_EQ(Report().find("elements"), std::string::npos);
}

TEST_F(TimeTableTest, LongNameIsNotCut) {
  const std::string name(40, 'n');
  Spend(name.c_str(), 1.0);
  EXPECT_NE(Report().find("   " + name + " 0.00100[s]"), std::string::npos);
}

TEST_F(TimeTableTest, NameDotsAndBlankTake31Characters) {
  for (int length = 28; length <= 30; ++length) {
    const std::string name(length, 'n');
    Spend(name.c_str(), 1.0);
    EXPECT_NE(Report().find("   " + name + std::string(30 - length, '.') + " 0.00100[s]"),
              std::string::npos)
        << length;
  }
}

TEST_F(TimeTableTest, LongTimesGrowOutOfTheirField) {
  Spend("run", 123456789.0);
  EXPECT_NE(Report().find(" 123456.78900[s] ("), std::string::npos);
}

TEST_F(TimeTableTest, StopWithoutATableDoesNothing) {
  const auto root = table.Start("run");
  table.Stop(root);
  const std::string report = Report();
  table.Stop(root);
  EXPECT_EQ(Report(), report);
}

TEST_F(TimeTableTest, HandleOfAnEarlierTableIsIgnored) {
  const auto first = table.Start("run");
  const auto child = table.Start("child");
  table.Stop(first);
  const auto second = table.Start("run");
  table.Stop(child);
  now += 10.0;
  table.Stop(second);
  EXPECT_EQ(Report(), kHeader + std::string("   run........................... ") +
                          "0.01000[s] (100.0[%]) 1\n\n\n");
}

TEST_F(TimeTableTest, HandleThatIsNotInnermostMakesItsSavedPhaseCurrent) {
  const auto root = table.Start("run");
  const auto outer = table.Start("outer");
  table.Start("inner");
  table.Stop(outer);  // "inner" is left without a stop
  Spend("next", 10.0);
  table.Stop(root);
  EXPECT_NE(Report().find("\n    . next...."), std::string::npos);
}

TEST_F(TimeTableTest, ErrorNoticeListsTheOpenPhasesAndReplacesTheTable) {
  const auto root = table.Start("run");
  const auto outer = table.Start("assembly");
  table.Start("elements");
  std::ostringstream stream;
  table.ErrorNotice(stream);
  EXPECT_EQ(stream.str(), " Current time table stack:\n\n\telements\n\tassembly\n\trun\n\n");
  EXPECT_EQ(Report(), "\n\n *** Time Table not produced due to error ***\n\n");
  table.Stop(outer);
  table.Stop(root);
  EXPECT_EQ(Report(), "\n\n *** Time Table not produced due to error ***\n\n");
}

TEST_F(TimeTableTest, StartAfterAnErrorNoticeOpensANewTable) {
  table.Start("run");
  std::ostringstream stream;
  table.ErrorNotice(stream);
  Spend("again", 10.0);
  EXPECT_EQ(Report(), kHeader + std::string("   again......................... ") +
                          "0.01000[s] (100.0[%]) 1\n\n\n");
}

TEST_F(TimeTableTest, ErrorNoticeWithoutATableIsSilent) {
  std::ostringstream stream;
  table.ErrorNotice(stream);
  EXPECT_EQ(stream.str(), "");
  EXPECT_EQ(Report(), "");
}

TEST_F(TimeTableTest, RefusesAReportThatCannotBeOpened) {
  table.SetOutputName("/nowhere/report");
  EXPECT_FATAL(table.Start("run"), "Cannot open output file \"/nowhere/report.tim\"");
}

TEST(ProgramTimes, IsOneTableThatMeasuresCpuTimeInMilliseconds) {
  EXPECT_EQ(&ProgramTimes(), &ProgramTimes());
  const double before = static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
  const double middle = TimeTable::CpuMilliseconds() / 1000.0;
  const double after = static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
  constexpr double kRounding = 1e-9;
  EXPECT_LE(before, middle + kRounding);
  EXPECT_LE(middle, after + kRounding);
}

TEST(ProgramTimes, WritesToAFileOfTheProgramsNameUnlessTold) {
  std::remove("kestol.tim");
  TimeTable table;
  table.Stop(table.Start("run"));
  std::ifstream file("kestol.tim");
  std::string line;
  EXPECT_TRUE(std::getline(file, line));
  std::remove("kestol.tim");
}

}  // namespace

}  // namespace kestol
