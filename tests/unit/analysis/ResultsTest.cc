#include <gtest/gtest.h>

#include "analysis/Results.h"

namespace kestol {

namespace {

TEST(FindReaction, FindsEveryRecordAndNothingBetween) {
  Results results;
  for (const int index : {2, 3, 7, 8, 20}) results.reactions.push_back({index, {10.0 * index}});
  for (int index = 0; index <= 21; ++index) {
    const Reaction* const found = FindReaction(results, index);
    const bool wanted = index == 2 || index == 3 || index == 7 || index == 8 || index == 20;
    ASSERT_EQ(found != nullptr, wanted) << index;
    if (!wanted) continue;
    EXPECT_EQ(found->nodeIndex, index);
    EXPECT_EQ(found->values[0], 10.0 * index);
    EXPECT_EQ(found->values[5], 0.0);
  }
}

TEST(FindReaction, FindsNothingInAModelWithoutSupports) {
  EXPECT_EQ(FindReaction(Results{}, 1), nullptr);
}

}  // namespace

}  // namespace kestol
