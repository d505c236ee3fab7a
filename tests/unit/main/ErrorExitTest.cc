// The program's own way out, without the exit of the other test programs that throws.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "main/ErrorChannel.h"
#include "tests/support/OwnFolder.h"

namespace kestol {

namespace {

class ErrorExitTest : public testing::Test {
protected:
  OwnFolder folder_;
  const std::string path_ = folder_.Path("errors.txt");  // the ending process writes it

  std::FILE* Open() const { return std::fopen(path_.c_str(), "w"); }

  std::string Written() const { return ContentsOf(path_); }
};

TEST_F(ErrorExitTest, WritesTheMessageToTheErrorFileAndEndsWithStatusTwo) {
  const auto end = [this] {
    error.file = Open();
    error.message << "error: node: " << 3 << " does not exist\n";
    ErrorExit(FatalError(error, kRefused));
  };
  EXPECT_EXIT(end(), testing::ExitedWithCode(2), "");
  EXPECT_EQ(Written(), "error: node: 3 does not exist\n");
}

TEST_F(ErrorExitTest, WritesToStandardOutputWithoutAnErrorFile) {
  const auto end = [this] {
    error.message << "100% wrong\n";
    if (std::freopen(path_.c_str(), "w", stdout) != nullptr) ErrorExit(FatalError(error, kRefused));
  };
  EXPECT_EXIT(end(), testing::ExitedWithCode(2), "");
  EXPECT_EQ(Written(), "100% wrong\n");
}

TEST_F(ErrorExitTest, KernelsEndWithStatusOne) {
  const auto end = [this] {
    error.file = Open();
    error.message << "Bad transa";
    ErrorExit(FatalError(error, kKernelRefused));
  };
  EXPECT_EXIT(end(), testing::ExitedWithCode(1), "");
  EXPECT_EQ(Written(), "Bad transa");
}

}  // namespace

}  // namespace kestol
