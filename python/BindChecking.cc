// What is wrong with a model.

#include <pybind11/stl.h>

#include <string>
#include <vector>

#include "kestol/Check.h"
#include "kestol/Mechanisms.h"
#include "kestol/ReadDeck.h"
#include "programs/common/FindingJson.h"
#include "programs/common/FindingMessages.h"
#include "programs/common/MappedDeck.h"
#include "python/Bindings.h"
#include "python/Refusals.h"

namespace py = pybind11;
using namespace py::literals;

namespace kestol {

namespace {

/// Tuples (code, severity, text, file, line, column, endColumn, nodes, elements); line and columns
/// None where a finding has no place.
py::list ListOf(const Findings& findings, const std::string& file) {
  py::list list;
  for (const Finding& finding : findings.list) {
    const auto placed = [&](long value) -> py::object {
      return finding.line > 0 ? py::object(py::int_(value)) : py::object(py::none());
    };
    list.append(py::make_tuple(finding.code, NameOf(finding.severity), Decoded(WholeText(finding)),
                               Decoded(file), placed(finding.line), placed(finding.column),
                               placed(finding.endColumn), finding.nodes, finding.elements));
  }
  return list;
}

CheckOptions Asked(bool solve, bool condition, int mechanisms,
                   const std::vector<std::string>& disabled) {
  for (const std::string& code : disabled)
    if (!IsFindingCode(code)) throw py::value_error("unknown code " + code);
  if (mechanisms < 0) throw py::value_error("the count of mechanisms is negative");
  CheckOptions options;
  options.solve = solve;
  options.condition = condition;
  options.mechanisms = mechanisms;
  options.disabled = disabled;
  return options;
}

py::list CheckFile(const std::string& path, const CheckOptions& options) {
  return Guard("model", [&] {
    RequireReadable(path);
    SourceMap map;
    Project project = ReadMappedDeck(path, map);
    return ListOf(Check(project, map, options), path);
  });
}

py::list CheckText(const std::string& text, const std::string& name, const CheckOptions& options) {
  return Guard("model", [&] {
    SourceMap map;
    Project project = ReadDeckText(text, name, &map);
    return ListOf(Check(project, map, options), name);
  });
}

}  // namespace

void BindChecking(py::module_& module) {
  module.def(
      "check_file",
      [](const std::string& path, bool solve, bool condition, int mechanisms,
         const std::vector<std::string>& disabled) {
        return CheckFile(path, Asked(solve, condition, mechanisms, disabled));
      },
      "path"_a, "solve"_a, "condition"_a, "mechanisms"_a, "disabled"_a);
  module.def(
      "check_text",
      [](const std::string& text, const std::string& name, bool solve, bool condition,
         int mechanisms, const std::vector<std::string>& disabled) {
        return CheckText(text, name, Asked(solve, condition, mechanisms, disabled));
      },
      "text"_a, "name"_a, "solve"_a, "condition"_a, "mechanisms"_a, "disabled"_a);
}

void RaiseMechanism(LinearSystem& system) {
  const Mechanisms mechanisms = Guard("model", [&] { return FindMechanisms(system); });
  if (mechanisms.count == 0) return;
  std::string text;
  for (const std::string& line : MechanismReport(mechanisms)) text += line + '\n';
  RaiseError(text, {}, 0, "mechanism");
}

}  // namespace kestol
