#include "kestol/combine/LoadedHinges.h"

#include <algorithm>

#include "analysis/BeamElement.h"
#include "input/Project.h"

namespace kestol {

std::vector<LoadedHinge> LoadedHinges(const Project& project) {
  std::vector<LoadedHinge> found;
  if (project.rotuleCodes.empty()) return found;
  BeamElement beam(project);
  for (const auto& mesh : project.meshes) {
    if (mesh->elemType != Linear) continue;
    for (const auto [number, elem] : mesh->elems) {
      if (project.EndCodeOf(number) != HingeAtEnd1 || !beam.HasLoads(*elem)) continue;
      beam.TakeAxes(*elem);
      beam.TakeLoads();
      const bool across = std::any_of(beam.loads.begin(), beam.loads.end(),
                                      [](const BeamLoad& q) { return q.qy != 0.0 || q.qz != 0.0; });
      if (across)
        found.push_back(
            {number, mesh->ExternalNumber(elem->nodes[0]), mesh->ExternalNumber(elem->nodes[1])});
    }
  }
  return found;
}

}  // namespace kestol
