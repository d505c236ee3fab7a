#include "kestol/LoadedHinges.h"

#include <algorithm>

#include "analysis/BeamElement.h"
#include "input/Project.h"

namespace kestol {

std::optional<LoadedHinge> LoadedHingeOf(const Project& project, BeamElement& beam,
                                         const Elem& elem) {
  if (project.EndCodeOf(elem.number) != HingeAtEnd1 || !beam.HasLoads(elem)) return std::nullopt;
  beam.SetAxes(elem);
  beam.SetLoads();
  const bool across = std::any_of(beam.loads.begin(), beam.loads.end(),
                                  [](const BeamLoad& q) { return q.qy != 0.0 || q.qz != 0.0; });
  if (!across) return std::nullopt;
  return LoadedHinge{elem.number, project.ExternalNumber(elem.nodes[0]->number),
                     project.ExternalNumber(elem.nodes[1]->number)};
}

std::vector<LoadedHinge> LoadedHinges(const Project& project) {
  std::vector<LoadedHinge> found;
  if (project.endCodes.empty()) return found;
  BeamElement beam(project);
  for (const auto& mesh : project.meshes) {
    if (mesh->elemType != Linear) continue;
    for (const auto [number, elem] : mesh->elems)
      if (const auto hinge = LoadedHingeOf(project, beam, *elem)) found.push_back(*hinge);
  }
  return found;
}

std::string TextOf(const LoadedHinge& hinge) {
  const std::string first = std::to_string(hinge.node), second = std::to_string(hinge.otherNode);
  return "element " + std::to_string(hinge.element) + " is loaded and hinged at its first node " +
         first + ": write \"" + second + ' ' + first + '"';
}

}  // namespace kestol
