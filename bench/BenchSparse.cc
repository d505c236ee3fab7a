// Times the sparse solver's parts on grids whose nodes are coupled with all nodes around them. The
// arguments are the degrees per node, the nodes along the edges and the layers: a solid, a thick
// solid of six degrees, a shell. Bandwidths count 12 bytes per stored entry: a double and an index.
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <vector>

#include "algebra/ILUPreconditioner.h"
#include "algebra/ReaVecT.h"
#include "algebra/SparseKernels.h"
#include "algebra/SparseSolver.h"
#include "tests/support/GridModel.h"

namespace kestol {

namespace {

constexpr double kBytesPerEntry = 12.0;

GridModel Model(const benchmark::State& state) {
  const int edge = static_cast<int>(state.range(1));
  return {edge, edge, static_cast<int>(state.range(2)), static_cast<int>(state.range(0))};
}

/// The assembled matrix of a model, its lower plane held.
struct Ready : SparseSolver {
  explicit Ready(const GridModel& model) : SparseSolver(model.NumDegrees()) {
    ReaVecT rhs(n);
    model.Structure(*this);
    model.Assemble(*this);
    model.Hold(*this, 0.0, rhs);
  }
};

std::vector<double> Wave(int n) {
  std::vector<double> wave(n);
  for (int i = 0; i < n; ++i) wave[i] = 1.0 + i % 7;
  return wave;
}

void CountEntries(benchmark::State& state, const SparseMatrix& A) {
  state.counters["GB/s"] = benchmark::Counter(A.nnz * kBytesPerEntry / 1e9,
                                              benchmark::Counter::kIsIterationInvariantRate);
}

void BM_Product(benchmark::State& state) {
  const Ready K(Model(state));
  const std::vector<double> x = Wave(K.n);
  std::vector<double> y(K.n);
  for (auto _ : state) {
    Multiply(K.Matrix(), x.data(), y.data());
    benchmark::ClobberMemory();
  }
  CountEntries(state, K.Matrix());
}

void BM_TriangularSolves(benchmark::State& state) {
  const Ready K(Model(state));
  const ILUPreconditioner M(K.Matrix());
  const std::vector<double> r = Wave(K.n);
  std::vector<double> z(K.n);
  for (auto _ : state) {
    M.Solve(r.data(), z.data());
    benchmark::ClobberMemory();
  }
  CountEntries(state, K.Matrix());
}

void BM_IncompleteFactors(benchmark::State& state) {
  const Ready K(Model(state));
  for (auto _ : state) benchmark::DoNotOptimize(ILUPreconditioner(K.Matrix()).IsPositive());
  CountEntries(state, K.Matrix());
}

void BM_Structure(benchmark::State& state) {
  const GridModel model = Model(state);
  for (auto _ : state) {
    SparseSolver K(model.NumDegrees());
    model.Structure(K);
  }
}

void BM_Assembly(benchmark::State& state) {
  const GridModel model = Model(state);
  SparseSolver K(model.NumDegrees());
  model.Structure(K);
  long added = 0;
  for (auto _ : state) added += model.Assemble(K);
  state.counters["blocks/s"] =
      benchmark::Counter(static_cast<double>(added), benchmark::Counter::kIsRate);
}

/// The whole run; also the peak memory of the process per stored entry, if this is all that it did.
void BM_Solve(benchmark::State& state) {
  const GridModel model = Model(state);
  double entries = 0.0;
  for (auto _ : state) {
    SparseSolver K(model.NumDegrees());
    ReaVecT rhs(model.NumDegrees());
    rhs.Fill(1.0);
    model.Structure(K);
    model.Assemble(K);
    model.Hold(K, 0.0, rhs);
    if (K.Solve(rhs, nullptr) != 0) state.SkipWithError("not solved");
    entries = K.Matrix().nnz;
  }
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  state.counters["bytes/entry"] = static_cast<double>(usage.ru_maxrss) * 1024 / entries;
}

void Grids(benchmark::internal::Benchmark* b) {
  b->Args({3, 47, 47})->Args({6, 37, 37})->Args({6, 224, 1})->Unit(benchmark::kMillisecond);
}

BENCHMARK(BM_Product)->Apply(Grids);
BENCHMARK(BM_TriangularSolves)->Apply(Grids);
BENCHMARK(BM_IncompleteFactors)->Apply(Grids);
BENCHMARK(BM_Structure)->Apply(Grids);
BENCHMARK(BM_Assembly)->Apply(Grids);
BENCHMARK(BM_Solve)->Apply(Grids)->Iterations(1);

}  // namespace

}  // namespace kestol
