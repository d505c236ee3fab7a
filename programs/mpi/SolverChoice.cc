#include "programs/mpi/SolverChoice.h"

#include <algorithm>

#include "input/Project.h"

namespace kestol {

namespace {

Family FamilyOfMesh(const Mesh& mesh) {
  if (mesh.elemType == Linear) return Family::Frames;
  if (mesh.elemType == Triangle) return Family::Shells;
  return mesh.nnode == 4 ? Family::Solids4 : Family::Solids10;
}

}  // namespace

Family FamilyOf(const Project& project) {
  Family family = Family::Frames;
  for (const auto& mesh : project.meshes) family = std::max(family, FamilyOfMesh(*mesh));
  return family;
}

MpiSolver FasterSolver(Family family, std::int64_t equations) {
  // The largest system that is factorised, by family; bench/README.md has the times.
  constexpr std::int64_t kLargestDirect[] = {200'000, 5'000'000, 50'000, 250'000};
  return equations <= kLargestDirect[static_cast<int>(family)] ? MpiSolver::Direct
                                                               : MpiSolver::Gamg;
}

const char* NameOf(MpiSolver solver) {
  constexpr const char* kNames[] = {"auto", "gamg", "direct", "hypre"};
  return kNames[static_cast<int>(solver)];
}

}  // namespace kestol
