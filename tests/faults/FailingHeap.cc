// Takes the place of the global operator new in a build of the whole program: the allocation whose
// number the environment variable KESTOL_FAIL_AT holds, counted from 1, fails, and all after it.
// As the library's own does, it asks the new-handler before it gives up.
#include <cstdlib>
#include <new>

namespace {

long FailAt() {
  const char* const text = std::getenv("KESTOL_FAIL_AT");
  return text != nullptr ? std::strtol(text, nullptr, 10) : 0;
}

void* Allocate(std::size_t size) {
  static const long failAt = FailAt();
  static long count = 0;
  ++count;
  for (;;) {
    if (failAt == 0 || count < failAt)
      if (void* const memory = std::malloc(size > 0 ? size : 1)) return memory;
    const std::new_handler handler = std::get_new_handler();
    if (handler == nullptr) throw std::bad_alloc();
    handler();
  }
}

}  // namespace

void* operator new(std::size_t size) {
  return Allocate(size);
}
void* operator new[](std::size_t size) {
  return Allocate(size);
}
// Temporary buffers of the library's algorithms ask this way.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  try {
    return Allocate(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
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
void operator delete(void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  std::free(memory);
}
