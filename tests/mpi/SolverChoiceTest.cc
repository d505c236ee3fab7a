// What `--solver auto` takes.
#include <gtest/gtest.h>

#include <memory>

#include "input/Project.h"
#include "programs/mpi/SolverChoice.h"

namespace kestol {

namespace {

void AddMesh(Project& project, ElemType type, int nnode) {
  project.meshes.push_back(std::make_unique<Mesh>());
  project.meshes.back()->elemType = type;
  project.meshes.back()->nnode = nnode;
}

TEST(FasterSolver, FactorisesUpToTheSizesOfTheManual) {
  struct Row {
    Family family;
    std::int64_t largest;
  };
  for (const auto& [family, largest] : {
           Row{Family::Frames,   200'000  },
           Row{Family::Shells,   5'000'000},
           Row{Family::Solids4,  50'000   },
           Row{Family::Solids10, 250'000  }
  }) {
    EXPECT_EQ(FasterSolver(family, largest), MpiSolver::Direct) << largest;
    EXPECT_EQ(FasterSolver(family, largest + 1), MpiSolver::Gamg) << largest;
  }
}

TEST(FamilyOf, IsTheMostDemandingOfAllMeshes) {
  Project project(100);
  AddMesh(project, Linear, 2);
  EXPECT_EQ(FamilyOf(project), Family::Frames);
  AddMesh(project, Triangle, 3);
  EXPECT_EQ(FamilyOf(project), Family::Shells);
  AddMesh(project, Tetrahedra, 10);
  EXPECT_EQ(FamilyOf(project), Family::Solids10);
  AddMesh(project, Tetrahedra, 4);
  EXPECT_EQ(FamilyOf(project), Family::Solids10);
}

}  // namespace

}  // namespace kestol
