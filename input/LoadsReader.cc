#include "input/LoadsReader.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

#include "input/LinePairs.h"
#include "input/NodeSections.h"
#include "input/Project.h"
#include "input/RecordList.h"
#include "input/Words.h"
#include "main/ErrorChannel.h"

namespace kestol {

namespace {

// --- nodal_point_loads ------------------------------------------------------------------------

Node& LoadedNode(Project& project, int nodeNumber) {
  Node* const node = FindNode(project, nodeNumber);
  if (node == nullptr) Fatal("error: Trying to assign Load to unknown node\n");
  return *node;
}

/// The factors that hold for the line: of all keys behind the components only units count.
UnitFactors TakeFactors(std::string_view text, int nodeNumber, const Units& units) {
  LinePairs pairs(text, units);
  while (pairs.Next()) {
  }
  if (pairs.KeyWithoutValue())
    Fatal("Not reading correctly the loads. -D- Number=", nodeNumber, "\n");
  return pairs.factors;
}

void AddNodalLoad(Node& node, const double* components, int n, UnitFactors factors) {
  if (!node.load) node.load = std::make_unique<ReaVecT>(n);
  // Deliberate: the last half counts as moments, so does the third force of a solid model.
  for (int i = 0; i < std::min(n, node.load->n); ++i) {
    const double factor = i > (n - 1) / 2 ? factors.force * factors.length : factors.force;
    (*node.load)(i + 1) += components[i] * factor;
  }
}

void ReadNodalLoad(Project& project, TextInput& input, int nodeNumber) {
  Node& node = LoadedNode(project, nodeNumber);
  const std::optional<std::string_view> line = ReadRestOfLine(input);
  if (!line) Fatal("Not reading correctly the loads A. Number=", nodeNumber, "\n");

  std::string_view text = *line;
  double components[6];
  const int n = project.dofsPerNode;
  if (!TakeReals(text, components, n)) {
    if (n == 3) Fatal("Not reading correctly the loads B. Number=", nodeNumber, "\n");
    Fatal("Not reading correctly the loads C. Number=", nodeNumber, "\n");
  }
  AddNodalLoad(node, components, n, TakeFactors(text, nodeNumber, project.units));
}

// --- distributed loads ------------------------------------------------------------------------

/// The first mesh that has an element of this number.
const Mesh& MeshOfElement(const Project& project, int elemNumber) {
  for (const auto& mesh : project.meshes)
    if (mesh->elems.Get(elemNumber) != nullptr) return *mesh;
  Fatal("error: trying to assign load to element number ", elemNumber, " and it does not exist\n");
}

/// Puts the load behind those that its element has already.
void ChainLoad(Plex<PreassureLT>& loads, int elemNumber, std::unique_ptr<PreassureLT> load) {
  PreassureLT* last = loads.Get(elemNumber);
  if (last == nullptr) {
    loads.Insert(elemNumber, std::move(load));
    return;
  }
  while (last->next) last = last->next.get();
  last->next = std::move(load);
}

void ReadPressureLoad(LoadKind kind, Project& project, TextInput& input, int elemNumber) {
  const Mesh& mesh = MeshOfElement(project, elemNumber);
  auto load = std::make_unique<PreassureLT>(kind);
  load->ReadYourLoad(elemNumber, project.problemType, ReadRestOfLine(input).value_or(""),
                     project.units, mesh.elemType);
  ChainLoad(project.loads, elemNumber, std::move(load));
}

}  // namespace

void ReadNodalLoads(Project& project, TextInput& input, SourceMap* map) {
  const RecordList list{input, map, RecordKind::NodalLoad, input.RecordOffset()};
  ReadRecords(list, [&](int nodeNumber) { ReadNodalLoad(project, input, nodeNumber); });
  TakeEnd(list);
}

int ReadPressureLoads(std::string_view keyword, Project& project, TextInput& input,
                      SourceMap* map) {
  const auto* const section =
      std::find_if(std::begin(kLoadSections), std::end(kLoadSections),
                   [keyword](const LoadSection& s) { return s.keyword == keyword; });
  if (section == std::end(kLoadSections)) return -1;

  const RecordList list{input, map, RecordKind::ElementLoad, input.RecordOffset()};
  ReadRecords(list,
              [&](int elemNumber) { ReadPressureLoad(section->kind, project, input, elemNumber); });
  TakeEnd(list);
  return 0;
}

}  // namespace kestol
