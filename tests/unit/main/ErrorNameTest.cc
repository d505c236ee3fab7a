// The C library has a function of the channel's name. Programs may include both headers, and the
// function must be the C library's wherever the channel lies: in the program or in a shared
// library.
#include <error.h>
#include <gtest/gtest.h>

#include <cerrno>

#include "main/ErrorChannel.h"

namespace kestol {

namespace {

TEST(ErrorName, LeavesTheFunctionOfTheCLibraryReachable) {
  error.message << "composed";
  EXPECT_EXIT(::error(3, 0, "from %s", "the C library"), testing::ExitedWithCode(3),
              ": from the C library\n$");
  EXPECT_EXIT(::error(4, ENOENT, "deck"), testing::ExitedWithCode(4),
              ": deck: No such file or directory\n$");
  EXPECT_STREQ(error.Text(), "composed");
  error.Clear();
}

}  // namespace

}  // namespace kestol
