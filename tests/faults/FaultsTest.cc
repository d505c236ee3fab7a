// The whole program when the machine fails it: exhausted heap at every allocation, full disks,
// files that cannot be created, signals.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "tests/support/OwnFolder.h"

namespace kestol {

namespace {

namespace fs = std::filesystem;

/// A folder of its own with one small deck.
class Faults : public testing::Test {
protected:
  Faults() { fs::copy_file(KESTOL_EXAMPLES "/06-space-frame.dat", work_ / "model.dat"); }

  /// Exit status of a shell command in the folder; standard output goes to "stdout".
  int Run(const std::string& command) const {
    const int status = std::system(("cd '" + work_.string() + "' && " + command).c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  std::string Output() const { return ContentsOf(work_ / "stdout"); }

  OwnFolder folder_;
  const fs::path work_ = folder_.Path();
};

const char* const kFull = "error: Failed writing to disk. Probably the disk is full\n";

TEST_F(Faults, EveryFailingAllocationEndsWithTheStatedMessage) {
  int failures = 0;
  for (int n = 1;; ++n) {
    const int status = Run("KESTOL_FAIL_AT=" + std::to_string(n) +
                           " '" KESTOL_FAILING_HEAP "' -p model.dat report.txt >stdout");
    if (status == 0) break;
    ASSERT_EQ(status, 2) << "allocation " << n;
    ASSERT_EQ(Output(), "Not space available on heap") << "allocation " << n;
    ++failures;
  }
  EXPECT_GT(failures, 50);
}

TEST_F(Faults, FailingAllocationOfTheUsageTextEndsWithTheStatedMessage) {
  EXPECT_EQ(Run("KESTOL_FAIL_AT=1 '" KESTOL_FAILING_HEAP "' >stdout"), 2);
  EXPECT_EQ(Output(), "Not space available on heap");
}

TEST_F(Faults, FullDeviceAsReportIsReported) {
  EXPECT_EQ(Run("'" KESTOL_PROGRAM "' model.dat /dev/full >stdout"), 2);
  EXPECT_EQ(Output(), kFull);
}

TEST_F(Faults, FullDeviceAsResultFileIsReported) {
  fs::create_symlink("/dev/full", work_ / "model.kestol.res");
  EXPECT_EQ(Run("'" KESTOL_PROGRAM "' model.dat >stdout"), 2);
  EXPECT_EQ(Output(), kFull);
}

TEST_F(Faults, FullDeviceAsMeshFileIsReported) {
  fs::create_symlink("/dev/full", work_ / "model.kestol.bon");
  EXPECT_EQ(Run("'" KESTOL_PROGRAM "' -p model.dat >stdout"), 2);
  EXPECT_EQ(Output(), kFull);
}

TEST_F(Faults, MessageGoesToTheErrorFile) {
  EXPECT_EQ(Run("'" KESTOL_PROGRAM "' -e errors.txt model.dat /dev/full >stdout"), 2);
  EXPECT_EQ(Output(), "");
  EXPECT_EQ(ContentsOf(work_ / "errors.txt"), kFull);
}

TEST_F(Faults, ResultFileThatCannotBeCreatedIsReported) {
  fs::create_directory(work_ / "model.kestol.res");
  EXPECT_EQ(Run("'" KESTOL_PROGRAM "' model.dat >stdout"), 2);
  EXPECT_EQ(Output(), "can't open file model.kestol.res\n");
}

TEST_F(Faults, MeshFileThatCannotBeCreatedIsReported) {
  fs::create_directory(work_ / "model.kestol.bon");
  EXPECT_EQ(Run("'" KESTOL_PROGRAM "' -p model.dat >stdout"), 2);
  EXPECT_EQ(Output(), "can't open file model.kestol.bon\n");
}

TEST_F(Faults, DeckUnderASecondNameOfItsOwnIsNotOverwritten) {
  fs::create_hard_link(work_ / "model.dat", work_ / "report.txt");
  const std::string deck = ContentsOf(work_ / "model.dat");
  EXPECT_EQ(Run("'" KESTOL_PROGRAM "' -e errors.txt model.dat report.txt >stdout"), 2);
  EXPECT_EQ(Output(), "can't open file report.txt\n");
  EXPECT_EQ(ContentsOf(work_ / "model.dat"), deck);
  EXPECT_FALSE(fs::exists(work_ / "errors.txt"));
}

TEST_F(Faults, DeckInTheWayOfAFileThatIsNotWrittenIsNoObstacle) {
  fs::create_symlink("model.dat", work_ / "model.kestol.bon");
  fs::create_symlink("model.dat", work_ / "-");
  EXPECT_EQ(Run("'" KESTOL_PROGRAM "' -i - -e - model.dat report.txt >stdout"), 0);
  EXPECT_EQ(Run("'" KESTOL_PROGRAM "' -p model.dat >stdout"), 2);
}

TEST_F(Faults, ReportThatEqualsTheDeckIsNotTheDeck) {
  fs::copy_file(work_ / "model.dat", work_ / "report.txt");
  EXPECT_EQ(Run("'" KESTOL_PROGRAM "' model.dat report.txt >stdout"), 0);
}

TEST_F(Faults, SignalInTheMiddleLeavesNoClaimOfSuccess) {
  // The deck comes through a pipe that is never closed: the run is still reading when it is ended.
  EXPECT_NE(Run("mkfifo pipe.dat; (cat model.dat; exec sleep 5) >pipe.dat & "
                "timeout -s TERM 1 '" KESTOL_PROGRAM "' -i - pipe.dat report.txt >stdout"),
            0);
  EXPECT_EQ(Output().find("Total time"), std::string::npos);
  EXPECT_FALSE(fs::exists(work_ / "report.txt"));
}

#if !defined(__SANITIZE_ADDRESS__)
TEST_F(Faults, AddressSpaceLimitEndsWithTheStatedMessage) {
  // A number of nodes that no limit of this size can hold.
  std::ofstream deck(work_ / "big.dat");
  deck << "PROBLEM p\nTYPE 3d\nmesh dimension = 3 elemtype Linear nnode = 2\ncoordinates\n";
  for (int i = 1; i <= 400000; ++i) deck << i << ' ' << i << " 0 0\n";
  deck << "end coordinates\nelements\nend elements\n";
  deck.close();
  EXPECT_EQ(Run("ulimit -v 30000; '" KESTOL_PROGRAM "' big.dat >stdout"), 2);
  EXPECT_EQ(Output(), "Not space available on heap");
}
#endif

}  // namespace

}  // namespace kestol
