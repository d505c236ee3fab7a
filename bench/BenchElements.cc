// How many shell and solid elements a second: their matrices alone, into each solver, strengths,
// and what prepares and follows them. The argument is the number of cells along an edge.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "algebra/SkyLine.h"
#include "algebra/SparseSolver.h"
#include "analysis/Counts.h"
#include "analysis/ElementRoutines.h"
#include "analysis/MeshPart.h"
#include "analysis/PointLayout.h"
#include "analysis/ShellConversion.h"
#include "analysis/ShellNormals.h"
#include "analysis/Smoothing.h"
#include "tests/support/MeshDeck.h"
#include "tests/support/RunDeck.h"

namespace kestol {

namespace {

/// A solver that drops what it is handed.
class DroppingSolver : public StiffnessMatrix {
public:
  explicit DroppingSolver(int n) : n_(n) {}
  int NumDegrees() const override { return n_; }
  void AddNodePair(int, int, int) override {}
  void Allocate(int) override {}
  double& Entry(int, int) override { return entry_; }
  void SetZero() override {}
  void AddBlock(int, int, const Matriu& block) override { benchmark::DoNotOptimize(block.begin()); }
  int Factorise(std::ostream*) override { return 0; }
  int Substitute(ReaVecT&, std::ostream*) override { return 0; }
  void Prescribe(int, double, ReaVecT&) override {}
  double RowTimesVector(int, const ReaVecT&) const override { return 0.0; }
  void Times(const ReaVecT&, ReaVecT&) const override {}
  void ScaleAndShift(const ReaVecT&, double) override {}
  void Print(std::ostream&) const override {}
  void CopyFromYouToMat(Matriu&) const override {}
  void WriteForVemo(std::ostream&) const override {}
  void PrintInfo(std::ostream&) const override {}

private:
  int n_;
  double entry_ = 0.0;
};

enum Family { Shell3, Shell6, Solid4, Solid10 };

/// A shallow dome of triangles, or a cube of tetrahedra, as read.
std::unique_ptr<SolvedProject> Model(Family family, int cells) {
  if (family == Shell3 || family == Shell6) {
    const TestMesh dome = Grid(cells, cells, Cut::Right, [](double x, double y, double) {
      return Vector3{x, y, x * (1 - x) * y * (1 - y)};
    });
    return ReadDeck(DeckOf(dome, "DoSmoothing 0.1",
                           "materials\n1 E=2e11 nu=0.3 G=8e10 t=0.01\nend materials\n"));
  }
  const TestMesh cube =
      Box(cells, cells, cells, family == Solid10, [](double x, double y, double z) {
        return Vector3{x, y, z + 0.1 * x * y};
      });
  return ReadDeck(DeckOf(cube, "", "materials\n1 E=2e11 nu=0.3\nend materials\n"));
}

/// The same, ready for the assembly, with displacements that are not zero.
std::unique_ptr<SolvedProject> Prepared(Family family, int cells) {
  auto project = Model(family, cells);
  if (family == Shell6) ConvertMeshesTo6Nodes(*project);
  CheckNormals(*project);
  project->results.displacements.Resize(EquationCount(*project), 0.0);
  for (int i = 1; i <= project->results.displacements.n; ++i)
    project->results.displacements(i) = 1e-3 * (i % 7);
  return project;
}

template <class Solver>
void Stiffness(benchmark::State& state, Family family) {
  const auto project = Prepared(family, static_cast<int>(state.range(0)));
  const Mesh& mesh = *project->meshes[0];
  Solver K(EquationCount(*project));
  for (const auto [number, elem] : mesh.elems)
    for (int i = 0; i < elem->nnode; ++i)
      for (int j = i + 1; j < elem->nnode; ++j)
        K.AddNodePair(elem->nodes[i]->number, elem->nodes[j]->number, project->dofsPerNode);
  K.Allocate(project->dofsPerNode);
  for (auto _ : state) {
    NodeBlocks blocks(*project, K, BlockAxes::Support);
    RoutinesFor(mesh).addStiffness(*project, mesh, blocks);
  }
  state.SetItemsProcessed(state.iterations() * ElementCount(mesh));
}

void Alone(benchmark::State& state, Family family) {
  Stiffness<DroppingSolver>(state, family);
}
void IntoSkyLine(benchmark::State& state, Family family) {
  Stiffness<SkyLine>(state, family);
}
void IntoSparse(benchmark::State& state, Family family) {
  Stiffness<SparseSolver>(state, family);
}

ReaVecT NewValues(const Project& project, const Mesh& mesh) {
  return ReaVecT(VectorLength(ElementCount(mesh), PointLayoutOf(project, mesh).PerElement()));
}

void Strengths(benchmark::State& state, Family family) {
  const auto project = Prepared(family, static_cast<int>(state.range(0)));
  const Mesh& mesh = *project->meshes[0];
  const ElementRoutines& routines = RoutinesFor(mesh);
  ReaVecT values = NewValues(*project, mesh);
  for (auto _ : state) routines.values(*project, mesh, project->results.displacements, values);
  state.SetItemsProcessed(state.iterations() * ElementCount(mesh));
}

void Smoothing(benchmark::State& state, Family family) {
  const auto project = Prepared(family, static_cast<int>(state.range(0)));
  const Mesh& mesh = *project->meshes[0];
  Results& results = project->results;
  results.meshes[0].local = NewValues(*project, mesh);
  RoutinesFor(mesh).values(*project, mesh, results.displacements, results.meshes[0].local);
  for (auto _ : state) SmoothPointValues(*project, results);
  state.SetItemsProcessed(state.iterations() * ElementCount(mesh));
}

void Normals(benchmark::State& state, Family family) {
  const auto project = Prepared(family, static_cast<int>(state.range(0)));
  for (auto _ : state) CheckNormals(*project);
  state.SetItemsProcessed(state.iterations() * ElementCount(*project->meshes[0]));
}

void Conversion(benchmark::State& state) {
  std::int64_t elements = 0;
  for (auto _ : state) {
    state.PauseTiming();
    auto project = Model(Shell3, static_cast<int>(state.range(0)));
    elements = ElementCount(*project->meshes[0]);
    state.ResumeTiming();
    ConvertMeshesTo6Nodes(*project);
    state.PauseTiming();
    project.reset();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * elements);
}

// Element matrices alone, then with their places in each of the solvers.
BENCHMARK_CAPTURE(Alone, Shell3, Shell3)->Arg(100);
BENCHMARK_CAPTURE(Alone, Shell6, Shell6)->Arg(70);
BENCHMARK_CAPTURE(Alone, Solid4, Solid4)->Arg(15);
BENCHMARK_CAPTURE(Alone, Solid10, Solid10)->Arg(10);
BENCHMARK_CAPTURE(IntoSkyLine, Shell3, Shell3)->Arg(60);
BENCHMARK_CAPTURE(IntoSkyLine, Shell6, Shell6)->Arg(20);
BENCHMARK_CAPTURE(IntoSkyLine, Solid4, Solid4)->Arg(15);
BENCHMARK_CAPTURE(IntoSkyLine, Solid10, Solid10)->Arg(6);
BENCHMARK_CAPTURE(IntoSparse, Shell3, Shell3)->Arg(100);
BENCHMARK_CAPTURE(IntoSparse, Shell6, Shell6)->Arg(70);
BENCHMARK_CAPTURE(IntoSparse, Solid4, Solid4)->Arg(15);
BENCHMARK_CAPTURE(IntoSparse, Solid10, Solid10)->Arg(10);

// Linear in the number of elements: a doubled edge takes four (shells) or eight (solids) times as
// long, and the rate stays.
BENCHMARK_CAPTURE(Strengths, Shell3, Shell3)->Arg(100);
BENCHMARK_CAPTURE(Strengths, Shell6, Shell6)->Arg(70);
BENCHMARK_CAPTURE(Strengths, Solid4, Solid4)->Arg(15);
BENCHMARK_CAPTURE(Strengths, Solid10, Solid10)->Arg(10);
BENCHMARK_CAPTURE(Smoothing, Shell3, Shell3)->Arg(50)->Arg(100)->Arg(200);
BENCHMARK_CAPTURE(Smoothing, Shell6, Shell6)->Arg(50)->Arg(100);
BENCHMARK_CAPTURE(Smoothing, Solid4, Solid4)->Arg(10)->Arg(20);
BENCHMARK_CAPTURE(Smoothing, Solid10, Solid10)->Arg(8)->Arg(16);
BENCHMARK_CAPTURE(Normals, Shell3, Shell3)->Arg(50)->Arg(100)->Arg(200);
BENCHMARK_CAPTURE(Normals, Shell6, Shell6)->Arg(50)->Arg(100)->Arg(200);
BENCHMARK(Conversion)->Arg(50)->Arg(100)->Arg(200);

}  // namespace

}  // namespace kestol
