// Models become solutions.

#include <pybind11/numpy.h>
#include <pybind11/stl.h>

#include <algorithm>
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
#include "python/Refusals.h"
#include "python/Solution.h"

namespace py = pybind11;
using namespace py::literals;

namespace kestol {

SolveOptions OptionsFor(const std::string& solver, bool renumber) {
  constexpr std::pair<const char*, SolverName> kNames[] = {
      {"deck",    SolverName::Deck   },
      {"skyline", SolverName::SkyLine},
      {"sparse",  SolverName::Sparse },
      {"direct",  SolverName::Direct },
  };
  for (const auto& [name, choice] : kNames)
    if (solver == name) return {choice, renumber, nullptr};
  throw py::value_error("solver is \"deck\", \"skyline\", \"sparse\" or \"direct\", not \"" +
                        solver + '"');
}

namespace {

Results SolveSystem(Project& project, const SolveOptions& options) {
  auto system = Guard("model", [&] { return std::make_unique<LinearSystem>(project, options); });
  const ReaVecT loads = Guard("model", [&] { return system->DeckLoads(); });
  if (!Guard("model", [&] { return IsSound(*system); })) RaiseMechanism(*system);
  return Guard("model", [&] {
    Results results = system->Solve(loads);
    RequireResisted(*system, results.displacements);
    return results;
  });
}

std::shared_ptr<Solution> Solve(ModelBuilder& builder, const std::string& solver, int stations,
                                bool renumber) {
  const SolveOptions options = OptionsFor(solver, renumber);
  if (stations != 0 && stations < 2) throw py::value_error("a beam has at least 2 stations");
  Guard("model", [&] { builder.Check(); });
  auto project = std::make_shared<Project>(CopyModel(builder.Model()));
  Results results = SolveSystem(*project, options);
  return Guard("model",
               [&] { return std::make_shared<Solution>(project, std::move(results), stations); });
}

py::dict UnitsOf(const Solution& solution) {
  const UnitNames& names = solution.data.units;
  return py::dict("force"_a = names.force, "length"_a = names.length,
                  "pressure"_a = names.pressure);
}

py::dict ForcesOf(const NodeForces& forces) {
  return py::dict("force"_a = forces.force, "moment"_a = forces.moment);
}

py::dict BalanceOf(const Solution& solution) {
  const Equilibrium& balance = solution.equilibrium;
  return py::dict("loads"_a = ForcesOf(balance.loads), "reactions"_a = ForcesOf(balance.reactions),
                  "drilling"_a = balance.drilling, "relative_error"_a = balance.relativeError);
}

/// Along which global direction the diagram of a value is drawn, times the value, by beam.
py::array DirectionsOf(const Solution& solution, int value) {
  const BeamTable& beams = solution.data.beams;
  py::array_t<double> directions({py::ssize_t{beams.Count()}, py::ssize_t{3}});
  double* to = directions.mutable_data();
  for (int b = 0; b < beams.Count(); ++b) {
    const Vector3 direction =
        beams.DiagramDirection(b, static_cast<BeamValue>(value), solution.project->problemType);
    to = std::copy(direction.begin(), direction.end(), to);
  }
  return directions;
}

}  // namespace

void BindSolutions(py::module_& module) {
  py::class_<Solution, std::shared_ptr<Solution>>(module, "Solution")
      .def("array",
           [](const py::object& self, const std::string& name) {
             return ArrayOf(self.cast<const Solution&>(), name, self);
           })
      .def("diagram_directions", DirectionsOf)
      .def("write_vtu",
           [](Solution& s, const std::string& path, const std::string& encoding, bool diagrams,
              const std::vector<std::string>& inputs) {
             Guard("model", [&] { s.WriteVtuFile(path, encoding, diagrams, inputs); });
           })
      .def("json",
           [](Solution& s, const std::string& deck) {
             return Guard("model", [&] { return s.Json(deck); });
           })
      .def("csv",
           [](Solution& s, const std::string& table) {
             return Guard("model", [&] { return s.Csv(table); });
           })
      .def_property_readonly("units", UnitsOf)
      .def_property_readonly("equilibrium", BalanceOf)
      .def_property_readonly("dofs_per_node",
                             [](const Solution& s) { return s.project->dofsPerNode; })
      .def_property_readonly(
          "dimension", [](const Solution& s) { return s.project->problemType == Plane ? 2 : 3; });
  module.def("solve", Solve, "model"_a, "solver"_a, "stations"_a, "renumber"_a);
}

}  // namespace kestol
