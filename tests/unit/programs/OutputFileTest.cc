#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "programs/common/OutputFiles.h"
#include "programs/common/RunProgram.h"
#include "tests/support/OwnFolder.h"

namespace kestol {

namespace {

using testing::HasSubstr;

class OutputFileTest : public testing::Test {
protected:
  OutputFileTest() { Put("deck.dat", "deck"); }

  std::string Path(const std::string& name) const { return folder.Path(name); }
  void Put(const std::string& name, const std::string& text) const { folder.Put(name, text); }
  std::string Get(const std::string& name) const { return ContentsOf(Path(name)); }
  std::size_t Files() const {
    const std::filesystem::directory_iterator files(folder.Path());
    return static_cast<std::size_t>(std::distance(files, {}));
  }
  void Write(const std::string& name, const std::string& text) {
    OutputFile file(Path(name), {Path("deck.dat")});
    file << text;
    file.Commit();
  }
  std::string Refusal(const std::string& name) {
    try {
      Write(name, std::string(1 << 20, 'x'));
    } catch (const ProgramError& refusal) {
      EXPECT_EQ(refusal.Status(), kFailed);
      return refusal.what();
    }
    return "";
  }

  OwnFolder folder;
};

TEST_F(OutputFileTest, AppearsWhenItIsComplete) {
  {
    OutputFile file(Path("a.txt"), {});
    file << "half";
    file.Flush();
    EXPECT_FALSE(std::filesystem::exists(Path("a.txt")));
    file << " and half";
    file.Commit();
    EXPECT_EQ(Get("a.txt"), "half and half");
  }
  EXPECT_EQ(Files(), 2u);
}

TEST_F(OutputFileTest, LeavesNothingWithoutCommit) {
  Put("a.txt", "old");
  {
    OutputFile file(Path("a.txt"), {});
    file << "new";
    file.Flush();
  }
  EXPECT_EQ(Get("a.txt"), "old");
  EXPECT_EQ(Files(), 2u);
}

TEST_F(OutputFileTest, ReplacesAFileAndKeepsItsPermissions) {
  Put("a.txt", "old");
  ::chmod(Path("a.txt").c_str(), 0640);
  Write("a.txt", "new");
  EXPECT_EQ(Get("a.txt"), "new");
  struct stat status {};
  ASSERT_EQ(::stat(Path("a.txt").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0640u);
}

TEST_F(OutputFileTest, WritesThroughALink) {
  Put("a.txt", "old");
  std::filesystem::create_symlink("a.txt", Path("link"));
  Write("link", "new");
  EXPECT_EQ(Get("a.txt"), "new");
  EXPECT_TRUE(std::filesystem::is_symlink(Path("link")));
}

TEST_F(OutputFileTest, WritesThroughALinkToNothingYet) {
  std::filesystem::create_directory(Path("folder"));
  std::filesystem::create_symlink("folder/a.txt", Path("relative"));
  std::filesystem::create_symlink(Path("b.txt"), Path("folder/second"));
  std::filesystem::create_symlink("folder/second", Path("first"));
  Write("relative", "new");
  Write("first", "newer");
  EXPECT_EQ(Get("folder/a.txt"), "new");
  EXPECT_EQ(Get("b.txt"), "newer");
  EXPECT_TRUE(std::filesystem::is_symlink(Path("relative")));
  std::filesystem::create_symlink("none/a.txt", Path("lost"));
  EXPECT_EQ(Refusal("lost"), "can't open file " + Path("lost") + ": No such file or directory");
}

TEST_F(OutputFileTest, RefusesTheDeckUnderEveryName) {
  std::filesystem::create_symlink("deck.dat", Path("link"));
  std::filesystem::create_hard_link(Path("deck.dat"), Path("hard"));
  for (const char* name : {"deck.dat", "./deck.dat", "link", "hard"})
    EXPECT_THAT(Refusal(name), HasSubstr("is the input")) << name;
  EXPECT_EQ(Get("deck.dat"), "deck");
}

TEST_F(OutputFileTest, SaysWhyAFileCannotBeWritten) {
  EXPECT_EQ(Refusal("none/a.txt"),
            "can't open file " + Path("none/a.txt") + ": No such file or directory");
  std::filesystem::create_directory(Path("folder"));
  EXPECT_THAT(Refusal("folder"), HasSubstr("Is a directory"));
}

TEST_F(OutputFileTest, AFullDeviceIsWrittenDirectlyAndRefused) {
  OutputFile file("/dev/full", {});
  file << "text";
  EXPECT_THROW(file.Commit(), ProgramError);
}

TEST_F(OutputFileTest, APipeIsWrittenDirectly) {
  ASSERT_EQ(::mkfifo(Path("pipe").c_str(), 0600), 0);
  const pid_t reader = ::fork();
  if (reader == 0) {
    std::ofstream(Path("read")) << std::ifstream(Path("pipe")).rdbuf();
    ::_exit(0);
  }
  Write("pipe", "through");
  int status = 0;
  ::waitpid(reader, &status, 0);
  EXPECT_EQ(Get("read"), "through");
  EXPECT_TRUE(std::filesystem::is_fifo(Path("pipe")));
}

TEST_F(OutputFileTest, LongRunsOfZerosAreThere) {
  {
    OutputFile file(Path("a.bin"), {});
    file << "x";
    file.WriteZeros(1'000'000);
    file << "y";
    file.WriteZeros(500'000);
    file.Commit();
  }
  std::string wanted(1'500'002, '\0');
  wanted[0] = 'x';
  wanted[1'000'001] = 'y';
  EXPECT_EQ(Get("a.bin"), wanted);
}

TEST_F(OutputFileTest, AnotherWriterMayPutTheFile) {
  OutputFile file(Path("a.txt"), {});
  EXPECT_NE(file.Path(), Path("a.txt"));
  std::ofstream(file.Path()) << "by name";
  file.Commit();
  EXPECT_EQ(Get("a.txt"), "by name");
}

TEST_F(OutputFileTest, WhenOneFileCannotHaveItsNameNoneHas) {
  OutputFiles files({});
  files.Open(Path("a.txt")) << "a";
  files.Open(Path("b.txt")) << "b";
  std::filesystem::create_directory(Path("b.txt"));
  EXPECT_THROW(files.Commit(), ProgramError);
  EXPECT_FALSE(std::filesystem::exists(Path("a.txt")));
  EXPECT_EQ(Files(), 2u);  // the deck and the folder
}

TEST_F(OutputFileTest, WhenOneFileCannotHaveItsNameWhatWasThereStays) {
  Put("a.txt", "old");
  {
    OutputFiles files({});
    files.Open(Path("a.txt")) << "new";
    files.Open(Path("b.txt")) << "b";
    std::filesystem::create_directory(Path("b.txt"));
    EXPECT_THROW(files.Commit(), ProgramError);
    EXPECT_EQ(Get("a.txt"), "old");
  }
  EXPECT_EQ(Get("a.txt"), "old");
  EXPECT_EQ(Files(), 3u);  // the deck, the old file and the folder
}

TEST_F(OutputFileTest, WhatWasReplacedGoesWithTheRun) {
  Put("a.txt", "old");
  {
    OutputFiles files({});
    files.Open(Path("a.txt")) << "new";
    files.Commit();
    EXPECT_EQ(Get("a.txt"), "new");
    files.Commit();  // once is enough
    EXPECT_EQ(Get("a.txt"), "new");
  }
  EXPECT_EQ(Get("a.txt"), "new");
  EXPECT_EQ(Files(), 2u);
}

TEST_F(OutputFileTest, FilesOfARunCanBeTakenBack) {
  OutputFiles files({});
  files.Open(Path("a.txt")) << "a";
  files.Commit();
  EXPECT_EQ(Get("a.txt"), "a");
  files.Withdraw();
  EXPECT_EQ(Files(), 1u);
}

TEST_F(OutputFileTest, TemporaryFilesGoWhenTheProcessIsEnded) {
  OutputFile file(Path("a.txt"), {}), done(Path("b.txt"), {});
  done.Commit();
  EXPECT_EQ(Files(), 3u);
  RemoveTemporaryFiles();
  EXPECT_EQ(Files(), 2u);
  EXPECT_TRUE(std::filesystem::exists(Path("b.txt")));
}

TEST_F(OutputFileTest, TwoOutputsOfOneNameAreRefused) {
  Put("a.txt", "");
  std::filesystem::create_symlink("a.txt", Path("link"));
  EXPECT_NO_THROW(RefuseSharedNames({Path("a.txt"), Path("b.txt"), "/dev/null", "/dev/null"}));
  EXPECT_THROW(RefuseSharedNames({Path("a.txt"), Path("link")}), ProgramError);
  EXPECT_THROW(RefuseSharedNames({Path("b"), Path("./b")}), ProgramError);
  std::filesystem::create_symlink("b", Path("later"));
  EXPECT_THROW(RefuseSharedNames({Path("later"), Path("b")}), ProgramError);
}

}  // namespace

}  // namespace kestol
