#include <gtest/gtest.h>

#include "output/InfoFile.h"
#include "tests/support/FlushCounter.h"

namespace kestol {

namespace {

TEST(Progress, FormatsAndFlushesEachText) {
  FlushCounter info;
  Progress(&info, "Solver finished\n");
  EXPECT_EQ(info.Flushes(), 1);
  Progress(&info, "%i out of %i nodes are coplanar\n", 3, 9);
  EXPECT_EQ(info.Flushes(), 2);
  Progress(&info, "Total time = %.2g min. = %.2g seg.\n", 0.020566, 1.234);
  EXPECT_EQ(info.Flushes(), 3);
  EXPECT_EQ(info.Text(),
            "Solver finished\n3 out of 9 nodes are coplanar\nTotal time = 0.021 min. = 1.2 seg.\n");
}

TEST(Progress, WithoutAStreamDoesNothing) {
  Progress(nullptr, "Solver finished %i\n", 1);
}

}  // namespace

}  // namespace kestol
