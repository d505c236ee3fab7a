#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>

#include "output/OutputText.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/OwnFolder.h"

namespace kestol {

namespace {

class OutputTextTest : public testing::Test {
protected:
  OwnFolder folder_;
  const std::string name_ = folder_.Path("report.txt");
};

TEST_F(OutputTextTest, PiecesAreJoinedAsTheyStand) {
  OutputText output;
  output << "n " << 12 << ' ' << 0.1 << -2.0;
  output.Vector(1.5) << '\n';
  EXPECT_EQ(output.Text(), "n 12 0.1-2   1.500000e+00\n");
}

TEST_F(OutputTextTest, LongTextsArriveWhole) {
  std::string expected;
  OutputText output(name_);
  for (int i = 0; i < 100000; ++i) {
    output << i << " line\n";
    expected += std::to_string(i) + " line\n";
  }
  output.Close();
  EXPECT_TRUE(ContentsOf(name_) == expected);
}

TEST_F(OutputTextTest, ATakerGetsWholeLinesAndItsRefusalsPassThrough) {
  std::string taken;
  {
    OutputText output([&](std::string_view text) {
      EXPECT_TRUE(text.empty() || text.back() == '\n');
      taken += text;
    });
    for (int i = 0; i < 100000; ++i) output << i << " line\n";
    output.Close();
  }
  EXPECT_TRUE(taken.starts_with("0 line\n1 line\n"));
  EXPECT_TRUE(taken.ends_with("99999 line\n"));

  OutputText refused([](std::string_view) { throw std::runtime_error("full"); });
  refused << "text\n";
  EXPECT_THROW(refused.Close(), std::runtime_error);
}

TEST_F(OutputTextTest, LinesLongerThanTheBufferArriveWhole) {
  const std::string line(3000000, 'x');
  OutputText output(name_);
  output << "a\nb" << line << "\nc\n";
  output.Close();
  EXPECT_TRUE(ContentsOf(name_) == "a\nb" + line + "\nc\n");
}

TEST_F(OutputTextTest, FileEndsAtALineEndWhileItIsWritten) {
  OutputText output(name_);
  int pieces = 0;
  std::uintmax_t size = 0;
  for (int i = 0; i < 100000; ++i) {
    output << "some words " << i << ' ' << 1.0 / 3 << '\n';
    if (std::filesystem::file_size(name_) == size) continue;
    const std::string text = ContentsOf(name_);
    size = text.size();
    ++pieces;
    ASSERT_EQ(text.back(), '\n');
  }
  EXPECT_GT(pieces, 5);
  output.Close();
}

TEST_F(OutputTextTest, HandOverLinesLeavesTheBegunLineBehind) {
  OutputText output(name_);
  output << "whole\nbegun";
  output.HandOverLines();
  EXPECT_EQ(ContentsOf(name_), "whole\n");
  output << " and ended\n";
  output.Close();
  EXPECT_EQ(ContentsOf(name_), "whole\nbegun and ended\n");
}

TEST_F(OutputTextTest, WhatWasWrittenStaysWithoutClose) {
  { OutputText(name_) << "partial"; }
  EXPECT_EQ(ContentsOf(name_), "partial");
}

TEST_F(OutputTextTest, ExistingFilesAreTruncated) {
  std::ofstream(name_) << "something longer than before";
  OutputText output(name_);
  output << "new\n";
  output.Close();
  EXPECT_EQ(ContentsOf(name_), "new\n");
}

TEST_F(OutputTextTest, FilesAreCreatedWithMode0644UnderTheMask) {
  const mode_t mask = ::umask(027);
  OutputText(name_).Close();
  ::umask(mask);
  struct stat status {};
  ASSERT_EQ(::stat(name_.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0640U);
}

TEST_F(OutputTextTest, FileThatCannotBeCreatedEndsTheRun) {
  EXPECT_FATAL(OutputText output("/nowhere/at/all.txt"), "can't open file /nowhere/at/all.txt\n");
  EXPECT_FATAL(OutputText output(""), "can't open file \n");
}

TEST_F(OutputTextTest, FullDiskEndsTheRunWhenItIsMet) {
  OutputText output("/dev/full");
  int lines = 0;
  const auto write = [&] {
    for (; lines < 1'000'000; ++lines) output << "a line\n";
  };
  EXPECT_FATAL(write(), "error: Failed writing to disk. Probably the disk is full\n");
  EXPECT_LT(lines, 100'000);
}

TEST_F(OutputTextTest, FullDiskIsSeenForTheSmallestText) {
  OutputText output("/dev/full");
  output << '\n';
  EXPECT_FATAL(output.Close(), "error: Failed writing to disk. Probably the disk is full\n");
}

}  // namespace

}  // namespace kestol
