#include <vector>

#include "algebra/Plex.h"
#include "tests/support/ExpectFatal.h"

namespace kestol {

namespace {

// Counts the objects alive.
struct Counted {
  explicit Counted(int& alive) : count(alive) { ++count; }
  ~Counted() { --count; }
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;
  int& count;
};

TEST(Plex, DeletesWhatItHolds) {
  int alive = 0;
  {
    Plex<Counted> plex(4);
    for (const int number : {1, 2, 50}) plex.Insert(number, std::make_unique<Counted>(alive));
    EXPECT_EQ(alive, 3);
  }
  EXPECT_EQ(alive, 0);
}

TEST(Plex, InsertReturnsTheObjectThatGetFinds) {
  Plex<int> plex(4);
  int* const stored = plex.Insert(9, std::make_unique<int>(5));
  EXPECT_EQ(*stored, 5);
  EXPECT_EQ(plex.Get(9), stored);
  EXPECT_EQ(plex.Get(8), nullptr);
  EXPECT_EQ(plex.Lowest(), 9);
  EXPECT_EQ(plex.Highest(), 9);
}

TEST(Plex, RefusedObjectsAreDeletedAndTheFirstStays) {
  int alive = 0;
  Plex<Counted> plex(4);
  plex.Insert(9, std::make_unique<Counted>(alive));
  EXPECT_FATAL(plex.Insert(9, std::make_unique<Counted>(alive)), "Repeated index 9 in VoidPlex");
  EXPECT_FATAL(plex.Insert(0, std::make_unique<Counted>(alive)), "Invalid void index 0");
  EXPECT_EQ(alive, 1);
  EXPECT_NE(plex.Get(9), nullptr);
}

TEST(Plex, TakeGivesTheObjectAway) {
  int alive = 0;
  Plex<Counted> plex(4);
  plex.Insert(3, std::make_unique<Counted>(alive));
  {
    const std::unique_ptr<Counted> taken = plex.Take(3);
    EXPECT_NE(taken, nullptr);
    EXPECT_EQ(alive, 1);
  }
  EXPECT_EQ(alive, 0);
  EXPECT_EQ(plex.Get(3), nullptr);
  EXPECT_EQ(plex.Take(3), nullptr);
}

TEST(Plex, WalksNumbersUpwardsAcrossGaps) {
  Plex<int> plex(4);
  for (const int number : {700, 3, 12}) plex.Insert(number, std::make_unique<int>(10 * number));
  std::vector<int> numbers;
  for (const auto [number, object] : plex) {
    EXPECT_EQ(*object, 10 * number);
    numbers.push_back(number);
  }
  EXPECT_EQ(numbers, (std::vector<int>{3, 12, 700}));
}

TEST(Plex, TakingEverythingOnTheWayEmptiesIt) {
  Plex<int> plex(4);
  for (const int number : {3, 4, 700}) plex.Insert(number, std::make_unique<int>(number));
  int steps = 0;
  for (const auto [number, object] : plex) {
    plex.Take(number);
    ++steps;
  }
  EXPECT_EQ(steps, 3);
  EXPECT_EQ(plex.Highest(), 0);
}

TEST(Plex, WalkOfAnEmptyOneTakesNoStep) {
  const Plex<int> plex(4);
  for (const auto [number, object] : plex) FAIL() << number << object;
}

}  // namespace

}  // namespace kestol
