// Models: read from decks, or built piece by piece.

#include <pybind11/numpy.h>
#include <pybind11/stl.h>

#include <algorithm>
#include <memory>
#include <span>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "kestol/CopyModel.h"
#include "kestol/ModelBuilder.h"
#include "kestol/ReadDeck.h"
#include "kestol/WriteDeck.h"
#include "programs/common/OutputFile.h"
#include "python/Bindings.h"
#include "python/Refusals.h"

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
  const auto& meshes = builder.Model().meshes;
  if (!meshes.empty())
    for (const auto [number, node] : *meshes[0]->nodes) positions.push_back(PositionOf(*node));
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

}  // namespace

void BindModels(py::module_& module) {
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
  module.def("read", Read, "path"_a);
  module.def("read_text", ReadText, "text"_a, "name"_a);
}

}  // namespace kestol
