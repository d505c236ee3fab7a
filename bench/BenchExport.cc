// The writers of kestol-export, into files of the temporary directory: real time, since the
// system's part counts.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <filesystem>
#include <string>

#include "analysis/BeamElement.h"
#include "analysis/MeshPart.h"
#include "programs/common/OutputFile.h"
#include "programs/common/ResultGrid.h"
#include "programs/common/ResultJson.h"
#include "tests/support/SmallModel.h"

namespace kestol {

namespace {

std::string FileName() {
  return std::filesystem::temp_directory_path() / "kestol_bench_export.vtu";
}

// Anything that has all its digits.
ReaVecT Values(int count, double size) {
  ReaVecT values(count);
  for (int i = 1; i <= count; ++i) values(i) = size * std::sin(0.1 * i);
  return values;
}

void Complete(SmallModel& model) {
  const int equations = model.project.numNodes * model.project.dofsPerNode;
  model.results.displacements = Values(equations, 1e-3);
  model.results.loads = Values(equations, 1e3);
  model.results.internalForces = Values(equations, 1e3);
}

// A block of n x n x n cells of six tetrahedra, held at its lowest nodes.
SmallModel Block(int n) {
  SmallModel model(Space, 3);
  model.AddMesh(Tetrahedra, 4);
  const auto at = [n](int i, int j, int k) { return (k * (n + 1) + j) * (n + 1) + i + 1; };
  for (int k = 0; k <= n; ++k)
    for (int j = 0; j <= n; ++j)
      for (int i = 0; i <= n; ++i) model.AddNode(at(i, j, k), i, j, k);
  constexpr int kPath[7][3] = {
      {1, 0, 0},
      {1, 1, 0},
      {0, 1, 0},
      {0, 1, 1},
      {0, 0, 1},
      {1, 0, 1},
      {1, 0, 0}
  };
  int number = 0;
  for (int k = 0; k < n; ++k)
    for (int j = 0; j < n; ++j)
      for (int i = 0; i < n; ++i)
        for (int r = 0; r < 6; ++r) {
          const auto &a = kPath[r], &b = kPath[r + 1];
          model.AddElem(++number, {at(i, j, k), at(i + a[0], j + a[1], k + a[2]),
                                   at(i + b[0], j + b[1], k + b[2]), at(i + 1, j + 1, k + 1)});
        }
  model.AddMaterial(1);
  model.Size();
  Complete(model);
  model.results.meshes[0].local = Values(6 * number, 1e3);
  model.results.nodalStresses = Values(6 * model.project.numNodes, 1e3);
  for (int j = 0; j <= n; ++j)
    for (int i = 0; i <= n; ++i) model.Support(at(i, j, 0), {1.0, 2.0, 3.0});
  return model;
}

// Beams on a spiral in space: no two have the same direction. Every second one carries a load.
SmallModel Frame(int beams) {
  SmallModel model(Space, 6);
  model.AddMesh(Linear, 2);
  for (int i = 1; i <= beams + 1; ++i)
    model.AddNode(i, i * std::cos(0.01 * i), i * std::sin(0.01 * i), 0.2 * i);
  for (int i = 1; i <= beams; ++i) model.AddElem(i, {i, i + 1});
  for (int i = 2; i <= beams; i += 2)
    model.Load(i, GlobalPressure, {0.0, 0.0, -500.0, 0.0, 0.0, 0.0});
  model.AddMaterial(1);
  model.Size();
  Complete(model);
  model.results.meshes[0].local = ReaVecT(beams * 12);
  BeamStrengths(model.project, *model.project.meshes[0], model.results.displacements,
                model.results.meshes[0].local);
  return model;
}

template <class Write>
void Time(benchmark::State& state, Write write) {
  std::uintmax_t bytes = 0;
  for (auto _ : state) {
    write();
    state.PauseTiming();
    bytes = std::filesystem::file_size(FileName());
    std::filesystem::remove(FileName());
    state.ResumeTiming();
  }
  state.counters["MB"] = static_cast<double>(bytes) * 1e-6;
}

void SolidGrid(benchmark::State& state) {
  const SmallModel model = Block(static_cast<int>(state.range(0)));
  Time(state, [&] {
    OutputFile file(FileName(), {});
    const ResultData data(model.project, model.results);
    WriteVtu(file, ResultGrid(data).Grid(), VtuEncoding::Raw);
    file.Commit();
  });
}

void BeamTables(benchmark::State& state) {
  const SmallModel model = Frame(static_cast<int>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(TableOfBeams(model.project, model.results, 21));
}

template <class Grid>
void BeamGrid(benchmark::State& state) {
  const SmallModel model = Frame(static_cast<int>(state.range(0)));
  const ResultData data(model.project, model.results, 21);
  Time(state, [&] {
    OutputFile file(FileName(), {});
    WriteVtu(file, Grid(data).Grid(), VtuEncoding::Raw);
    file.Commit();
  });
}

void BeamJson(benchmark::State& state) {
  const SmallModel model = Frame(static_cast<int>(state.range(0)));
  const ResultData data(model.project, model.results, 21);
  Time(state, [&] {
    OutputFile file(FileName(), {});
    WriteResultJson(file, "deck", data);
    file.Commit();
  });
}

BENCHMARK(SolidGrid)->Arg(100)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BeamTables)->Arg(100000)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BeamGrid<ResultGrid>)->Arg(100000)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BeamGrid<DiagramGrid>)->Arg(100000)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BeamJson)->Arg(100000)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace kestol
