#include "input/ProjectCheck.h"

#include <algorithm>

#include "input/Project.h"
#include "main/ErrorChannel.h"

namespace kestol {

namespace {

// Finds the lowest number of the earliest mesh that repeats one of the meshes before it.
void CheckElementNumbers(const Project& project) {
  for (auto mesh = project.meshes.begin(); mesh != project.meshes.end(); ++mesh) {
    for (auto [number, elem] : (*mesh)->elems) {
      const bool repeated = std::any_of(
          project.meshes.begin(), mesh,
          [n = number](const auto& earlier) { return earlier->elems.Get(n) != nullptr; });
      if (repeated)
        Fatal("error: All elements must have different number. Check elm num: ", number, "\n");
    }
  }
}

void CheckTetrahedra(Project& project) {
  const auto count = std::count_if(project.meshes.begin(), project.meshes.end(),
                                   [](const auto& mesh) { return mesh->elemType == Tetrahedra; });
  if (count == 0) return;
  if (count != static_cast<std::ptrdiff_t>(project.meshes.size()))
    Fatal("error: Element tetrahedra cannot be mixed with any other element type");
  project.DoSmoothing = true;
  project.dofsPerNode = 3;
}

}  // namespace

void CheckProject(Project& project) {
  if (project.meshes.empty()) Fatal("error: it is necessary at least one mesh\n");
  CheckElementNumbers(project);
  CheckTetrahedra(project);
}

}  // namespace kestol
