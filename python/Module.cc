// The extension module under the package kestol: the library with plain arguments. What users see
// is kestol/*.py.

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <algorithm>
#include <memory>
#include <span>
#include <sstream>
#include <string>
#include <utility>

#include "kestol/CopyModel.h"
#include "kestol/LinearSystem.h"
#include "kestol/Mechanisms.h"
#include "kestol/ModelBuilder.h"
#include "kestol/ReadDeck.h"
#include "kestol/WriteDeck.h"
#include "programs/common/OutputFile.h"
#include "python/Arrays.h"
#include "python/Checking.h"
#include "python/Combined.h"
#include "python/Refusals.h"
#include "python/Solution.h"

namespace py = pybind11;
using namespace py::literals;

namespace kestol {

namespace {

using Integers = py::array_t<int, py::array::c_style>;
using Doubles = py::array_t<double, py::array::c_style | py::array::forcecast>;

template <class T, int flags>
std::span<const T> SpanOf(const py::array_t<T, flags>& array) {
  return {array.data(), static_cast<std::size_t>(array.size())};
}

// --- models -----------------------------------------------------------------------------------

std::unique_ptr<ModelBuilder> Read(const std::string& path) {
  return Guard("model", [&] {
    RequireReadable(path);
    return std::make_unique<ModelBuilder>(ReadDeck(path));
  });
}

std::unique_ptr<ModelBuilder> ReadText(const std::string& text, const std::string& name) {
  return Guard("model", [&] { return std::make_unique<ModelBuilder>(ReadDeckText(text, name)); });
}

std::string TextOf(const ModelBuilder& builder) {
  return Guard("model", [&] {
    std::ostringstream text;
    WriteDeck(builder.Model(), text);
    return text.str();
  });
}

void WriteTo(ModelBuilder& builder, const std::string& path,
             const std::vector<std::string>& inputs) {
  Guard("model", [&] {
    builder.Check();
    OutputFile file(path, inputs);
    file << TextOf(builder);
    file.Commit();
  });
}

ElemType TypeOf(const std::string& word) {
  return static_cast<ElemType>(Mesh::ParseElemType(word));
}

void AddElements(ModelBuilder& builder, const std::string& type, int nodesPerElement,
                 const Integers& numbers, const Integers& nodes, const Integers& materials) {
  Guard("model", [&] {
    builder.AddElements(
        {TypeOf(type), nodesPerElement, SpanOf(numbers), SpanOf(nodes), SpanOf(materials)});
  });
}

int ElementCount(const ModelBuilder& builder) {
  int count = 0;
  for (const int ofMesh : builder.Model().numElements) count += ofMesh;
  return count;
}

int NodeCount(const ModelBuilder& builder) {
  return builder.NextNodeNumber() - 1;
}

/// Nodes and elements of the model for pictures: positions by node, and the corners of each element
/// behind its number.
py::array PositionsOf(const ModelBuilder& builder) {
  std::vector<Vector3> positions;
  ForEachNode(builder.Model(),
              [&](int, const Node& node) { positions.push_back(PositionOf(node)); });
  py::array_t<double> array({static_cast<py::ssize_t>(positions.size()), py::ssize_t{3}});
  std::copy_n(reinterpret_cast<const double*>(positions.data()), 3 * positions.size(),
              array.mutable_data());
  return array;
}

std::vector<std::vector<int>> ElementsOf(const ModelBuilder& builder) {
  std::vector<std::vector<int>> rows;
  for (const auto& mesh : builder.Model().meshes)
    for (const auto [number, elem] : mesh->elems) {
      std::vector<int> row = {number};
      for (int i = 0; i < elem->nnode; ++i)
        row.push_back(elem->nodes[i] != nullptr ? elem->nodes[i]->number : 0);
      rows.push_back(std::move(row));
    }
  return rows;
}

// --- solutions --------------------------------------------------------------------------------

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

/// A model that is well written and cannot be solved moves without resistance.
Results SolveSystem(Project& project, const SolveOptions& options) {
  auto system = Guard("model", [&] { return std::make_unique<LinearSystem>(project, options); });
  const ReaVecT loads = Guard("model", [&] { return system->DeckLoads(); });
  if (!Guard("model", [&] { return IsSound(*system); })) RaiseMechanism(*system);
  return Guard("mechanism", [&] { return system->Solve(loads); });
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

// --- combinations -----------------------------------------------------------------------------

std::shared_ptr<Combined> SolveCases(ModelBuilder& builder,
                                     const std::vector<std::pair<std::string, std::string>>& cases,
                                     const std::vector<std::string>& names,
                                     const std::vector<std::vector<double>>& factors,
                                     const std::string& solver) {
  const SolveOptions options = OptionsFor(solver, true);
  const auto combined = Guard("model", [&] {
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
  Guard(addsUp ? "mechanism" : "hinge-first", [&] { combined->SolveCases(); });
  return combined;
}

py::dict EnvelopeOf(Combined& combined, int kind) {
  const KindEnvelope found =
      Guard("mechanism", [&] { return combined.EnvelopeOf(static_cast<ValueKind>(kind)); });
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

void BindModel(py::module_& module) {
  py::class_<ModelBuilder>(module, "Builder")
      .def(py::init([](int dimension) {
             return Guard("model", [&] { return std::make_unique<ModelBuilder>(dimension); });
           }),
           "dimension"_a)
      .def("copy",
           [](const ModelBuilder& b) {
             return std::make_unique<ModelBuilder>(CopyModel(b.Model()), b.IsChanged());
           })
      .def("say", [](ModelBuilder& b,
                     const std::string& statement) { Guard("syntax", [&] { b.Say(statement); }); })
      .def("add_record",
           [](ModelBuilder& b, const std::string& section, const std::string& record) {
             Guard("syntax", [&] { b.AddRecord(section, record); });
           })
      .def("add_units", [](ModelBuilder& b,
                           const std::string& row) { Guard("syntax", [&] { b.AddUnits(row); }); })
      .def("add_nodes",
           [](ModelBuilder& b, const Integers& numbers, const Doubles& xyz) {
             Guard("model", [&] { b.AddNodes(SpanOf(numbers), SpanOf(xyz)); });
           })
      .def("add_elements", AddElements)
      .def("check", [](ModelBuilder& b) { Guard("model", [&] { b.Check(); }); })
      .def_property_readonly("is_changed", &ModelBuilder::IsChanged)
      .def("text", TextOf)
      .def("write", WriteTo)
      .def("positions", PositionsOf)
      .def("elements", ElementsOf)
      .def_property_readonly("next_node_number", &ModelBuilder::NextNodeNumber)
      .def_property_readonly("next_element_number", &ModelBuilder::NextElementNumber)
      .def_property_readonly("node_count", NodeCount)
      .def_property_readonly("element_count", ElementCount)
      .def_property_readonly("coordinate_count", &ModelBuilder::Dimension)
      .def_property_readonly(
          "dimension", [](const ModelBuilder& b) { return b.Model().problemType == Plane ? 2 : 3; })
      .def_property_readonly("dofs_per_node",
                             [](const ModelBuilder& b) { return b.Model().dofsPerNode; });
}

void BindSolution(py::module_& module) {
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
}

void BindCombined(py::module_& module) {
  py::class_<Combined, std::shared_ptr<Combined>>(module, "Combined")
      .def("solve",
           [](Combined& c, const std::vector<double>& factors) {
             return Guard("mechanism", [&] { return c.Solve(factors); });
           })
      .def("envelope", EnvelopeOf);
}

}  // namespace

}  // namespace kestol

PYBIND11_MODULE(_kestol, module) {
  using namespace kestol;
  BindModel(module);
  BindSolution(module);
  BindCombined(module);
  module.def("read", Read, "path"_a);
  module.def("read_text", ReadText, "text"_a, "name"_a);
  module.def("solve", Solve, "model"_a, "solver"_a, "stations"_a, "renumber"_a);
  module.def("combine", SolveCases, "model"_a, "cases"_a, "names"_a, "factors"_a, "solver"_a);
  module.def(
      "check_file",
      [](const std::string& path, bool solve, bool condition, int mechanisms,
         const std::vector<std::string>& disabled) {
        return CheckFile(path, {solve, condition, mechanisms, disabled});
      },
      "path"_a, "solve"_a, "condition"_a, "mechanisms"_a, "disabled"_a);
  module.def(
      "check_text",
      [](const std::string& text, const std::string& name, bool solve, bool condition,
         int mechanisms, const std::vector<std::string>& disabled) {
        return CheckText(text, name, {solve, condition, mechanisms, disabled});
      },
      "text"_a, "name"_a, "solve"_a, "condition"_a, "mechanisms"_a, "disabled"_a);
  module.def("value_names", ValueNamesOfKinds);
  module.def("direct_solver_is_built", DirectSolverIsBuilt);
  module.attr("version") = KESTOL_VERSION;
}
