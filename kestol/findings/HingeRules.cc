#include <map>
#include <optional>
#include <string>
#include <vector>

#include "analysis/BeamElement.h"
#include "analysis/Hinges.h"
#include "kestol/LoadedHinges.h"
#include "kestol/findings/Geometry.h"
#include "kestol/findings/Inspection.h"
#include "kestol/findings/ModelRules.h"
#include "main/ErrorChannel.h"

namespace kestol {

namespace {

/// None too for a beam that the solver will refuse.
std::optional<LoadedHinge> HingeOf(const Project& project, BeamElement& beam, const Elem& elem) {
  try {
    return LoadedHingeOf(project, beam, elem);
  } catch (const FatalError&) {
    error.Clear();
    return std::nullopt;
  }
}

}  // namespace

void FindFirstHinges(Inspection& deck) {
  Project& project = deck.project;
  if (!project.hasHinges || project.meshes.empty()) return;
  PrepareHinges(project);
  BeamElement beam(project);
  ForEachSoundElement(deck, project, [&](const Mesh& mesh, const Elem& elem) {
    if (mesh.elemType != Linear) return;
    const std::optional<LoadedHinge> hinge = HingeOf(project, beam, elem);
    if (!hinge) return;
    Finding& finding =
        deck.Add(deck.PlaceOfRecord(RecordKind::Element, elem.number), TextOf(*hinge));
    finding.elements = {elem.number};
    finding.nodes = {hinge->node};
  });
}

void FindSharedHinges(Inspection& deck) {
  const Project& project = deck.project;
  if (!project.hasHinges || project.meshes.empty()) return;
  // Beams in the order in which they claim a node: the first keeps it.
  std::map<int, std::vector<int>> beams;
  for (const auto& mesh : project.meshes) {
    if (mesh->nnode != 2) continue;
    for (const auto [number, elem] : mesh->elems)
      for (int i = 0; i < 2 && !deck.IsSpoilt(RecordKind::Element, number); ++i)
        if (elem->nodes[i] != nullptr && elem->nodes[i]->isHinge)
          beams[elem->nodes[i]->number].push_back(number);
  }
  for (const auto& [node, around] : beams) {
    if (around.size() < 3 || deck.IsSpoilt(RecordKind::Hinge, node)) continue;
    const std::vector<int> released(around.begin() + 1, around.end());
    Finding& finding =
        deck.Add(deck.PlaceOfRecord(RecordKind::Hinge, node),
                 "hinge at node " + std::to_string(node) + ": elements " + ListText(released) +
                     " are released, element " + std::to_string(around[0]) + " keeps the node");
    finding.nodes = {node};
    finding.elements = around;
  }
}

}  // namespace kestol
