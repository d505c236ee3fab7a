#include "algebra/LargePages.h"

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace kestol {

void PreferLargePages([[maybe_unused]] void* memory, [[maybe_unused]] std::size_t bytes) {
#if defined(__linux__) && defined(MADV_HUGEPAGE)
  static_cast<void>(madvise(memory, bytes, MADV_HUGEPAGE));
#endif
}

}  // namespace kestol
