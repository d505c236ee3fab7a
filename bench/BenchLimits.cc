// What this machine can do with one thread at most, to hold the solvers against: the bandwidth of
// its memory, and its rate of fused multiply-adds in a product of matrices whose factors come from
// the first cache.
#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include "algebra/LargePages.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace kestol {

namespace {

/// a = b + s c over arrays far larger than the caches; three doubles are moved per element, the
/// line that the store reads first not counted.
void BM_Triad(benchmark::State& state) {
  const std::size_t n = static_cast<std::size_t>(state.range(0)) << 17;
  LargeVector<double> a(n, 0.0), b(n, 1.0), c(n, 2.0);
  double s = 3.0;
  benchmark::DoNotOptimize(s);
  for (auto _ : state) {
    for (std::size_t i = 0; i < n; ++i) a[i] = b[i] + s * c[i];
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * n * 24));
}
BENCHMARK(BM_Triad)->ArgName("MiB_per_array")->Arg(64)->Arg(256)->Unit(benchmark::kMillisecond);

/// The sum of an array: what a kernel that only reads may hope for.
void BM_Read(benchmark::State& state) {
  const std::size_t n = static_cast<std::size_t>(state.range(0)) << 17;
  const LargeVector<double> a(n, 1.0);
  for (auto _ : state) {
    double sums[32] = {};
    for (std::size_t i = 0; i < n; i += 32)
      for (int k = 0; k < 32; ++k) sums[k] += a[i + k];
    benchmark::DoNotOptimize(sums);
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * n * 8));
}
BENCHMARK(BM_Read)->ArgName("MiB_per_array")->Arg(64)->Arg(256)->Unit(benchmark::kMillisecond);

#if defined(__x86_64__)

constexpr int kDepth = 256;  // of the product: both panels stay in the first cache

/// C(8 x 24) += A(8 x kDepth) B(kDepth x 24), packed by columns of A and rows of B.
__attribute__((target("avx512f"))) void Tile512(const double* A, const double* B, double* C) {
  __m512d sums[8][3];
  for (int i = 0; i < 8; ++i)
    for (int j = 0; j < 3; ++j) sums[i][j] = _mm512_loadu_pd(C + 24 * i + 8 * j);
  for (int k = 0; k < kDepth; ++k, A += 8, B += 24) {
    const __m512d b[] = {_mm512_loadu_pd(B), _mm512_loadu_pd(B + 8), _mm512_loadu_pd(B + 16)};
#pragma GCC unroll 8
    for (int i = 0; i < 8; ++i) {
      const __m512d a = _mm512_set1_pd(A[i]);
#pragma GCC unroll 3
      for (int j = 0; j < 3; ++j) sums[i][j] = _mm512_fmadd_pd(a, b[j], sums[i][j]);
    }
  }
  for (int i = 0; i < 8; ++i)
    for (int j = 0; j < 3; ++j) _mm512_storeu_pd(C + 24 * i + 8 * j, sums[i][j]);
}

/// C(4 x 12) += A(4 x kDepth) B(kDepth x 12), packed likewise.
__attribute__((target("avx2,fma"))) void Tile256(const double* A, const double* B, double* C) {
  __m256d sums[4][3];
  for (int i = 0; i < 4; ++i)
    for (int j = 0; j < 3; ++j) sums[i][j] = _mm256_loadu_pd(C + 12 * i + 4 * j);
  for (int k = 0; k < kDepth; ++k, A += 4, B += 12) {
    const __m256d b[] = {_mm256_loadu_pd(B), _mm256_loadu_pd(B + 4), _mm256_loadu_pd(B + 8)};
#pragma GCC unroll 4
    for (int i = 0; i < 4; ++i) {
      const __m256d a = _mm256_broadcast_sd(A + i);
#pragma GCC unroll 3
      for (int j = 0; j < 3; ++j) sums[i][j] = _mm256_fmadd_pd(a, b[j], sums[i][j]);
    }
  }
  for (int i = 0; i < 4; ++i)
    for (int j = 0; j < 3; ++j) _mm256_storeu_pd(C + 12 * i + 4 * j, sums[i][j]);
}

void TimeTile(benchmark::State& state, bool supported, int rows, int columns,
              void (*tile)(const double*, const double*, double*)) {
  if (!supported) return state.SkipWithError("not on this processor");
  const std::vector<double> A(rows * kDepth, 1e-3), B(columns * kDepth, 1e-3);
  std::vector<double> C(rows * columns, 0.0);
  for (auto _ : state) {
    tile(A.data(), B.data(), C.data());
    benchmark::ClobberMemory();
  }
  state.counters["FLOPS"] = benchmark::Counter(2.0 * rows * columns * kDepth,
                                               benchmark::Counter::kIsIterationInvariantRate);
}

void BM_MatrixProduct512(benchmark::State& state) {
  TimeTile(state, __builtin_cpu_supports("avx512f"), 8, 24, Tile512);
}
BENCHMARK(BM_MatrixProduct512);

void BM_MatrixProduct256(benchmark::State& state) {
  TimeTile(state, __builtin_cpu_supports("fma"), 4, 12, Tile256);
}
BENCHMARK(BM_MatrixProduct256);

#endif

}  // namespace

}  // namespace kestol
