#pragma once

#include <memory>
#include <vector>

/// Indexed container of object pointers keyed by positive numbers with gaps. It does not own the
/// objects.
///
/// Storage is allocated in blocks of `blockSize` slots that cover aligned ranges of numbers, so
/// that a sparse numbering costs memory only where numbers are used. The blocks form a circular
/// list in increasing order; the block used last serves the next look-up, and a directory sorted by
/// range serves the far ones.
class VoidPlex {
public:
  explicit VoidPlex(int blockSize);
  ~VoidPlex();
  VoidPlex(const VoidPlex&) = delete;
  VoidPlex& operator=(const VoidPlex&) = delete;

  void Insert(int index, void* object);
  void Set(int index, void* object);
  int Add(void* object);
  void* Get(int index) const;
  bool IsEmpty(int index) const { return Get(index) == nullptr; }
  void* Next(int& cursor) const;
  int Trim();
  void Compact();
  void Clear();

  int lowest = 0;
  int highest = 0;

private:
  struct Block {
    std::unique_ptr<void*[]> slots;
    long long first, last;
  };
  Block* Find(int index) const;
  Block& Locate(int index);
  void Store(int index, void* object, bool refuseOccupied);

  int blockSize_;
  std::vector<std::unique_ptr<Block>> blocks_;  ///< in increasing order
  mutable Block* current_ = nullptr;
};
