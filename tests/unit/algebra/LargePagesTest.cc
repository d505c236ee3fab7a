#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <new>

#include "algebra/LargePages.h"

namespace kestol {

namespace {

using Allocator = LargePageAllocator<double>;
constexpr std::size_t kPerPage = Allocator::kPageSize / sizeof(double);

TEST(LargePageAllocator, ArraysOfAPageOrMoreBeginOnAPage) {
  Allocator allocator;
  for (const std::size_t count : {kPerPage, 3 * kPerPage + 1}) {
    double* const memory = allocator.allocate(count);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(memory) % Allocator::kPageSize, 0u) << count;
    memory[0] = memory[count - 1] = 1.0;
    allocator.deallocate(memory, count);
  }
}

TEST(LargePageAllocator, SmallArraysTakeNoPageOfTheirOwn) {
  Allocator allocator;
  double* const first = allocator.allocate(kPerPage - 1);
  first[0] = first[kPerPage - 2] = 1.0;
  EXPECT_NE(reinterpret_cast<std::uintptr_t>(first) % Allocator::kPageSize, 0u);
  allocator.deallocate(first, kPerPage - 1);
}

TEST(LargePageAllocator, CountsWhoseBytesCannotBeCountedAreRefused) {
  Allocator allocator;
  EXPECT_THROW(allocator.allocate(SIZE_MAX / sizeof(double)), std::bad_array_new_length);
  EXPECT_THROW(allocator.allocate(SIZE_MAX), std::bad_array_new_length);
}

}  // namespace

}  // namespace kestol
