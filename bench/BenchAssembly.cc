// How many beams a second go into a global matrix: local axes, stiffness, turn to global axes, and
// the three node blocks into the solver.
#include <benchmark/benchmark.h>

#include <memory>

#include "algebra/SkyLine.h"
#include "algebra/SparseSolver.h"
#include "analysis/BeamElement.h"
#include "analysis/MeshPart.h"
#include "input/Project.h"

namespace kestol {

namespace {

/// A square grid of beams, `side` nodes wide.
std::unique_ptr<Project> Grid(int side, ProblemType problemType) {
  auto project = std::make_unique<Project>(100);
  project->problemType = problemType;
  project->dofsPerNode = problemType == Plane ? 3 : 6;
  project->numNodes = side * side;
  auto material = std::make_unique<Material>();
  material->E1 = material->A = material->Iz = material->Iy = material->Gxy = material->J = 1.0;
  project->materials.Insert(1, std::move(material));

  project->meshes.push_back(std::make_unique<Mesh>());
  Mesh& mesh = *project->meshes[0];
  mesh.elemType = Linear;
  mesh.nnode = 2;
  const auto numberOf = [side](int i, int j) { return side * j + i + 1; };
  for (int j = 0; j < side; ++j)
    for (int i = 0; i < side; ++i) {
      auto node = std::make_unique<Node>();
      node->number = numberOf(i, j);
      node->x = i + 0.1 * j;
      node->y = j;
      mesh.nodes->Insert(numberOf(i, j), std::move(node));
    }
  int number = 0;
  const auto addBeam = [&](int a, int b) {
    auto elem = std::make_unique<Elem>(&mesh, 2);
    elem->nodes[0] = mesh.nodes->Get(a);
    elem->nodes[1] = mesh.nodes->Get(b);
    elem->number = ++number;
    elem->materialNumber = 1;
    mesh.elems.Insert(number, std::move(elem));
  };
  for (int j = 0; j < side; ++j)
    for (int i = 0; i < side; ++i) {
      if (i + 1 < side) addBeam(numberOf(i, j), numberOf(i + 1, j));
      if (j + 1 < side) addBeam(numberOf(i, j), numberOf(i, j + 1));
    }
  return project;
}

template <class Solver>
void AssembleGrid(benchmark::State& state, ProblemType problemType) {
  const auto project = Grid(static_cast<int>(state.range(0)), problemType);
  const Mesh& mesh = *project->meshes[0];
  const int dofs = project->dofsPerNode;
  Solver K(project->numNodes * dofs);
  std::int64_t beams = 0;
  for (const auto [number, elem] : mesh.elems) {
    K.AddNodePair(elem->nodes[0]->number, elem->nodes[1]->number, dofs);
    ++beams;
  }
  K.Allocate(dofs);
  for (auto _ : state) {
    NodeBlocks blocks(*project, K, BlockAxes::Support);
    AddBeamStiffness(*project, mesh, blocks);
  }
  state.SetItemsProcessed(state.iterations() * beams);
}

void PlaneIntoSkyLine(benchmark::State& state) {
  AssembleGrid<SkyLine>(state, Plane);
}
void PlaneIntoSparse(benchmark::State& state) {
  AssembleGrid<SparseSolver>(state, Plane);
}
void SpaceIntoSkyLine(benchmark::State& state) {
  AssembleGrid<SkyLine>(state, Space);
}
void SpaceIntoSparse(benchmark::State& state) {
  AssembleGrid<SparseSolver>(state, Space);
}

// Sides: the assembly takes time in proportion to the number of beams.
BENCHMARK(PlaneIntoSkyLine)->Arg(20)->Arg(60);
BENCHMARK(PlaneIntoSparse)->Arg(20)->Arg(60)->Arg(200);
BENCHMARK(SpaceIntoSkyLine)->Arg(20)->Arg(40);
BENCHMARK(SpaceIntoSparse)->Arg(20)->Arg(60)->Arg(120);

}  // namespace

}  // namespace kestol
