// The extension module under the package kestol: the library with plain arguments. What users see
// is kestol/*.py.

#include "kestol/LinearSystem.h"
#include "python/Bindings.h"

PYBIND11_MODULE(_kestol, module) {
  using namespace kestol;
  BindModels(module);
  BindChecking(module);
  BindSolutions(module);
  BindCombinations(module);
  module.def("direct_solver_is_built", DirectSolverIsBuilt);
  module.attr("version") = KESTOL_VERSION;
}
