#include "algebra/VoidPlex.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "main/ErrorChannel.h"

namespace kestol {

namespace {

int CheckedBlockSize(int blockSize) {
  if (blockSize < 1) Fatal("Invalid constructor specification");
  return blockSize;
}

void RefuseInvalid(int index) {
  if (index < 1) Fatal("Invalid void index ", index);
}

int FirstOfRange(int index, int blockSize) {
  return (index - 1) / blockSize * blockSize + 1;
}

/// Stands for the head of a container without blocks, so that no look-up has to ask for null.
constinit VoidPlex::Block noBlock;

}  // namespace

VoidPlex::Block::Block(int blockSize, int index)
    : slots(std::make_unique<void*[]>(blockSize)),
      first(FirstOfRange(index, blockSize)),
      last(std::int64_t{first} + blockSize - 1) {}

VoidPlex::VoidPlex(int size) : blockSize(CheckedBlockSize(size)) {
  auto block = std::make_unique<Block>(blockSize, 1);
  head = current = block.get();
  ordered_.emplace(1, std::move(block));
}

VoidPlex::VoidPlex(VoidPlex&& other) noexcept
    : head(std::exchange(other.head, &noBlock)),
      blockSize(other.blockSize),
      current(std::exchange(other.current, &noBlock)),
      lowest(std::exchange(other.lowest, 0)),
      highest(std::exchange(other.highest, 0)),
      ordered_(std::move(other.ordered_)),
      directory_(std::move(other.directory_)),
      fullBelow_(std::exchange(other.fullBelow_, 1)) {
  other.ordered_.clear();
  other.directory_.clear();
}

VoidPlex::~VoidPlex() = default;

void VoidPlex::Insert(int index, void* object) {
  RefuseInvalid(index);
  if (object && Get(index)) Fatal("Repeated index ", index, " in VoidPlex");
  Set(index, object);
}

void VoidPlex::Set(int index, void* object) {
  RefuseInvalid(index);
  if (!object) return StoreNull(index);
  if (lowest == 0) {
    Rebase(index);
    lowest = highest = index;
  } else {
    lowest = std::min(lowest, index);
    highest = std::max(highest, index);
  }
  Locate(index) = object;
}

void VoidPlex::StoreNull(int index) {
  if (lowest == 0 || index < lowest) return;
  highest = std::max(highest, index);
  fullBelow_ = std::min(fullBelow_, index);
  if (Block* const block = BlockOf(index)) block->Slot(index) = nullptr;
  if (index > lowest) return;
  lowest = OccupiedAbove(index);
  if (lowest == 0) Clear();
}

int VoidPlex::Add(void* object) {
  while (Get(fullBelow_)) ++fullBelow_;
  const int index = fullBelow_;
  Set(index, object);
  return index;
}

void*& VoidPlex::Locate(int index) {
  if (index < 1 || index < lowest || index > highest) Fatal("Invalid void index -2- ", index);
  if (!current->Covers(index)) {
    Block* const block = BlockOf(index);
    current = block ? block : AddBlock(index);
  }
  return current->Slot(index);
}

void* VoidPlex::Next(int& cursor) const {
  cursor = cursor < lowest ? lowest : OccupiedAbove(cursor);
  return Get(cursor);
}

int VoidPlex::Trim() {
  if (lowest == 0) return 0;
  // The object at `lowest` ends both walks.
  const Block* block = std::prev(ordered_.upper_bound(highest))->second.get();
  while (true) {
    for (std::int64_t index = std::min<std::int64_t>(block->last, highest); index >= block->first;
         --index)
      if (block->Slot(index)) return highest = static_cast<int>(index);
    block = block->prev;
  }
}

void VoidPlex::Compact() {
  int target = lowest;
  for (int index = 0; void* const object = Next(index); ++target)
    if (index != target) {
      Locate(index) = nullptr;
      Locate(target) = object;
    }
  highest = std::max(target - 1, 0);
  fullBelow_ = 1;
}

void VoidPlex::Clear() {
  if (ordered_.empty()) return;
  ordered_.erase(std::next(ordered_.begin()), ordered_.end());
  directory_.clear();
  std::fill_n(head->slots.get(), blockSize, nullptr);
  head->prev = head->next = current = head;
  lowest = highest = 0;
  fullBelow_ = 1;
}

void* VoidPlex::GetElsewhere(int index) const {
  if (index < lowest || index > highest || index < 1) return nullptr;
  Block* const block = BlockOf(index);
  if (!block) return nullptr;
  current = block;
  return block->Slot(index);
}

/// The block that covers `index` >= 1, or null.
VoidPlex::Block* VoidPlex::BlockOf(int index) const {
  const auto found = directory_.find(FirstOfRange(index, blockSize));
  return found == directory_.end() ? nullptr : found->second;
}

/// Links a block for `index` before the first block of a greater range, or behind the tail.
VoidPlex::Block* VoidPlex::AddBlock(int index) {
  const auto place = ordered_.upper_bound(index);
  Block* const after = place == ordered_.end() ? head : place->second.get();
  auto owned = std::make_unique<Block>(blockSize, index);
  Block* const block = directory_[owned->first] = owned.get();
  const bool isFirst = ordered_.empty();
  ordered_.emplace_hint(place, block->first, std::move(owned));
  if (isFirst) return head = block;
  block->next = after;
  block->prev = after->prev;
  block->prev->next = after->prev = block;
  head = ordered_.begin()->second.get();
  return block;
}

/// Lets the one block of an empty container cover `index`; makes it where there is none.
void VoidPlex::Rebase(int index) {
  if (ordered_.empty()) {
    current = AddBlock(index);
    return;
  }
  auto node = ordered_.extract(ordered_.begin());
  node.key() = head->first = FirstOfRange(index, blockSize);
  head->last = std::int64_t{head->first} + blockSize - 1;
  ordered_.insert(std::move(node));
  directory_[head->first] = head;
}

/// The lowest occupied index above `index` >= 1, or 0. Leaves `current` there for the next step.
int VoidPlex::OccupiedAbove(int index) const {
  Block* block = current->Covers(index) ? current : BlockOf(index);
  if (!block) {
    const auto above = ordered_.upper_bound(index);
    if (above == ordered_.end()) return 0;
    block = above->second.get();
  }
  std::int64_t candidate = std::max<std::int64_t>(std::int64_t{index} + 1, block->first);
  while (true) {
    for (; candidate <= block->last; ++candidate)
      if (block->Slot(candidate)) {
        current = block;
        return static_cast<int>(candidate);
      }
    block = block->next;
    if (block == head) return 0;
    candidate = block->first;
  }
}

}  // namespace kestol
