// The one file of the library that knows whether the sparse direct solver is there.
#include "kestol/DirectMatrix.h"

#include "kestol/LinearSystem.h"
#if defined(KESTOL_WITH_MUMPS)
#include "direct/DirectSolver.h"
#else
#include "main/ErrorChannel.h"
#endif

namespace kestol {

#if defined(KESTOL_WITH_MUMPS)

bool DirectSolverIsBuilt() {
  return true;
}

std::unique_ptr<StiffnessMatrix> NewDirectMatrix(int n) {
  return std::make_unique<DirectSolver>(n);
}

#else

bool DirectSolverIsBuilt() {
  return false;
}

std::unique_ptr<StiffnessMatrix> NewDirectMatrix(int) {
  Fatal("error: this kestol was built without the sparse direct solver\n");
}

#endif

}  // namespace kestol
