#include "python/Checking.h"

#include <pybind11/stl.h>

#include "kestol/Check.h"
#include "kestol/Mechanisms.h"
#include "kestol/ReadDeck.h"
#include "programs/common/FindingJson.h"
#include "programs/common/FindingMessages.h"
#include "programs/common/MappedDeck.h"
#include "python/Refusals.h"

namespace py = pybind11;

namespace kestol {

namespace {

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

py::list CheckModel(Project& project, const SourceMap& map, const std::string& file,
                    const CheckRequest& request) {
  CheckOptions options;
  options.solve = request.solve;
  options.condition = request.condition;
  options.mechanisms = request.mechanisms;
  options.disabled = request.disabled;
  return ListOf(Check(project, map, options), file);
}

}  // namespace

py::list CheckFile(const std::string& path, const CheckRequest& request) {
  return Guard("model", [&] {
    RequireReadable(path);
    SourceMap map;
    Project project = ReadMappedDeck(path, map);
    return CheckModel(project, map, path, request);
  });
}

py::list CheckText(const std::string& text, const std::string& name, const CheckRequest& request) {
  return Guard("model", [&] {
    SourceMap map;
    Project project = ReadDeckText(text, name, &map);
    return CheckModel(project, map, name, request);
  });
}

void RaiseMechanism(LinearSystem& system) {
  const Mechanisms mechanisms = Guard("model", [&] { return FindMechanisms(system); });
  if (mechanisms.count == 0) return;
  std::string text;
  for (const std::string& line : MechanismReport(mechanisms)) text += line + '\n';
  RaiseError(text, {}, 0, "mechanism");
}

}  // namespace kestol
