// What happens when the system gives no more memory: in processes of their own, whose address space
// is limited.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <new>

#include "algebra/ReaVecT.h"
#include "direct/DirectSolver.h"
#include "tests/support/GridModel.h"

namespace kestol {

namespace {

constexpr rlim_t kMegabyte = 1 << 20;
enum Ending { Solved = 10, Exhausted = 11, Failed = 12 };

rlim_t AddressSpace() {
  unsigned long pages = 0;
  std::FILE* const file = std::fopen("/proc/self/statm", "r");
  if (file == nullptr || std::fscanf(file, "%lu", &pages) != 1) std::abort();
  std::fclose(file);
  return pages * 4096;
}

/// Ends the process with what became of a factorisation that may take so many megabytes.
[[noreturn]] void SolveWithin(rlim_t megabytes) {
  dup2(STDERR_FILENO, STDOUT_FILENO);  // so that what is written to either is seen
  const GridModel grid{16, 16, 16, 3};
  DirectSolver K(grid.NumDegrees());
  grid.Structure(K);
  grid.Assemble(K);
  ReaVecT f(grid.NumDegrees());
  f.Fill(1.0);
  grid.Hold(K, 0.0, f);
  const rlim_t limit = AddressSpace() + megabytes * kMegabyte;
  const rlimit bound{limit, limit};
  if (setrlimit(RLIMIT_AS, &bound) != 0) std::_Exit(Failed);
  try {
    std::_Exit(K.Solve(f, nullptr) == 0 ? Solved : Failed);
  } catch (const std::bad_alloc&) {
    std::_Exit(Exhausted);
  }
}

TEST(DirectSolver, ExhaustedMemoryIsAnException) {
  for (const rlim_t megabytes : {0, 5, 10, 20, 40})
    EXPECT_EXIT(SolveWithin(megabytes), testing::ExitedWithCode(Exhausted), "^$") << megabytes;
  EXPECT_EXIT(SolveWithin(1000), testing::ExitedWithCode(Solved), "^$");
}

}  // namespace

}  // namespace kestol
