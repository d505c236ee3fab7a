#include <gtest/gtest.h>

#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "main/CommandLine.h"
#include "output/ResultFiles.h"

namespace kestol {

namespace {

// The arguments of a call, kept as main gets them: the null behind the last one included.
class Call {
public:
  explicit Call(const std::string& line) {
    std::istringstream words(line);
    for (std::string word; words >> word;) texts_.push_back(word);
    for (std::string& text : texts_) argv_.push_back(text.data());
    argv_.push_back(nullptr);
  }
  std::optional<RunOptions> Scan() const {
    return ScanCommandLine(static_cast<int>(texts_.size()), argv_.data());
  }

private:
  std::vector<std::string> texts_;
  std::vector<char*> argv_;
};

TEST(CommandLine, InputFileAloneHasNoReportAndTheDefaults) {
  const Call call("prog model.dat");
  const auto options = call.Scan();
  ASSERT_TRUE(options);
  EXPECT_STREQ(options->inputFile, "model.dat");
  EXPECT_EQ(options->outputFile, nullptr);
  EXPECT_EQ(options->writeMesh, 0);
  EXPECT_EQ(options->renumber, 1);
  EXPECT_EQ(options->infoFile, nullptr);
  EXPECT_EQ(options->errorFile, nullptr);
}

TEST(CommandLine, AllOptionsComeInAnyOrder) {
  for (const char* line :
       {"prog -p -i info -e errs -r0 in out", "prog -r0 -e errs -i info -p in out"}) {
    const Call call(line);
    const auto options = call.Scan();
    ASSERT_TRUE(options);
    EXPECT_EQ(options->writeMesh, 1);
    EXPECT_EQ(options->renumber, 0);
    EXPECT_STREQ(options->infoFile, "info");
    EXPECT_STREQ(options->errorFile, "errs");
    EXPECT_STREQ(options->inputFile, "in");
    EXPECT_STREQ(options->outputFile, "out");
  }
}

TEST(CommandLine, RepeatedOptionCountsAsLastGiven) {
  const Call call("prog -i a -i b -i c -i d in");
  ASSERT_TRUE(call.Scan());
  EXPECT_STREQ(call.Scan()->infoFile, "d");
}

TEST(CommandLine, OptionBehindTheInputFileIsTheOutputFile) {
  const Call call("prog model.dat -p");
  ASSERT_TRUE(call.Scan());
  EXPECT_STREQ(call.Scan()->outputFile, "-p");
  EXPECT_EQ(call.Scan()->writeMesh, 0);
}

TEST(CommandLine, OptionBehindDashIIsTheInfoFile) {
  const Call call("prog -i -p m.dat");
  ASSERT_TRUE(call.Scan());
  EXPECT_STREQ(call.Scan()->infoFile, "-p");
  EXPECT_EQ(call.Scan()->writeMesh, 0);
}

TEST(CommandLine, UnknownOptionIsTheInputFile) {
  for (const char* unknown : {"-x", "-P", "-r", "-r00", "-pi", "-"}) {
    const Call call("prog " + std::string(unknown) + " m.dat");
    ASSERT_TRUE(call.Scan());
    EXPECT_STREQ(call.Scan()->inputFile, unknown);
    EXPECT_STREQ(call.Scan()->outputFile, "m.dat");
  }
}

TEST(CommandLine, WithoutOneOrTwoFilesThereIsNoRun) {
  for (const char* line : {"", "prog", "prog -p", "prog -i", "prog -e", "prog -r0", "prog -i info",
                           "prog -p -i", "prog a b c", "prog -p a b c"})
    EXPECT_FALSE(Call(line).Scan()) << line;
}

TEST(CommandLine, UsageNamesTheProgramAsCalled) {
  EXPECT_EQ(
      UsageText("./kestol"),
      "error. usage: ./kestol [-p] [-i infofile] [-r0] [-e errorfile] inputfile [outputfile]\n"
      "    -p: write mesh Vemo file\n"
      "    -i: write some information in file 'infofile'\n"
      "    -e: write error messages in file 'errorfile'\n"
      "    -r0: inhibit renumbering of the nodes\n");
}

TEST(ResultFileName, IsCutAtTheLastDot) {
  EXPECT_EQ(ResultFileName("model.dat", ".kestol.res"), "model.kestol.res");
  EXPECT_EQ(ResultFileName("a.b.c", ".kestol.bon"), "a.b.kestol.bon");
  EXPECT_EQ(ResultFileName("dir/model.", ".kestol.res"), "dir/model.kestol.res");
}

TEST(ResultFileName, WithoutADotIsAppended) {
  EXPECT_EQ(ResultFileName("model", ".kestol.res"), "model.kestol.res");
}

TEST(ResultFileName, DotOfAFolderCounts) {
  EXPECT_EQ(ResultFileName("old.run/model", ".kestol.res"), "old.kestol.res");
  EXPECT_EQ(ResultFileName("./model", ".kestol.res"), ".kestol.res");
  EXPECT_EQ(ResultFileName("../a/m", ".kestol.res"), "..kestol.res");
}

}  // namespace

}  // namespace kestol
