#include "kestol/ModelBuilder.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <memory>
#include <string>
#include <system_error>
#include <tuple>
#include <unordered_set>
#include <utility>

#include "input/ProjectCheck.h"
#include "input/ProjectReader.h"
#include "input/TextInput.h"
#include "input/Words.h"
#include "main/ErrorChannel.h"

namespace kestol {

namespace {

/// Numbers per block of the model's containers.
constexpr int kCapacity = 100;

/// All that the keywords of units and options set, by reference.
auto SettingsOf(Project& p) {
  return std::tie(p.units, p.ConvertTo6Nodes, p.stressOption, p.solverChoice, p.tolerance1,
                  p.tolerance2, p.MaxIterations, p.gravity, p.NumOfDivisions, p.CoplanarityAngle,
                  p.DoSmoothing, p.smoothingAngle);
}

template <class... Settings>
std::tuple<Settings...> Copy(const std::tuple<Settings&...>& settings) {
  return settings;
}

/// Reads text of a deck. The readers of keywords set what they then refuse: that is taken back.
void Read(Project& project, const std::string& text) {
  const auto before = Copy(SettingsOf(project));
  TextInput input(text);
  try {
    ReadKeywords(project, input);
  } catch (...) {
    SettingsOf(project) = before;
    throw;
  }
}

/// A line end in a record would begin another one.
void RefuseLineEnds(std::string_view text) {
  if (text.find_first_of("\n\r\v\f") != std::string_view::npos)
    Fatal("error: a record of a deck is one line\n");
}

bool HasLoadsOrSupports(const Project& project) {
  if (project.loads.Highest() > 0) return true;
  if (project.meshes.empty()) return false;
  for (const auto [number, node] : *project.meshes[0]->nodes)
    if (node->constraint || node->load) return true;
  return false;
}

bool IsInUse(const Project& project, int element) {
  return std::any_of(project.meshes.begin(), project.meshes.end(),
                     [element](const auto& mesh) { return mesh->elems.Get(element) != nullptr; });
}

/// Refuses numbers that cannot be or that stand in the list twice.
void CheckNumbers(std::span<const int> numbers, const char* what) {
  std::unordered_set<int> seen;
  const bool rising = std::is_sorted(numbers.begin(), numbers.end(), std::less_equal<>());
  for (const int number : numbers) {
    if (number < 1) Fatal("error: ", what, " number ", number, " is not above 0\n");
    if (!rising && !seen.insert(number).second)
      Fatal("error: ", what, " number ", number, " is given twice\n");
  }
}

/// Refuses a material that cannot be added, in words for who gave its number in a call: those of
/// the readers are about their containers.
void CheckNewMaterial(const Project& project, std::string_view record) {
  const std::size_t first = std::min(record.find_first_not_of(" \t"), record.size());
  int number = 0;
  const auto read = std::from_chars(record.data() + first, record.data() + record.size(), number);
  if (read.ec != std::errc()) return;
  if (number < 1) Fatal("error: material numbers begin at 1\n");
  if (project.materials.Get(number) != nullptr)
    Fatal("error: material ", number, " is given twice\n");
}

}  // namespace

ModelBuilder::ModelBuilder(int dimension) : project_(kCapacity) {
  error.Clear();
  if (dimension != 2 && dimension != 3) Fatal("error: mesh dimension must be 2 or 3\n");
  project_.problemType = dimension == 2 ? Plane : Space;
  project_.dofsPerNode = dimension == 2 ? 3 : 6;
}

ModelBuilder::ModelBuilder(Project model, bool isChanged)
    : project_(std::move(model)), isChanged_(isChanged) {}

void ModelBuilder::Say(std::string_view statement) {
  error.Clear();
  RefuseLineEnds(statement);
  Read(project_, std::string(statement) + '\n');
  isChanged_ = true;
}

void ModelBuilder::AddRecord(std::string_view section, std::string_view record) {
  error.Clear();
  RefuseLineEnds(record);
  if (LowerCase(section) == "materials") CheckNewMaterial(project_, record);
  Read(project_, std::string(section) + '\n' + std::string(record) + "\nend\n");
  isChanged_ = true;
}

void ModelBuilder::AddUnits(std::string_view row) {
  AddRecord("units_names", row);
}

int ModelBuilder::Dimension() const {
  if (!project_.meshes.empty()) return project_.meshes[0]->dimension;
  return project_.problemType == Plane ? 2 : 3;
}

int ModelBuilder::NextNodeNumber() const {
  return project_.meshes.empty() ? 1 : project_.meshes[0]->nodes->Highest() + 1;
}

int ModelBuilder::NextElementNumber() const {
  int highest = 0;
  for (const auto& mesh : project_.meshes) highest = std::max(highest, mesh->elems.Highest());
  return highest + 1;
}

/// The first mesh, which owns the nodes; its type is that of the first elements.
Mesh& ModelBuilder::NodeMesh() {
  if (project_.meshes.empty()) {
    auto mesh = std::make_unique<Mesh>();
    mesh->dimension = Dimension();
    project_.meshes.push_back(std::move(mesh));
  }
  return *project_.meshes[0];
}

void ModelBuilder::CheckNewNodes(std::span<const int> numbers,
                                 std::span<const double> coordinates) {
  const auto dimension = static_cast<std::size_t>(Dimension());
  const double factor = MeshLengthFactor(project_.units);
  const Mesh& mesh = NodeMesh();
  if (coordinates.size() != numbers.size() * dimension)
    Fatal("error: nodes need ", dimension, " coordinates each\n");
  CheckNumbers(numbers, "node");
  for (std::size_t k = 0; k < numbers.size(); ++k) {
    if (mesh.nodes->Get(numbers[k]) != nullptr)
      Fatal("error: node: ", numbers[k], " is there already\n");
    for (const double x : coordinates.subspan(k * dimension, dimension))
      if (!std::isfinite(x * factor))
        Fatal("error: node: ", numbers[k], " has not correct coordinates\n");
  }
}

void ModelBuilder::AddNodes(std::span<const int> numbers, std::span<const double> coordinates) {
  error.Clear();
  CheckNewNodes(numbers, coordinates);
  isChanged_ = true;
  const auto dimension = static_cast<std::size_t>(Dimension());
  const double factor = MeshLengthFactor(project_.units);
  Mesh& mesh = NodeMesh();
  for (std::size_t k = 0; k < numbers.size(); ++k) {
    const double* const x = coordinates.data() + k * dimension;
    auto node = std::make_unique<Node>();
    node->number = numbers[k];
    node->dim = static_cast<int>(dimension);
    node->x = x[0] * factor;
    node->y = x[1] * factor;
    if (dimension == 3) node->z = x[2] * factor;
    mesh.nodes->Insert(numbers[k], std::move(node));
  }
  project_.nodesAsRead = project_.numNodes = mesh.nodes->Highest();
}

Mesh& ModelBuilder::MeshFor(ElemType type, int nodesPerElement) {
  for (const auto& mesh : project_.meshes)
    if (mesh->elemType == type && mesh->nnode == nodesPerElement) return *mesh;
  const bool adopts = project_.meshes[0]->elemType == 0;
  if (!adopts && project_.meshes.size() == kMaxMeshes)
    Fatal("error: maximum number of meshes is: ", kMaxMeshes, "\n");
  auto made = adopts ? nullptr : std::make_unique<Mesh>(*project_.meshes[0]);
  Mesh& mesh = adopts ? *project_.meshes[0] : *made;
  mesh.dimension = Dimension();
  mesh.elemType = type;
  mesh.nnode = nodesPerElement;
  mesh.SetFemviewType();
  if (made) project_.meshes.push_back(std::move(made));
  return mesh;
}

void ModelBuilder::CheckNewElements(const ElementRows& rows) const {
  const auto perElement = static_cast<std::size_t>(rows.nodesPerElement);
  if (project_.meshes.empty()) Fatal("error: list of nodes does not contain any node\n");
  if (rows.nodes.size() != rows.numbers.size() * perElement)
    Fatal("error: elements need ", perElement, " nodes each\n");
  if (rows.materials.size() != 1 && rows.materials.size() != rows.numbers.size())
    Fatal("error: elements need one material each, or one for all\n");
  if (rows.type == Tetrahedra && HasLoadsOrSupports(project_))
    Fatal("error: solids must be added before supports and loads\n");
  CheckNumbers(rows.numbers, "element");
  for (std::size_t k = 0; k < rows.numbers.size(); ++k) {
    const int number = rows.numbers[k];
    if (IsInUse(project_, number))
      Fatal("error: All elements must have different number. Check elm num: ", number, "\n");
    const auto nodes = rows.nodes.subspan(k * perElement, perElement);
    for (const int node : nodes)
      if (project_.meshes[0]->nodes->Get(node) == nullptr)
        Fatal("error: element: ", number, " has an unknown node: ", node, "\n");
    if (perElement == 2 && nodes[0] == nodes[1])
      Fatal("error: element: ", number, " have both nodes equal\n");
  }
}

void ModelBuilder::AddElements(const ElementRows& rows) {
  error.Clear();
  CheckNewElements(rows);
  if (rows.numbers.empty()) return;
  isChanged_ = true;
  Mesh& mesh = MeshFor(rows.type, rows.nodesPerElement);
  for (std::size_t k = 0; k < rows.numbers.size(); ++k) {
    auto elem = std::make_unique<Elem>(&mesh, mesh.nnode);
    elem->number = rows.numbers[k];
    elem->materialNumber = rows.materials[rows.materials.size() == 1 ? 0 : k];
    for (int i = 0; i < mesh.nnode; ++i)
      elem->nodes[i] = mesh.nodes->Get(
          rows.nodes[k * static_cast<std::size_t>(mesh.nnode) + static_cast<std::size_t>(i)]);
    mesh.elems.Insert(rows.numbers[k], std::move(elem));
  }
  if (mesh.elemType == Tetrahedra) project_.dofsPerNode = 3;
  CountElements(mesh, rows.numbers.size());
}

void ModelBuilder::CountElements(const Mesh& mesh, std::size_t added) {
  for (std::size_t m = 0; m < project_.meshes.size(); ++m)
    if (project_.meshes[m].get() == &mesh) project_.numElements[m] += static_cast<int>(added);
}

void ModelBuilder::Check() {
  error.Clear();
  if (!project_.meshes.empty() && project_.meshes[0]->elemType == 0)
    Fatal("error: the model has no element\n");
  CheckProject(project_);
  int expected = 0;
  for (const auto [number, node] : *project_.meshes[0]->nodes)
    if (number != ++expected) Fatal("error: list of nodes does not contain all numbers\n");
}

}  // namespace kestol
