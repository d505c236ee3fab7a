#include "direct/BlasRoom.h"

#include <dlfcn.h>

#include <new>

namespace kestol {

namespace {

/// What OpenBLAS takes on this processor family, and some more for what stands between.
constexpr std::size_t kRoom = std::size_t{136} << 20;

// The BLAS comes with the solver's library, whichever is installed: it is not linked by name.
template <class Function>
Function Find(const char* name) {
  return reinterpret_cast<Function>(::dlsym(RTLD_DEFAULT, name));
}

using SolveTriangle = void (*)(const char* side, const char* half, const char* transposed,
                               const char* diagonal, const int* m, const int* n,
                               const double* alpha, const double* a, const int* lda, double* b,
                               const int* ldb);

}  // namespace

void TakeBlasRoom() {
  static bool isTaken = false;
  if (isTaken || Find<const char* (*)()>("openblas_get_config") == nullptr) return;
  const auto dtrsm = Find<SolveTriangle>("dtrsm_");
  if (dtrsm == nullptr) return;
  ::operator delete(::operator new(kRoom));
  // Two columns: for a single one another routine is taken, which needs no space.
  constexpr int kSize = 2;
  constexpr double kOne = 1.0, kUnit[] = {1.0, 0.0, 0.0, 1.0};
  double b[] = {1.0, 0.0, 0.0, 1.0};
  dtrsm("L", "U", "N", "N", &kSize, &kSize, &kOne, kUnit, &kSize, b, &kSize);
  isTaken = true;
}

}  // namespace kestol
