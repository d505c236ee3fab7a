// The writers of results, into a file of the temporary directory.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <filesystem>
#include <string>

#include "analysis/BeamElement.h"
#include "analysis/MeshPart.h"
#include "output/OutputText.h"
#include "output/VemoFiles.h"
#include "tests/support/SmallModel.h"

namespace kestol {

namespace {

std::string FileName() {
  return std::filesystem::temp_directory_path() / "kestol_bench_output.txt";
}

// Anything that has all its digits.
ReaVecT Values(int count, double size) {
  ReaVecT values(count);
  for (int i = 1; i <= count; ++i) values(i) = size * std::sin(0.1 * i);
  return values;
}

// Beams on a spiral: no two have the same direction. Every second one carries its load.
SmallModel Frame(ProblemType problemType, int beams) {
  const int dofs = problemType == Plane ? 3 : 6;
  SmallModel model(problemType, dofs);
  model.AddMesh(Linear, 2);
  for (int i = 1; i <= beams + 1; ++i) {
    const double angle = 0.01 * i;
    model.AddNode(i, i * std::cos(angle), i * std::sin(angle),
                  problemType == Plane ? 0.0 : 0.2 * i);
  }
  for (int i = 1; i <= beams; ++i) model.AddElem(i, {i, i + 1});
  for (int i = 2; i <= beams; i += 2)
    model.Load(i, GlobalPressure, {0.0, 0.0, -500.0, 0.0, 0.0, 0.0});
  model.AddMaterial(1);
  model.Size();
  model.results.displacements = Values((beams + 1) * dofs, 1e-3);
  model.results.meshes[0].local = ReaVecT(beams * 2 * dofs);
  BeamStrengths(model.project, *model.project.meshes[0], model.results.displacements,
                model.results.meshes[0].local);
  model.Support(1, {1.0, 2.0, 3.0});
  return model;
}

// A strip of triangles on a curved surface.
SmallModel Shell(int triangles) {
  SmallModel model(Space, 6);
  model.AddMesh(Triangle, 3);
  for (int i = 1; i <= triangles + 2; ++i) model.AddNode(i, i / 2, i % 2, std::sin(0.01 * (i / 2)));
  for (int i = 1; i <= triangles; ++i) model.AddElem(i, {i, i + 1 + i % 2, i + 2 - i % 2});
  model.AddMaterial(1);
  model.Size();
  model.results.displacements = Values((triangles + 2) * 6, 1e-3);
  model.results.meshes[0].local = Values(triangles * 8, 1e3);
  return model;
}

template <class Write>
void Run(benchmark::State& state, Write write) {
  std::int64_t bytes = 0;
  for (auto _ : state) {
    OutputText output(FileName());
    write(output);
    output.Close();
    // A file of its own each time: truncating one that still goes to disk waits for the disk.
    state.PauseTiming();
    bytes += static_cast<std::int64_t>(std::filesystem::file_size(FileName()));
    std::filesystem::remove(FileName());
    state.ResumeTiming();
  }
  state.SetBytesProcessed(bytes);
}

void RunVemo(benchmark::State& state, const SmallModel& model) {
  Run(state,
      [&](OutputText& output) { WriteVemoFiles(model.project, model.results, output, nullptr); });
}

void PlaneBeams(benchmark::State& state) {
  RunVemo(state, Frame(Plane, static_cast<int>(state.range(0))));
}
void SpaceBeams(benchmark::State& state) {
  RunVemo(state, Frame(Space, static_cast<int>(state.range(0))));
}
void Triangles(benchmark::State& state) {
  RunVemo(state, Shell(static_cast<int>(state.range(0))));
}
void TextReport(benchmark::State& state) {
  const SmallModel model = Frame(Space, static_cast<int>(state.range(0)));
  Run(state, [&](OutputText& output) { model.project.WriteResults(model.results, output); });
}

BENCHMARK(PlaneBeams)->Arg(660)->Unit(benchmark::kMillisecond);
BENCHMARK(SpaceBeams)->Arg(20000)->Unit(benchmark::kMillisecond);
BENCHMARK(Triangles)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(TextReport)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace kestol
