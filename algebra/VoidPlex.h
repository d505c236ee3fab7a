#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <unordered_map>

namespace kestol {

/// Object pointers under positive numbers that may have gaps: nodes, elements, materials, supports
/// and loads by the numbers of the input. The objects belong to somebody else (see Plex.h for the
/// container that owns them); a null pointer means "nothing under this number".
///
/// Storage is a circular list of blocks, each covering one aligned range of `blockSize` numbers,
/// in increasing order of range; numbers that nobody uses cost nothing. With blockSize = 100:
///
///     head -> 1..100 <-> 301..400 <-> 901..1000 <-> back to the head
///                           ^ current, the block of the last look-up
///
/// A look-up in the block used last costs two comparisons, any other one constant time through a
/// directory of the blocks; a new block costs logarithmic time, whatever the order of insertion.
/// `current` is a cache that reading moves, so two threads must not share a container.
///
/// Slots outside lowest..highest are null; a container is empty when lowest is 0.
class VoidPlex {
public:
  /// One aligned range of numbers.
  struct Block {
    constexpr Block() = default;  ///< covers no number
    Block(int blockSize, int index);

    bool Covers(int index) const { return first <= index && index <= last; }
    void*& Slot(std::int64_t index) const { return slots[index - first]; }

    std::unique_ptr<void*[]> slots;  ///< last - first + 1 pointers
    int first = 1;                   ///< ((i - 1) / blockSize) * blockSize + 1 for every i inside
    std::int64_t last = 0;           ///< first + blockSize - 1; may lie beyond the largest int
    Block* prev = this;              ///< of the head: the tail
    Block* next = this;              ///< of the tail: the head
  };

  /// An empty container with one block. Refuses blockSize < 1.
  explicit VoidPlex(int blockSize);
  /// Takes over what is in `other`, which is left empty and without a block.
  VoidPlex(VoidPlex&& other) noexcept;
  ~VoidPlex();
  VoidPlex(const VoidPlex&) = delete;
  VoidPlex& operator=(const VoidPlex&) = delete;

  /// Stores `object` under a free `index`; refuses index < 1 and an index in use. A null object is
  /// stored as by Set. Constant time for increasing indices.
  void Insert(int index, void* object);

  /// Stores `object` over whatever was there; refuses index < 1. Null removes: at `lowest` the next
  /// occupied index becomes lowest, and with the last object the container is cleared; elsewhere
  /// `highest` stays, or goes up to `index`, until Trim. Null never allocates.
  void Set(int index, void* object);

  /// Stores `object` at the lowest free index from 1 on and returns that index. Objects added one
  /// after another cost constant time each.
  int Add(void* object);

  /// The object under `index`; null for any index without one, negative ones included.
  void* Get(int index) const {
    return current->Covers(index) ? current->Slot(index) : GetElsewhere(index);
  }
  bool IsEmpty(int index) const { return Get(index) == nullptr; }

  /// The place of lowest <= index <= highest, in a new block if need be; refuses any other index.
  /// What is written there must not be null at `lowest`: Set takes care of that.
  void*& Locate(int index);

  /// Steps to the next occupied index above `cursor` and returns its object; start with cursor 0.
  /// After the last one the cursor is 0 and the result null. Constant time per step; storing while
  /// iterating is safe.
  ///
  ///     for (int number = 0; void* object = plex.Next(number);) ...
  void* Next(int& cursor) const;

  /// Lowers `highest` to the last occupied index and returns it (0 when empty).
  int Trim();

  /// Moves the objects down to the indices lowest, lowest + 1, ... in their order. Numbers that the
  /// objects keep of themselves are not touched.
  void Compact();

  /// Empties the container and frees all blocks but the head.
  void Clear();

  Block* head;          ///< the block of the lowest range; one that covers nothing without blocks
  const int blockSize;  ///< numbers per block
  mutable Block* current;  ///< the block used last
  int lowest = 0;          ///< lowest occupied index; 0 when empty
  int highest = 0;         ///< highest index stored since the last Trim; 0 when empty

private:
  void* GetElsewhere(int index) const;
  Block* BlockOf(int index) const;
  Block* AddBlock(int index);
  void Rebase(int index);
  void StoreNull(int index);
  int OccupiedAbove(int index) const;

  // Two directories by `first`: one in order, for neighbours, and one that finds far blocks several
  // times as fast.
  std::map<int, std::unique_ptr<Block>> ordered_;  ///< owns the blocks; same order as the list
  std::unordered_map<int, Block*> directory_;      ///< the same blocks; none when empty
  int fullBelow_ = 1;                              ///< no index below this one is free
};

}  // namespace kestol
