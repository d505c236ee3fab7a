// Models under several load cases.

#include <pybind11/numpy.h>
#include <pybind11/stl.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "kestol/CopyModel.h"
#include "kestol/LinearSystem.h"
#include "kestol/Mechanisms.h"
#include "kestol/ModelBuilder.h"
#include "python/Arrays.h"
#include "python/Bindings.h"
#include "python/Combined.h"
#include "python/Refusals.h"

namespace py = pybind11;
using namespace py::literals;

namespace kestol {

namespace {

std::shared_ptr<Combined> SolveCases(ModelBuilder& builder,
                                     const std::vector<std::pair<std::string, std::string>>& cases,
                                     const std::vector<std::string>& names,
                                     const std::vector<std::vector<double>>& factors,
                                     const std::string& solver) {
  const SolveOptions options = OptionsFor(solver, true);
  auto combined = Guard("model", [&] {
    builder.Check();
    std::vector<CaseSource> sources;
    for (const auto& [name, path] : cases) {
      if (!path.empty()) RequireReadable(path);
      sources.push_back({name, path});
    }
    return std::make_shared<Combined>(CopyModel(builder.Model()), sources, names, factors, options);
  });
  const bool addsUp = Guard("model", [&] { return combined->AddsUp(); });
  if (addsUp && !Guard("model", [&] { return IsSound(combined->System()); }))
    RaiseMechanism(combined->System());
  Guard(addsUp ? "model" : "hinge-first", [&] { combined->SolveCases(); });
  return combined;
}

py::dict EnvelopeOf(Combined& combined, int kind) {
  const KindEnvelope found =
      Guard("model", [&] { return combined.EnvelopeOf(static_cast<ValueKind>(kind)); });
  return py::dict("value_count"_a = found.valueCount, "numbers"_a = FrozenCopy(found.numbers),
                  "points"_a = FrozenCopy(found.points), "min"_a = FrozenCopy(found.least),
                  "max"_a = FrozenCopy(found.largest), "min_by"_a = FrozenCopy(found.leastBy),
                  "max_by"_a = FrozenCopy(found.largestBy),
                  "min_with"_a = FrozenCopy(found.leastWith),
                  "max_with"_a = FrozenCopy(found.largestWith));
}

/// The names of the values of all kinds, in the order of ValueKind.
std::vector<std::vector<std::string_view>> ValueNamesOfKinds() {
  std::vector<std::vector<std::string_view>> names;
  for (int kind = 0; kind <= static_cast<int>(ValueKind::Reaction); ++kind)
    names.push_back(NamesOf(static_cast<ValueKind>(kind)).names);
  return names;
}

}  // namespace

void BindCombinations(py::module_& module) {
  py::class_<Combined, std::shared_ptr<Combined>>(module, "Combined")
      .def("solve",
           [](Combined& c, const std::vector<double>& factors) {
             return Guard("model", [&] { return c.Solve(factors); });
           })
      .def("envelope", EnvelopeOf);
  module.def("combine", SolveCases, "model"_a, "cases"_a, "names"_a, "factors"_a, "solver"_a);
  module.def("value_names", ValueNamesOfKinds);
}

}  // namespace kestol
