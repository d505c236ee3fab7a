#include <algorithm>
#include <utility>

#include "algebra/ReaVecT.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/Vectors.h"

namespace kestol {

namespace {

using Numbers = std::vector<double>;

TEST(ReaVecT, CopiesAreIndependent) {
  const ReaVecT v = Vec({1, 2});
  ReaVecT copy = v;
  copy(1) = 9.0;
  EXPECT_EQ(Entries(v), (Numbers{1, 2}));
  EXPECT_EQ(Entries(copy), (Numbers{9, 2}));
}

TEST(ReaVecT, CopyAssignmentKeepsTheBufferWhenLengthsAgree) {
  ReaVecT v = Vec({1, 2});
  const double* const buffer = v.begin();
  v = std::as_const(v);
  EXPECT_EQ(Entries(v), (Numbers{1, 2}));
  const ReaVecT other = Vec({3, 4});
  v = other;
  EXPECT_EQ(v.begin(), buffer);
  EXPECT_EQ(Entries(v), (Numbers{3, 4}));
  const ReaVecT longer = Vec({5, 6, 7});
  v = longer;
  EXPECT_EQ(Entries(v), (Numbers{5, 6, 7}));
}

TEST(ReaVecT, TemporariesGiveTheirBufferAway) {
  ReaVecT v = Vec({1, 2});
  const double* const buffer = v.begin();
  ReaVecT taken = std::move(v);
  EXPECT_EQ(taken.begin(), buffer);
  EXPECT_EQ(v.n, 0);           // NOLINT(bugprone-use-after-move)
  EXPECT_EQ(v.data, nullptr);  // NOLINT(bugprone-use-after-move)
  ReaVecT target = Vec({7});
  target = std::move(taken);
  EXPECT_EQ(target.begin(), buffer);
  EXPECT_EQ(target.n, 2);
  EXPECT_EQ(taken.n, 0);           // NOLINT(bugprone-use-after-move)
  EXPECT_EQ(taken.data, nullptr);  // NOLINT(bugprone-use-after-move)
}

TEST(ReaVecT, SumOfATemporaryReusesItsBuffer) {
  ReaVecT v = Vec({1, 2});
  const double* const buffer = v.begin();
  const ReaVecT sum = std::move(v) + Vec({1, 1}) - 5;
  EXPECT_EQ(sum.begin(), buffer);
  EXPECT_EQ(Entries(sum), (Numbers{-3, -2}));
}

TEST(ReaVecT, MoveToItselfDoesNothing) {
  ReaVecT v = Vec({1, 2});
  ReaVecT& same = v;
  v = std::move(same);
  EXPECT_EQ(Entries(v), (Numbers{1, 2}));
}

TEST(ReaVecT, TakesTheColumnOfAMatrix) {
  const Matriu column = Mat(3, 1, {1, 2, 3});
  EXPECT_EQ(Entries(ReaVecT(column)), (Numbers{1, 2, 3}));
  ReaVecT v;
  v = column;
  EXPECT_EQ(Entries(v), (Numbers{1, 2, 3}));
  EXPECT_EQ(ReaVecT(Matriu(0, 1)).n, 0);
}

TEST(ReaVecT, TakesTheBufferOfATemporaryColumn) {
  Matriu column = Mat(3, 1, {1, 2, 3});
  const double* const buffer = column.begin();
  const ReaVecT v(std::move(column));
  EXPECT_EQ(v.begin(), buffer);
  EXPECT_EQ(Entries(v), (Numbers{1, 2, 3}));
  EXPECT_EQ(column.nrows, 0);  // NOLINT(bugprone-use-after-move)
  EXPECT_EQ(column.size, 0u);  // NOLINT(bugprone-use-after-move)
}

TEST(ReaVecT, RefusesMatricesOfOtherThanOneColumn) {
  const Matriu M(3, 2);
  ReaVecT v;
  const char* const text = "error: Assigning Vector=Matrix where M(num cols)=2\n";
  EXPECT_FATAL(ReaVecT{M}, text);
  EXPECT_FATAL(v = M, text);
  EXPECT_FATAL(v = Matriu(3, 2), text);
  EXPECT_FATAL(ReaVecT{Matriu()}, "error: Assigning Vector=Matrix where M(num cols)=0\n");
}

TEST(ReaVecT, TakesTheEntriesOfAShortVector) {
  EXPECT_EQ(Entries(ReaVecT(Vec<ReaVec3>({1, 2}))), (Numbers{1, 2}));
  ReaVecT v(7);
  v = ReaVec3(1, 2, 3);
  EXPECT_EQ(Entries(v), (Numbers{1, 2, 3}));
}

TEST(ReaVecT, ResizeKeepsTheFirstEntriesAndSetsTheAddedOnes) {
  ReaVecT v = Vec({1, 2});
  v.Resize(4, 9.0);
  EXPECT_EQ(Entries(v), (Numbers{1, 2, 9, 9}));
  v.Resize(1, 9.0);
  EXPECT_EQ(Entries(v), (Numbers{1}));
}

TEST(ReaVecT, ResizeToZeroFreesTheBuffer) {
  ReaVecT v = Vec({1, 2});
  v.Resize(0, 1.0);
  EXPECT_EQ(v.n, 0);
  EXPECT_EQ(v.data, nullptr);
}

TEST(ReaVecT, ResizeToTheSameLengthKeepsTheBuffer) {
  ReaVecT v = Vec({1, 2});
  const double* const buffer = v.begin();
  v.Resize(2, 9.0);
  EXPECT_EQ(v.begin(), buffer);
  EXPECT_EQ(Entries(v), (Numbers{1, 2}));
}

TEST(ReaVecT, ResizeRefusesNegativeLengths) {
  ReaVecT v(2);
  EXPECT_FATAL(v.Resize(-3, 0.0), "Can't create a vector of size -3");
}

TEST(ReaVecT, SubVectorCountsFromOneOrFromTheEnd) {
  const ReaVecT v = Vec({1, 2, 3, 4, 5});
  EXPECT_EQ(Entries(v.SubVector(2, 3)), (Numbers{2, 3, 4}));
  EXPECT_EQ(Entries(v.SubVector(2, 0)), (Numbers{2, 3, 4, 5}));
  EXPECT_EQ(Entries(v.SubVector(-2, 0)), (Numbers{4, 5}));
  EXPECT_EQ(Entries(v.SubVector(-5, 1)), (Numbers{1}));
  EXPECT_EQ(Entries(v.SubVector(5, 1)), (Numbers{5}));
}

TEST(ReaVecT, SetRangeSetsTheSameRanges) {
  ReaVecT v = Vec({1, 2, 3, 4, 5});
  v.SetRange(9.0, 2, 2);
  EXPECT_EQ(Entries(v), (Numbers{1, 9, 9, 4, 5}));
  v.SetRange(7.0, -1, 0);
  EXPECT_EQ(Entries(v), (Numbers{1, 9, 9, 4, 7}));
  v.SetRange(0.0, 1, 0);
  EXPECT_TRUE(v.AllEqual(0.0));
}

TEST(ReaVecT, RangesOutsideTheVectorAreRefusedWithTheirLastPlace) {
  struct Refusal {
    int start, count;
    const char* text;
  };
  const Refusal kRefusals[] = {
      {4,  3,          "Index 5 out of range."         }, // beyond the end
      {6,  0,          "Index 4 out of range."         }, // first behind last
      {-6, 0,          "Index 4 out of range."         }, // before the first entry
      {0,  0,          "Index 4 out of range."         }, // no such position
      {0,  1,          "Index 5 out of range."         }, // likewise
      {2,  -1,         "Index -1 out of range."        }, // negative count
      {5,  2147483647, "Index 2147483650 out of range."}, // beyond 32 bits
  };
  ReaVecT v(5);
  for (const Refusal& refusal : kRefusals) {
    EXPECT_FATAL(v.SubVector(refusal.start, refusal.count), refusal.text);
    EXPECT_FATAL(v.SetRange(1.0, refusal.start, refusal.count), refusal.text);
  }
  EXPECT_TRUE(v.AllEqual(0.0));
}

TEST(ReaVecT, RangesOfAnEmptyVectorAreRefused) {
  ReaVecT empty;
  EXPECT_FATAL(empty.SetRange(1.0, 1, 0), "Index -1 out of range.");
  EXPECT_FATAL(empty.SubVector(-1, 1), "Index -1 out of range.");
}

TEST(ReaVecT, ConcatenationPutsTheSecondBehindTheFirst) {
  EXPECT_EQ(Entries(Concatenate(Vec({1, 2}), Vec({3}))), (Numbers{1, 2, 3}));
  EXPECT_EQ(Entries(Concatenate(ReaVecT(), Vec({3}))), (Numbers{3}));
  EXPECT_EQ(Concatenate(ReaVecT(), ReaVecT()).n, 0);
}

TEST(ReaVecT, ReverseExchangesFirstAndLast) {
  ReaVecT odd = Vec({1, 2, 3});
  odd.Reverse();
  EXPECT_EQ(Entries(odd), (Numbers{3, 2, 1}));
  ReaVecT even = Vec({1, 2, 3, 4});
  even.Reverse();
  EXPECT_EQ(Entries(even), (Numbers{4, 3, 2, 1}));
  ReaVecT empty;
  empty.Reverse();
  EXPECT_EQ(empty.n, 0);
}

TEST(ReaVecT, FindGivesTheFirstExactMatch) {
  const ReaVecT v = Vec({1, 5, 5});
  EXPECT_EQ(v.Find(5.0), 2);
  EXPECT_EQ(v.Find(5.0 + 1e-12), 0);
  EXPECT_EQ(ReaVecT().Find(0.0), 0);
}

TEST(ReaVecT, AllEqualIsTrueForAnEmptyVector) {
  EXPECT_TRUE(Vec({2, 2}).AllEqual(2.0));
  EXPECT_FALSE(Vec({2, 2.5}).AllEqual(2.0));
  EXPECT_TRUE(ReaVecT().AllEqual(1.0));
}

TEST(ReaVecT, ApplyVisitsEveryEntryInOrder) {
  ReaVecT v = Vec({1, 2, 3});
  Numbers seen;
  v.Apply([&](double& entry) {
    seen.push_back(entry);
    entry *= 10.0;
  });
  EXPECT_EQ(seen, (Numbers{1, 2, 3}));
  EXPECT_EQ(Entries(v), (Numbers{10, 20, 30}));
}

TEST(ReaVecT, CombineStopsAtTheShorterVector) {
  const auto decimal = [](double a, double b) { return 10.0 * a + b; };
  EXPECT_EQ(Entries(Combine(decimal, Vec({1, 2, 3}), Vec({4, 5}))), (Numbers{14, 25}));
  EXPECT_EQ(Entries(Combine(decimal, Vec({1}), Vec({4, 5}))), (Numbers{14}));
  EXPECT_EQ(Combine(decimal, ReaVecT(), Vec({4})).n, 0);
}

int Difference(double a, double b) {
  return static_cast<int>(a) - static_cast<int>(b);
}

TEST(ReaVecT, MergeKeepsTheOrderOfBothVectors) {
  EXPECT_EQ(Entries(Merge(Vec({1, 4, 6}), Vec({2, 3, 7, 8}), Difference)),
            (Numbers{1, 2, 3, 4, 6, 7, 8}));
  EXPECT_EQ(Entries(Merge(ReaVecT(), Vec({2}), Difference)), (Numbers{2}));
  EXPECT_EQ(Entries(Merge(Vec({2}), ReaVecT(), Difference)), (Numbers{2}));
}

TEST(ReaVecT, MergeTakesTheFirstVectorWhenTheComparisonIsBelowOne) {
  // The whole parts compare equal; the fractions tell where an entry came from.
  EXPECT_EQ(Entries(Merge(Vec({2.25, 3.25}), Vec({2.5, 3.5}), Difference)),
            (Numbers{2.25, 2.5, 3.25, 3.5}));
  const auto zero = [](double, double) { return 0; };
  const auto one = [](double, double) { return 1; };
  EXPECT_EQ(Entries(Merge(Vec({9, 8}), Vec({1, 2}), zero)), (Numbers{9, 8, 1, 2}));
  EXPECT_EQ(Entries(Merge(Vec({9, 8}), Vec({1, 2}), one)), (Numbers{1, 2, 9, 8}));
}

}  // namespace

}  // namespace kestol
