// Takes the place of the global operator new, in a build of the whole program or as a library that
// is loaded before it: the allocation whose number the environment variable KESTOL_FAIL_AT holds,
// counted from 1, fails, and all after it; with KESTOL_FAIL_ONCE that one alone. With
// KESTOL_FAIL_LATER they are counted from when somebody asks for that. As the library's own does,
// it asks the new-handler before it gives up.
#include "FailingHeap.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

long NumberIn(const char* variable) {
  const char* const text = std::getenv(variable);
  return text != nullptr ? std::strtol(text, nullptr, 10) : 0;
}

// Constant initialised: what other objects allocate before main counts too.
std::atomic<long> count{0}, failAt{-1};  // -1: the environment was not asked yet
std::atomic<bool> failOnce{false};

bool FailsNow() {
  if (failAt < 0) {
    failOnce = NumberIn("KESTOL_FAIL_ONCE") != 0;
    failAt = NumberIn("KESTOL_FAIL_LATER") != 0 ? 0 : NumberIn("KESTOL_FAIL_AT");
  }
  const long number = ++count, at = failAt;
  return at > 0 && (failOnce ? number == at : number >= at);
}

void* Take(std::size_t size, std::size_t alignment) {
  const std::size_t some = std::max<std::size_t>(size, 1);
  if (alignment <= alignof(std::max_align_t)) return std::malloc(some);
  return std::aligned_alloc(alignment, (some + alignment - 1) / alignment * alignment);
}

void* Allocate(std::size_t size, std::size_t alignment = 0) {
  const bool fails = FailsNow();
  for (;;) {
    if (!fails)
      if (void* const memory = Take(size, alignment)) return memory;
    const std::new_handler handler = std::get_new_handler();
    if (handler == nullptr) throw std::bad_alloc();
    handler();
  }
}

// Temporary buffers of the library's algorithms ask this way.
void* AllocateOrNull(std::size_t size, std::size_t alignment = 0) noexcept {
  try {
    return Allocate(size, alignment);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

std::size_t Number(std::align_val_t alignment) {
  return static_cast<std::size_t>(alignment);
}

}  // namespace

void kestol_fail_as_told() {
  failOnce = NumberIn("KESTOL_FAIL_ONCE") != 0;
  failAt = NumberIn("KESTOL_FAIL_AT");
  count = 0;
}

long kestol_allocations() {
  return count;
}

void* operator new(std::size_t size) {
  return Allocate(size);
}
void* operator new[](std::size_t size) {
  return Allocate(size);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
  return Allocate(size, Number(alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
  return Allocate(size, Number(alignment));
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return AllocateOrNull(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return AllocateOrNull(size);
}
void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
  return AllocateOrNull(size, Number(alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
  return AllocateOrNull(size, Number(alignment));
}

void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::align_val_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::align_val_t) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept {
  std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::align_val_t, const std::nothrow_t&) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::align_val_t, const std::nothrow_t&) noexcept {
  std::free(memory);
}
