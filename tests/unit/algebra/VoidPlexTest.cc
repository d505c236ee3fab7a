#include <map>
#include <numeric>
#include <random>
#include <type_traits>
#include <utility>
#include <vector>

#include "algebra/VoidPlex.h"
#include "tests/support/ExpectFatal.h"

namespace kestol {

namespace {

constexpr int kLargest = 2147483647;

// Objects to point to; only their addresses matter.
int objects[2000];
void* Object(int i) {
  return &objects[i];
}

void InsertAll(VoidPlex& plex, const std::vector<int>& indices) {
  for (const int index : indices) plex.Insert(index, Object(index % 2000));
}

std::vector<int> OccupiedIndices(const VoidPlex& plex) {
  std::vector<int> indices;
  for (int cursor = 0; plex.Next(cursor);) indices.push_back(cursor);
  return indices;
}

// The first numbers of the blocks along the list; the backward links must tell the same.
std::vector<int> BlockStarts(const VoidPlex& plex) {
  std::vector<int> starts;
  const VoidPlex::Block* block = plex.head;
  do {
    EXPECT_EQ(block->next->prev, block);
    starts.push_back(block->first);
    block = block->next;
  } while (block != plex.head);
  return starts;
}

using Indices = std::vector<int>;

TEST(VoidPlex, StartsEmptyWithOneBlock) {
  const VoidPlex plex(100);
  EXPECT_EQ(plex.blockSize, 100);
  EXPECT_EQ(plex.lowest, 0);
  EXPECT_EQ(plex.highest, 0);
  EXPECT_EQ(plex.current, plex.head);
  EXPECT_EQ(BlockStarts(plex).size(), 1u);
  EXPECT_TRUE(plex.IsEmpty(1));
}

TEST(VoidPlex, TakesOverWhatAnotherHoldsAndLeavesItEmpty) {
  static_assert(std::is_nothrow_move_constructible_v<VoidPlex>);
  VoidPlex from(10);
  InsertAll(from, {3, 57, 12});
  const VoidPlex plex(std::move(from));
  EXPECT_EQ(OccupiedIndices(plex), Indices({3, 12, 57}));
  EXPECT_EQ(BlockStarts(plex), Indices({1, 11, 51}));
  EXPECT_EQ(from.lowest, 0);  // NOLINT(bugprone-use-after-move)
  EXPECT_EQ(from.highest, 0);
  EXPECT_TRUE(OccupiedIndices(from).empty());
  EXPECT_EQ(from.Get(3), nullptr);
  EXPECT_EQ(from.Trim(), 0);
  from.Set(5, nullptr);
  from.Clear();
}

TEST(VoidPlex, OneWhoseObjectsWereTakenOverServesAnew) {
  VoidPlex from(10);
  InsertAll(from, {3, 57});
  const VoidPlex plex(std::move(from));
  InsertAll(from, {25, 7});  // NOLINT(bugprone-use-after-move)
  EXPECT_EQ(OccupiedIndices(from), Indices({7, 25}));
  EXPECT_EQ(BlockStarts(from), Indices({1, 21}));
  EXPECT_EQ(OccupiedIndices(plex), Indices({3, 57}));
}

TEST(VoidPlex, RefusesBlockSizesBelowOne) {
  EXPECT_FATAL(VoidPlex(0), "Invalid constructor specification");
  EXPECT_FATAL(VoidPlex(-5), "Invalid constructor specification");
}

TEST(VoidPlex, FirstInsertRebasesTheHeadToItsRange) {
  VoidPlex plex(100);
  plex.Insert(1000, Object(1));
  EXPECT_EQ(BlockStarts(plex), Indices{901});
  EXPECT_EQ(plex.head->last, 1000);
  EXPECT_EQ(plex.lowest, 1000);
  EXPECT_EQ(plex.highest, 1000);
  EXPECT_EQ(plex.Get(1000), Object(1));
}

TEST(VoidPlex, RefusesIndicesBelowOne) {
  VoidPlex plex(10);
  EXPECT_FATAL(plex.Insert(0, Object(1)), "Invalid void index 0");
  EXPECT_FATAL(plex.Set(-3, Object(1)), "Invalid void index -3");
  EXPECT_FATAL(plex.Set(0, nullptr), "Invalid void index 0");
}

TEST(VoidPlex, RefusesASecondObjectUnderOneIndex) {
  VoidPlex plex(10);
  plex.Insert(7, Object(1));
  EXPECT_FATAL(plex.Insert(7, Object(2)), "Repeated index 7 in VoidPlex");
  EXPECT_EQ(plex.Get(7), Object(1));
}

TEST(VoidPlex, SetOverwrites) {
  VoidPlex plex(10);
  plex.Insert(7, Object(1));
  plex.Set(7, Object(2));
  EXPECT_EQ(plex.Get(7), Object(2));
}

TEST(VoidPlex, InsertingNullAtAnOccupiedIndexRemoves) {
  VoidPlex plex(10);
  InsertAll(plex, {3, 7});
  plex.Insert(7, nullptr);
  EXPECT_TRUE(plex.IsEmpty(7));
}

TEST(VoidPlex, GetOutsideTheUsedRangeIsNull) {
  VoidPlex plex(10);
  InsertAll(plex, {13, 57});
  for (const int index : {-kLargest - 1, -1, 0, 1, 12, 58, 1000, kLargest})
    EXPECT_EQ(plex.Get(index), nullptr) << index;
}

TEST(VoidPlex, GetInAGapNeitherFindsNorAllocates) {
  VoidPlex plex(10);
  InsertAll(plex, {5, 95});
  for (int index = 6; index < 95; ++index) EXPECT_TRUE(plex.IsEmpty(index));
  EXPECT_EQ(BlockStarts(plex), (Indices{1, 91}));
}

TEST(VoidPlex, BlocksStayInRangeOrderWhateverTheOrderOfInsertion) {
  VoidPlex plex(10);
  InsertAll(plex, {501, 11, 995, 301, 1, 401, 35});
  EXPECT_EQ(BlockStarts(plex), (Indices{1, 11, 31, 301, 401, 501, 991}));
  EXPECT_EQ(OccupiedIndices(plex), (Indices{1, 11, 35, 301, 401, 501, 995}));
}

TEST(VoidPlex, BlockInsideAGapGoesBetweenItsNeighboursFromBothSides) {
  for (const int lastUsed : {1, 95}) {
    VoidPlex plex(10);
    InsertAll(plex, {1, 95});
    plex.Get(lastUsed);
    plex.Insert(45, Object(2));
    EXPECT_EQ(BlockStarts(plex), (Indices{1, 41, 91})) << lastUsed;
  }
}

TEST(VoidPlex, HoldsTheLargestNumbers) {
  VoidPlex plex(100);
  InsertAll(plex, {1, kLargest, kLargest - 1});
  EXPECT_EQ(BlockStarts(plex).size(), 2u);
  EXPECT_GE(plex.head->next->last, kLargest);
  EXPECT_EQ(OccupiedIndices(plex), (Indices{1, kLargest - 1, kLargest}));
  plex.Set(kLargest, nullptr);
  EXPECT_EQ(plex.Trim(), kLargest - 1);
  plex.Set(kLargest - 1, nullptr);
  EXPECT_EQ(plex.Trim(), 1);
}

TEST(VoidPlex, LocateRefusesWhatLiesOutsideTheUsedRange) {
  VoidPlex plex(10);
  EXPECT_FATAL(plex.Locate(1), "Invalid void index -2- 1");
  InsertAll(plex, {5, 40});
  EXPECT_FATAL(plex.Locate(0), "Invalid void index -2- 0");
  EXPECT_FATAL(plex.Locate(4), "Invalid void index -2- 4");
  EXPECT_FATAL(plex.Locate(41), "Invalid void index -2- 41");
  EXPECT_EQ(plex.Locate(40), Object(40));
}

TEST(VoidPlex, LocateInAGapAllocatesAnEmptyBlock) {
  VoidPlex plex(10);
  InsertAll(plex, {5, 40});
  EXPECT_EQ(plex.Locate(22), nullptr);
  EXPECT_EQ(BlockStarts(plex), (Indices{1, 21, 31}));
  EXPECT_EQ(plex.current->first, 21);
}

TEST(VoidPlex, RemovingTheLowestMovesLowestUp) {
  VoidPlex plex(10);
  InsertAll(plex, {5, 40, 41});
  plex.Set(5, nullptr);
  EXPECT_EQ(plex.lowest, 40);
  EXPECT_EQ(plex.highest, 41);
}

TEST(VoidPlex, RemovingTheOnlyObjectEmptiesTheContainer) {
  VoidPlex plex(10);
  plex.Insert(5, Object(1));
  plex.Set(5, nullptr);
  EXPECT_EQ(plex.lowest, 0);
  EXPECT_EQ(plex.highest, 0);
  EXPECT_EQ(OccupiedIndices(plex), Indices{});
}

TEST(VoidPlex, RemovingTheHighestKeepsHighestUntilTrim) {
  VoidPlex plex(10);
  InsertAll(plex, {5, 8, 40});
  plex.Set(40, nullptr);
  EXPECT_EQ(plex.highest, 40);
  EXPECT_EQ(plex.Trim(), 8);
  EXPECT_EQ(plex.highest, 8);
  EXPECT_EQ(plex.lowest, 5);
}

TEST(VoidPlex, NullAboveHighestRaisesHighestWithoutStorage) {
  VoidPlex plex(10);
  plex.Insert(5, Object(1));
  plex.Set(kLargest, nullptr);
  EXPECT_EQ(plex.highest, kLargest);
  EXPECT_EQ(BlockStarts(plex), Indices{1});
  EXPECT_EQ(OccupiedIndices(plex), Indices{5});
  plex.Set(5, nullptr);
  EXPECT_EQ(plex.highest, 0);
}

TEST(VoidPlex, NullBelowLowestOrInAnEmptyContainerChangesNothing) {
  VoidPlex plex(10);
  plex.Set(3, nullptr);
  EXPECT_EQ(plex.lowest, 0);
  EXPECT_EQ(plex.highest, 0);
  plex.Insert(25, Object(1));
  plex.Set(3, nullptr);
  EXPECT_EQ(plex.lowest, 25);
  EXPECT_EQ(BlockStarts(plex), Indices{21});
}

TEST(VoidPlex, TrimOfAnEmptyContainerIsZero) {
  VoidPlex plex(10);
  EXPECT_EQ(plex.Trim(), 0);
}

TEST(VoidPlex, AddTakesTheLowestFreeIndex) {
  VoidPlex plex(10);
  InsertAll(plex, {1, 2, 4});
  EXPECT_EQ(plex.Add(Object(3)), 3);
  EXPECT_EQ(plex.Add(Object(5)), 5);
  EXPECT_EQ(plex.highest, 5);
}

TEST(VoidPlex, AddSearchesFromOneAlsoBelowLowest) {
  VoidPlex plex(10);
  plex.Insert(1000, Object(1));
  EXPECT_EQ(plex.Add(Object(2)), 1);
  EXPECT_EQ(plex.lowest, 1);
  EXPECT_EQ(plex.highest, 1000);
}

TEST(VoidPlex, AddReusesAnIndexThatBecameFree) {
  VoidPlex plex(3);
  for (int i = 1; i <= 10; ++i) EXPECT_EQ(plex.Add(Object(i)), i);
  plex.Set(4, nullptr);
  plex.Set(1, nullptr);
  EXPECT_EQ(plex.Add(Object(1)), 1);
  EXPECT_EQ(plex.Add(Object(2)), 4);
  EXPECT_EQ(plex.Add(Object(3)), 11);
  plex.Clear();
  EXPECT_EQ(plex.Add(Object(1)), 1);
}

TEST(VoidPlex, AddOfNullStoresNothing) {
  VoidPlex plex(10);
  InsertAll(plex, {1, 2});
  EXPECT_EQ(plex.Add(nullptr), 3);
  EXPECT_EQ(plex.highest, 3);
  EXPECT_EQ(plex.Add(Object(1)), 3);
}

TEST(VoidPlex, NextYieldsLowestFromBelowAndEndsWithCursorZero) {
  VoidPlex plex(10);
  InsertAll(plex, {20, 21, 77});
  const auto step = [&](int cursor) {
    void* const object = plex.Next(cursor);
    return std::pair(cursor, object);
  };
  EXPECT_EQ(step(0), std::pair(20, Object(20)));
  EXPECT_EQ(step(-4), std::pair(20, Object(20)));
  EXPECT_EQ(step(20), std::pair(21, Object(21)));
  EXPECT_EQ(step(21), std::pair(77, Object(77)));
  EXPECT_EQ(step(50), std::pair(77, Object(77)));
  for (const int last : {77, 78, 4000, kLargest})
    EXPECT_EQ(step(last), std::pair(0, static_cast<void*>(nullptr)));
}

TEST(VoidPlex, NextOfAnEmptyContainerIsNullAtCursorZero) {
  const VoidPlex plex(10);
  for (int start : {-2, 0, 5}) {
    EXPECT_EQ(plex.Next(start), nullptr);
    EXPECT_EQ(start, 0);
  }
}

TEST(VoidPlex, InsertingWhileIteratingIsSafe) {
  VoidPlex plex(4);
  InsertAll(plex, {1, 50});
  Indices seen;
  for (int cursor = 0; plex.Next(cursor);) {
    seen.push_back(cursor);
    if (cursor < 40) plex.Insert(cursor + 13, Object(1));
  }
  EXPECT_EQ(seen, (Indices{1, 14, 27, 40, 50}));
}

TEST(VoidPlex, CompactMovesDownFromLowestInOrder) {
  VoidPlex plex(10);
  InsertAll(plex, {9, 12, 13, 95, 1500});
  plex.Compact();
  EXPECT_EQ(OccupiedIndices(plex), (Indices{9, 10, 11, 12, 13}));
  EXPECT_EQ(plex.lowest, 9);
  EXPECT_EQ(plex.highest, 13);
  const int origin[] = {9, 12, 13, 95, 1500};
  for (int i = 0; i < 5; ++i) EXPECT_EQ(plex.Get(9 + i), Object(origin[i]));
  EXPECT_EQ(plex.Add(Object(1)), 1);
}

TEST(VoidPlex, CompactForgetsNullsStoredAboveTheLastObject) {
  VoidPlex plex(10);
  InsertAll(plex, {2, 3});
  plex.Set(30, nullptr);
  plex.Compact();
  EXPECT_EQ(plex.highest, 3);
}

TEST(VoidPlex, CompactOfAnEmptyContainerDoesNothing) {
  VoidPlex plex(10);
  plex.Compact();
  EXPECT_EQ(plex.lowest, 0);
  EXPECT_EQ(plex.highest, 0);
}

TEST(VoidPlex, ClearKeepsOneEmptyBlockForTheNextInsert) {
  VoidPlex plex(10);
  InsertAll(plex, {9, 95, 1500});
  plex.Clear();
  EXPECT_EQ(plex.lowest, 0);
  EXPECT_EQ(plex.highest, 0);
  EXPECT_EQ(BlockStarts(plex).size(), 1u);
  EXPECT_TRUE(plex.IsEmpty(9));
  plex.Insert(42, Object(1));
  EXPECT_EQ(BlockStarts(plex), Indices{41});
  EXPECT_EQ(OccupiedIndices(plex), Indices{42});
}

// The textbook twin: an ordered map.
TEST(VoidPlex, AgreesWithAnOrderedMapOverARandomHistory) {
  std::mt19937 random(7);
  for (const int blockSize : {1, 3, 16}) {
    VoidPlex plex(blockSize);
    std::map<int, void*> twin;
    for (int step = 0; step < 3000; ++step) {
      const int index = static_cast<int>(random() % 600) + 1;
      void* const object = random() % 3 ? Object(static_cast<int>(random() % 2000)) : nullptr;
      plex.Set(index, object);
      if (object)
        twin[index] = object;
      else
        twin.erase(index);
      ASSERT_EQ(plex.lowest, twin.empty() ? 0 : twin.begin()->first);
      const int probe = static_cast<int>(random() % 602);
      ASSERT_EQ(plex.Get(probe), twin.contains(probe) ? twin[probe] : nullptr);
    }
    std::map<int, void*> walked;
    for (int cursor = 0; void* const object = plex.Next(cursor);) walked[cursor] = object;
    EXPECT_EQ(walked, twin);
    EXPECT_EQ(plex.Trim(), twin.empty() ? 0 : twin.rbegin()->first);
    const std::vector<int> starts = BlockStarts(plex);
    EXPECT_TRUE(std::is_sorted(starts.begin(), starts.end()));
  }
}

}  // namespace

}  // namespace kestol
