#pragma once

#include <cstddef>
#include <cstdint>
#include <new>
#include <vector>

namespace kestol {

/// Asks the system to back the memory with large pages, where it knows such a wish; a hint only.
void PreferLargePages(void* memory, std::size_t bytes);

/// Allocator for arrays that are swept through many times: on large pages the sweep runs at up to
/// twice the speed. Small arrays are allocated as usual.
template <class T>
struct LargePageAllocator {
  using value_type = T;
  static constexpr std::size_t kPageSize = std::size_t{1} << 21;

  LargePageAllocator() = default;
  template <class U>
  LargePageAllocator(const LargePageAllocator<U>& /*other*/) {}

  T* allocate(std::size_t count) {
    if (count >= static_cast<std::size_t>(PTRDIFF_MAX) / sizeof(T))
      throw std::bad_array_new_length();
    const std::size_t bytes = count * sizeof(T);
    if (bytes < kPageSize) return static_cast<T*>(::operator new(bytes));
    void* const memory = ::operator new (bytes, std::align_val_t{kPageSize});
    PreferLargePages(memory, bytes);
    return static_cast<T*>(memory);
  }

  void deallocate(T* memory, std::size_t count) {
    if (count * sizeof(T) < kPageSize)
      ::operator delete(memory);
    else
      ::operator delete (memory, std::align_val_t{kPageSize});
  }

  bool operator==(const LargePageAllocator& /*other*/) const { return true; }
};

template <class T>
using LargeVector = std::vector<T, LargePageAllocator<T>>;

}  // namespace kestol
