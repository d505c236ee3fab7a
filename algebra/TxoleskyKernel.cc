#include "algebra/TxoleskyKernel.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace kestol {

// The product is where the time goes, and it is written for each family by hand: a block of sums
// stays in registers while every value of b is used for all rows and every value of a for all
// columns of the block. How many rows and columns follows from the number of registers. The other
// two operations are plain loops which the compiler lays out for each family.

namespace {

constexpr int kWidth = kTileColumns;

[[gnu::always_inline]] inline void SolveTriangle(const double* u, double* g) {
  for (int i = 1; i < kTileRows; ++i) {
    for (int k = 0; k < i; ++k) {
      const double factor = u[kTileRows * k + i];
      for (int c = 0; c < kWidth; ++c) g[kWidth * i + c] -= factor * g[kWidth * k + c];
    }
  }
}

[[gnu::always_inline]] inline void DivideRows(const double* g, const double* d, double* u) {
  for (int r = 0; r < kTileRows; ++r)
    for (int c = 0; c < kWidth; ++c) u[kWidth * r + c] = g[kWidth * r + c] / d[r];
}

#if defined(__x86_64__)

// --- 512 bits: 32 registers of 8 numbers, the whole tile of 8 x 24 at once -----------------------

[[gnu::target("avx512f")]] void SubtractProduct512(const double* const* a, const double* b,
                                                   int count, double* c, const int* rows) {
  __m512d sum[8][3];
#pragma GCC unroll 8
  for (int r = 0; r < 8; ++r) {
#pragma GCC unroll 3
    for (int v = 0; v < 3; ++v) sum[r][v] = _mm512_setzero_pd();
  }
  const double* const a0 = a[0];
  const double* const a1 = a[1];
  const double* const a2 = a[2];
  const double* const a3 = a[3];
  const double* const a4 = a[4];
  const double* const a5 = a[5];
  const double* const a6 = a[6];
  const double* const a7 = a[7];
  for (std::ptrdiff_t q = 0; q < count; ++q, b -= kWidth) {
    const double row[8] = {a0[q], a1[q], a2[q], a3[q], a4[q], a5[q], a6[q], a7[q]};
    const __m512d b0 = _mm512_load_pd(b);
    const __m512d b1 = _mm512_load_pd(b + 8);
    const __m512d b2 = _mm512_load_pd(b + 16);
#pragma GCC unroll 8
    for (int r = 0; r < 8; ++r) {
      const __m512d factor = _mm512_set1_pd(row[r]);
      sum[r][0] = _mm512_fmadd_pd(factor, b0, sum[r][0]);
      sum[r][1] = _mm512_fmadd_pd(factor, b1, sum[r][1]);
      sum[r][2] = _mm512_fmadd_pd(factor, b2, sum[r][2]);
    }
  }
#pragma GCC unroll 8
  for (int r = 0; r < 8; ++r) {
    double* const place = c + static_cast<std::ptrdiff_t>(rows[r]) * kWidth;
#pragma GCC unroll 3
    for (int v = 0; v < 3; ++v)
      _mm512_store_pd(place + 8 * v, _mm512_sub_pd(_mm512_load_pd(place + 8 * v), sum[r][v]));
  }
}

[[gnu::target("avx512f")]] void SolveTriangle512(const double* u, double* g) {
  SolveTriangle(u, g);
}

[[gnu::target("avx512f")]] void DivideRows512(const double* g, const double* d, double* u) {
  DivideRows(g, d, u);
}

bool Has512() {
  return __builtin_cpu_supports("avx512f") != 0;
}

// --- 256 bits: 16 registers of 4 numbers, blocks of 4 x 12 ---------------------------------------

/// Four rows of twelve columns.
[[gnu::target("avx2,fma")]] inline void SubtractBlock256(const double* const* a, const double* b,
                                                         std::ptrdiff_t first, std::ptrdiff_t last,
                                                         double* c, const int* rows) {
  const double* const a0 = a[0];
  const double* const a1 = a[1];
  const double* const a2 = a[2];
  const double* const a3 = a[3];
  __m256d sum[4][3];
#pragma GCC unroll 4
  for (int r = 0; r < 4; ++r) {
#pragma GCC unroll 3
    for (int v = 0; v < 3; ++v) sum[r][v] = _mm256_setzero_pd();
  }
  b -= first * kWidth;
  for (std::ptrdiff_t q = first; q < last; ++q, b -= kWidth) {
    const double row[4] = {a0[q], a1[q], a2[q], a3[q]};
    const __m256d b0 = _mm256_load_pd(b);
    const __m256d b1 = _mm256_load_pd(b + 4);
    const __m256d b2 = _mm256_load_pd(b + 8);
#pragma GCC unroll 4
    for (int r = 0; r < 4; ++r) {
      const __m256d factor = _mm256_set1_pd(row[r]);
      sum[r][0] = _mm256_fmadd_pd(factor, b0, sum[r][0]);
      sum[r][1] = _mm256_fmadd_pd(factor, b1, sum[r][1]);
      sum[r][2] = _mm256_fmadd_pd(factor, b2, sum[r][2]);
    }
  }
#pragma GCC unroll 4
  for (int r = 0; r < 4; ++r) {
    double* const place = c + static_cast<std::ptrdiff_t>(rows[r]) * kWidth;
#pragma GCC unroll 3
    for (int v = 0; v < 3; ++v)
      _mm256_store_pd(place + 4 * v, _mm256_sub_pd(_mm256_load_pd(place + 4 * v), sum[r][v]));
  }
}

/// The four blocks of a tile take turns on as many rows as the first cache holds.
[[gnu::target("avx2,fma")]] void SubtractProduct256(const double* const* a, const double* b,
                                                    int count, double* c, const int* rows) {
  constexpr int kTurn = 96;
  for (int first = 0; first < count; first += kTurn) {
    const int last = std::min(first + kTurn, count);
    for (int column = 0; column < kWidth; column += 12) {
      SubtractBlock256(a, b + column, first, last, c + column, rows);
      SubtractBlock256(a + 4, b + column, first, last, c + column, rows + 4);
    }
  }
}

[[gnu::target("avx2,fma")]] void SolveTriangle256(const double* u, double* g) {
  SolveTriangle(u, g);
}

[[gnu::target("avx2,fma")]] void DivideRows256(const double* g, const double* d, double* u) {
  DivideRows(g, d, u);
}

bool Has256() {
  return __builtin_cpu_supports("avx2") != 0 && __builtin_cpu_supports("fma") != 0;
}

#endif

// --- 128 bits: 16 registers of 2 numbers, blocks of 4 x 6; what every processor can do -----------

void SubtractProduct128(const double* const* a, const double* b, int count, double* c,
                        const int* rows) {
  using Pair [[gnu::vector_size(16)]] = double;
  for (int block = 0; block < 8; ++block) {
    const double* const* const aBlock = a + block / 4 * 4;
    const double* bRow = b + block % 4 * 6;
    Pair sum[4][3] = {};
    for (std::ptrdiff_t q = 0; q < count; ++q, bRow -= kWidth) {
      const auto* const pairs = reinterpret_cast<const Pair*>(bRow);
#pragma GCC unroll 4
      for (int r = 0; r < 4; ++r) {
        const Pair factor = {aBlock[r][q], aBlock[r][q]};
#pragma GCC unroll 3
        for (int v = 0; v < 3; ++v) sum[r][v] += factor * pairs[v];
      }
    }
    for (int r = 0; r < 4; ++r) {
      const std::ptrdiff_t row = rows[block / 4 * 4 + r];
      auto* const place = reinterpret_cast<Pair*>(c + row * kWidth + block % 4 * 6);
      for (int v = 0; v < 3; ++v) place[v] -= sum[r][v];
    }
  }
}

void SolveTriangle128(const double* u, double* g) {
  SolveTriangle(u, g);
}

void DivideRows128(const double* g, const double* d, double* u) {
  DivideRows(g, d, u);
}

bool Always() {
  return true;
}

constexpr TileKernel kKernels[] = {
#if defined(__x86_64__)
    {"512 bits", Has512, SubtractProduct512, SolveTriangle512, DivideRows512},
    {"256 bits", Has256, SubtractProduct256, SolveTriangle256, DivideRows256},
#endif
    {"128 bits", Always, SubtractProduct128, SolveTriangle128, DivideRows128},
};

}  // namespace

const std::vector<TileKernel>& SupportedTileKernels() {
  static const std::vector<TileKernel> supported = [] {
    std::vector<TileKernel> found;
    std::copy_if(std::begin(kKernels), std::end(kKernels), std::back_inserter(found),
                 [](const TileKernel& kernel) { return kernel.isSupported(); });
    return found;
  }();
  return supported;
}

}  // namespace kestol
