// The Txolesky factorisation and the substitutions: all kernels of this machine and the row by row
// statement, on bands, on wave fronts and on profiles of independent heights. FLOPS counts the
// additions and multiplications that the profile asks for, whatever is really done.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "algebra/ReaVecT.h"
#include "algebra/SkyLine.h"
#include "algebra/Txolesky.h"
#include "tests/support/Profiles.h"
#include "tests/support/Reference.h"

namespace kestol {

namespace {

/// Additions and multiplications of the profile alone: for every stored entry, the rows that its
/// two columns share.
double Operations(const std::vector<int>& heights) {
  double sum = 0.0;
  for (int j = 0; j < static_cast<int>(heights.size()); ++j) {
    const int top = j - heights[j] + 1;
    for (int i = top; i <= j; ++i) sum += 2.0 * (i - std::max(top, i - heights[i] + 1));
  }
  return sum;
}

using Factorise = std::function<int(const Profile&)>;

void Time(benchmark::State& state, const std::vector<int>& heights, const Factorise& factorise) {
  TestMatrix K = DominantMatrix(heights);
  const std::vector<double> original = K.entries;
  for (auto _ : state) {
    state.PauseTiming();
    std::copy(original.begin(), original.end(), K.entries.begin());
    state.ResumeTiming();
    if (factorise(K.View()) != 0) state.SkipWithError("failed");
  }
  state.counters["FLOPS"] =
      benchmark::Counter(Operations(heights), benchmark::Counter::kIsIterationInvariantRate);
}

void TimeSubstitution(benchmark::State& state, const std::vector<int>& heights) {
  TestMatrix K = DominantMatrix(heights);
  std::vector<double> f(heights.size(), 1.0);
  for (double* column : K.columns) column[0] = 1.0;
  for (auto _ : state) {
    SubstituteForward(K.View(), f.data());
    SubstituteBackward(K.View(), f.data());
    std::fill(f.begin(), f.end(), 1.0);
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * K.entries.size() * 16));
}

/// Rows of a large model as the driver asks for them: one in thirty degrees is prescribed, and its
/// reaction is wanted.
void TimeRows(benchmark::State& state) {
  const std::vector<int> heights = WaveFrontHeights(180, 3);
  const int n = static_cast<int>(heights.size());
  SkyLine K(n);
  for (int j = 1; j <= n; ++j) K.AddDegreePair(j - heights[j - 1] + 1, j);
  K.Allocate(3);
  for (int i = 1; i <= n; ++i) K.Entry(i, i) = 1.0;
  ReaVecT f(n);
  int rows = 0;
  for (auto _ : state) {
    for (int i = 1; i <= n; i += 30, ++rows) {
      benchmark::DoNotOptimize(K.RowTimesVector(i, f));
      K.Prescribe(i, 0.5, f);
    }
  }
  state.counters["rows"] = benchmark::Counter(rows, benchmark::Counter::kIsRate);
}
BENCHMARK(TimeRows)->Name("front/side=180/dofs=3/rows")->Unit(benchmark::kMillisecond);

enum class RowByRow { Timed, TooLong };
using Shape = std::vector<int> (*)(int, int);

std::vector<int> Spiked(int n, int /*unused*/) {
  return SpikedHeights(n);
}

struct Case {
  const char* name;
  Shape shape;
  int first, second;  ///< arguments of the shape
  RowByRow rowByRow = RowByRow::Timed;

  std::vector<int> Heights() const { return shape(first, second); }
};

const Case kCases[] = {
    {"band/n=1000/height=20",      BandHeights,      1000,  20,   RowByRow::Timed  },
    {"band/n=1000/height=60",      BandHeights,      1000,  60,   RowByRow::Timed  },
    {"band/n=50000/height=200",    BandHeights,      50000, 200,  RowByRow::Timed  },
    {"band/n=10000/height=1000",   BandHeights,      10000, 1000, RowByRow::Timed  },
    {"band/n=50000/height=1000",   BandHeights,      50000, 1000, RowByRow::TooLong},
    {"band/n=10000/height=3000",   BandHeights,      10000, 3000, RowByRow::Timed  },
    {"band/n=50000/height=3000",   BandHeights,      50000, 3000, RowByRow::TooLong},
    {"front/side=20/dofs=3",       WaveFrontHeights, 20,    3,    RowByRow::Timed  },
    {"front/side=40/dofs=6",       WaveFrontHeights, 40,    6,    RowByRow::Timed  },
    {"front/side=90/dofs=6",       WaveFrontHeights, 90,    6,    RowByRow::Timed  },
    {"random/n=1000/height=40",    RandomHeights,    1000,  40,   RowByRow::Timed  },
    {"random/n=20000/height=200",  RandomHeights,    20000, 200,  RowByRow::Timed  },
    {"random/n=10000/height=1000", RandomHeights,    10000, 1000, RowByRow::Timed  },
    {"spiked/n=5000",              Spiked,           5000,  0,    RowByRow::Timed  },
};

void Register() {
  for (const Case& aCase : kCases) {
    const auto add = [&](const std::string& how, const Factorise& factorise) {
      benchmark::RegisterBenchmark(
          (aCase.name + ("/" + how)).c_str(),
          [&aCase, factorise](benchmark::State& state) { Time(state, aCase.Heights(), factorise); })
          ->Unit(benchmark::kMillisecond);
    };
    for (const TileKernel& kernel : SupportedTileKernels())
      add(kernel.name, [&](const Profile& K) { return Txolesky(K, nullptr, kernel); });
    if (aCase.rowByRow == RowByRow::Timed)
      add("row by row", [](const Profile& K) { return reference::Txolesky(K, nullptr); });
    benchmark::RegisterBenchmark(
        (aCase.name + std::string("/substitution")).c_str(),
        [&aCase](benchmark::State& state) { TimeSubstitution(state, aCase.Heights()); })
        ->Unit(benchmark::kMillisecond);
  }
}

}  // namespace

}  // namespace kestol

int main(int argc, char** argv) {
  kestol::Register();
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
