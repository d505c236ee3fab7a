#include "algebra/VoidPlex.h"

#include <algorithm>

#include "main/ErrorChannel.h"

VoidPlex::VoidPlex(int blockSize) : blockSize_(blockSize) {
  if (blockSize < 1) Fatal("Invalid constructor specification");
}

VoidPlex::~VoidPlex() = default;

VoidPlex::Block* VoidPlex::Find(int index) const {
  if (current_ != nullptr && index >= current_->first && index <= current_->last) return current_;
  const auto place =
      std::lower_bound(blocks_.begin(), blocks_.end(), index,
                       [](const std::unique_ptr<Block>& block, int i) { return block->last < i; });
  if (place == blocks_.end() || (*place)->first > index) return nullptr;
  return current_ = place->get();
}

VoidPlex::Block& VoidPlex::Locate(int index) {
  if (Block* found = Find(index)) return *found;
  auto block = std::make_unique<Block>();
  block->first = static_cast<long long>(index - 1) / blockSize_ * blockSize_ + 1;
  block->last = block->first + blockSize_ - 1;
  block->slots = std::make_unique<void*[]>(blockSize_);
  current_ = block.get();
  const auto place =
      std::lower_bound(blocks_.begin(), blocks_.end(), index,
                       [](const std::unique_ptr<Block>& other, int i) { return other->last < i; });
  blocks_.insert(place, std::move(block));
  return *current_;
}

void* VoidPlex::Get(int index) const {
  if (lowest == 0 || index < lowest || index > highest) return nullptr;
  const Block* block = Find(index);
  return block != nullptr ? block->slots[index - block->first] : nullptr;
}

void VoidPlex::Store(int index, void* object, bool refuseOccupied) {
  if (index < 1) Fatal("Invalid void index ", index);
  if (object == nullptr) {
    if (Block* block = Find(index)) block->slots[index - block->first] = nullptr;
    if (lowest == 0) return;
    highest = std::max(highest, index);
    if (index != lowest) return;
    int cursor = index;
    if (Next(cursor) == nullptr)
      Clear();
    else
      lowest = cursor;
    return;
  }
  Block& block = Locate(index);
  void*& slot = block.slots[index - block.first];
  if (refuseOccupied && slot != nullptr) Fatal("Repeated index ", index, " in VoidPlex");
  slot = object;
  highest = std::max(highest, index);
  lowest = lowest == 0 ? index : std::min(lowest, index);
}

void VoidPlex::Insert(int index, void* object) {
  Store(index, object, true);
}

void VoidPlex::Set(int index, void* object) {
  Store(index, object, false);
}

int VoidPlex::Add(void* object) {
  int index = 1;
  while (index <= highest && Get(index) != nullptr) ++index;
  Set(index, object);
  return index;
}

void* VoidPlex::Next(int& cursor) const {
  for (int i = std::max(cursor + 1, lowest); lowest != 0 && i <= highest; ++i)
    if (void* object = Get(i)) {
      cursor = i;
      return object;
    }
  cursor = 0;
  return nullptr;
}

int VoidPlex::Trim() {
  while (highest > lowest && Get(highest) == nullptr) --highest;
  return highest;
}

void VoidPlex::Compact() {
  int target = lowest;
  for (int i = lowest; lowest != 0 && i <= highest; ++i)
    if (void* object = Get(i)) {
      if (i != target) {
        Block* from = Find(i);
        from->slots[i - from->first] = nullptr;
        Block& to = Locate(target);
        to.slots[target - to.first] = object;
      }
      ++target;
    }
  if (lowest != 0) highest = target - 1;
}

void VoidPlex::Clear() {
  blocks_.clear();
  current_ = nullptr;
  lowest = highest = 0;
}
