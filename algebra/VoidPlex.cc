#include "algebra/VoidPlex.h"

#include <algorithm>
#include <utility>

#include "main/ErrorChannel.h"

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

}  // namespace

VoidPlex::Block::Block(int blockSize, int index)
    : slots(std::make_unique<void*[]>(blockSize)),
      first(FirstOfRange(index, blockSize)),
      last(std::int64_t{first} + blockSize - 1) {}

VoidPlex::VoidPlex(int size) : blockSize(CheckedBlockSize(size)) {
  directory_.push_back(std::make_unique<Block>(blockSize, 1));
  head = current = directory_.front().get();
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
    head->first = FirstOfRange(index, blockSize);
    head->last = std::int64_t{head->first} + blockSize - 1;
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
  const std::size_t place = std::min(PlaceOf(highest), directory_.size() - 1);
  // The object at `lowest` ends both walks.
  for (Block* block = directory_[place].get();; block = block->prev)
    for (std::int64_t index = std::min<std::int64_t>(block->last, highest); index >= block->first;
         --index)
      if (block->Slot(index)) return highest = static_cast<int>(index);
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
  directory_.erase(directory_.begin() + 1, directory_.end());
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

// The place in the directory of the first block that ends at or above `index` >= 1. Ranges are
// distinct and ordered, so no block is further from an end of the directory than its range is from
// the range there; without gaps the two bounds meet and nothing is left to search.
std::size_t VoidPlex::PlaceOf(int index) const {
  const std::int64_t first = FirstOfRange(index, blockSize);
  const std::int64_t below = (first - head->first) / blockSize;
  const std::int64_t above = (head->prev->first - first) / blockSize;
  const auto count = static_cast<std::int64_t>(directory_.size());
  if (first <= head->first) return 0;
  if (above < 0) return directory_.size();
  const auto low = directory_.begin() + std::max<std::int64_t>(count - 1 - above, 0);
  const auto high = directory_.begin() + std::min(below, count - 1);
  const auto found = std::lower_bound(
      low, high, first, [](const auto& block, std::int64_t start) { return block->first < start; });
  return static_cast<std::size_t>(found - directory_.begin());
}

// The block that covers `index` >= 1, or null.
VoidPlex::Block* VoidPlex::BlockOf(int index) const {
  if (current->next->Covers(index)) return current->next;
  const std::size_t place = PlaceOf(index);
  if (place == directory_.size()) return nullptr;
  Block* const block = directory_[place].get();
  return block->Covers(index) ? block : nullptr;
}

// Links a block for `index` before the first block of a greater range, or behind the tail.
VoidPlex::Block* VoidPlex::AddBlock(int index) {
  const auto place = directory_.begin() + static_cast<std::ptrdiff_t>(PlaceOf(index));
  Block* const after = place == directory_.end() ? head : place->get();
  Block* const block = directory_.insert(place, std::make_unique<Block>(blockSize, index))->get();
  block->next = after;
  block->prev = after->prev;
  block->prev->next = after->prev = block;
  head = directory_.front().get();
  return block;
}

// The lowest occupied index above `index` >= 1, or 0. Leaves `current` there for the next step.
int VoidPlex::OccupiedAbove(int index) const {
  const std::size_t place = current->Covers(index) ? 0 : PlaceOf(index);
  if (place == directory_.size()) return 0;
  Block* block = current->Covers(index) ? current : directory_[place].get();
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
