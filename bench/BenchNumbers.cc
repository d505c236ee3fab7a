// Numbers as text: ours against printf and the library's conversion.
#include <benchmark/benchmark.h>

#include <charconv>
#include <cmath>
#include <cstdio>
#include <random>
#include <vector>

#include "output/NumberText.h"

namespace kestol {

namespace {

// Results of a frame: magnitudes from 1e-9 to 1e6, both signs.
std::vector<double> Results() {
  std::mt19937_64 random(1);
  std::uniform_real_distribution<double> exponent(-9.0, 6.0);
  std::vector<double> values(4096);
  for (double& value : values)
    value = std::pow(10.0, exponent(random)) * (random() % 2 == 0 ? 1.0 : -1.0);
  return values;
}

template <class Write>
void Run(benchmark::State& state, Write write) {
  const std::vector<double> values = Results();
  char text[64];
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(write(text, values[i++ % values.size()]));
    benchmark::ClobberMemory();
  }
}

void DefaultForm(benchmark::State& state) {
  Run(state, WriteDefault);
}
void DefaultFormByToChars(benchmark::State& state) {
  Run(state, [](char* to, double value) {
    return std::to_chars(to, to + 64, value, std::chars_format::general, 6).ptr;
  });
}
void DefaultFormByPrintf(benchmark::State& state) {
  Run(state, [](char* to, double value) { return std::snprintf(to, 64, "%g", value); });
}
void VectorForm(benchmark::State& state) {
  Run(state, WriteVectorForm);
}
void VectorFormByPrintf(benchmark::State& state) {
  Run(state, [](char* to, double value) { return std::snprintf(to, 64, "  %13.6e", value); });
}
void VectorFormOfZero(benchmark::State& state) {
  char text[64];
  double zero = 0.0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(zero);
    benchmark::DoNotOptimize(WriteVectorForm(text, zero));
  }
}

BENCHMARK(DefaultForm);
BENCHMARK(DefaultFormByToChars);
BENCHMARK(DefaultFormByPrintf);
BENCHMARK(VectorForm);
BENCHMARK(VectorFormByPrintf);
BENCHMARK(VectorFormOfZero);

}  // namespace

}  // namespace kestol
