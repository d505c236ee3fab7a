#include "programs/common/ResultData.h"

#include "analysis/Assembly.h"
#include "analysis/Hinges.h"
#include "main/ErrorChannel.h"

namespace kestol {

namespace {

bool HasElements(const Project& project, int elemType) {
  for (const auto& mesh : project.meshes)
    if (mesh->elemType == elemType && mesh->elems.Highest() > 0) return true;
  return false;
}

}  // namespace

ResultData::ResultData(const Project& model, const Results& answer, int stations)
    : project(model),
      results(answer),
      solved(answer.displacements.n > 0),
      units(UnitNamesOf(model.units)),
      beams(solved ? TableOfBeams(model, answer, stations > 0 ? stations : DeckStations(model))
                   : GeometryOfBeams(model)),
      hasShells(HasElements(model, Triangle)),
      hasSolids(HasElements(model, Tetrahedra)) {
  nodes.reserve(static_cast<std::size_t>(model.numNodes));
  placeOfIndex.resize(static_cast<std::size_t>(model.numNodes) + 1);
  for (const auto [number, node] : *model.meshes.at(0)->nodes) {
    placeOfIndex[static_cast<std::size_t>(node->number)] = static_cast<std::int32_t>(nodes.size());
    nodes.push_back(node);
  }
}

int ResultData::NumberOf(const Node& node) const {
  const int number = project.ExternalNumber(node.number);
  return number > project.nodesAsRead ? 0 : number;
}

std::string ResultData::Label(const std::string& name, const std::string& unit) const {
  if (!units.Known() || unit.empty()) return name;
  std::string label = name + " [";
  for (const char c : unit) {
    if (c == 'F')
      label += units.force;
    else if (c == 'L')
      label += units.length;
    else if (c == 'P')
      label += units.pressure;
    else
      label += c;
  }
  return label + ']';
}

Results LoadsOfUnsolved(Project& project) {
  for (const auto& mesh : project.meshes)
    for (const auto [number, elem] : mesh->elems)
      for (int i = 0; i < elem->nnode; ++i)
        if (elem->nodes[i] == nullptr)
          Fatal("error: element: ", elem->number, " has an unknown node\n");
  if (project.hasHinges) PrepareHinges(project);
  Results results;
  results.loads = LoadsOfDeck(project);
  return results;
}

}  // namespace kestol
