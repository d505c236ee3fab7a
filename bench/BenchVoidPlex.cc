// A million numbers in the container of the nodes: storing, looking up and walking them.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

#include "algebra/VoidPlex.h"

namespace kestol {

namespace {

constexpr int kNumbers = 1000000;
constexpr int kBlockSize = 100;

std::vector<int> InOrder() {
  std::vector<int> numbers(kNumbers);
  std::iota(numbers.begin(), numbers.end(), 1);
  return numbers;
}

std::vector<int> AtRandom() {
  std::vector<int> numbers = InOrder();
  std::shuffle(numbers.begin(), numbers.end(), std::mt19937(1));
  return numbers;
}

void InsertAll(VoidPlex& plex, const std::vector<int>& numbers) {
  static int object;
  for (const int number : numbers) plex.Insert(number, &object);
}

void Insert(benchmark::State& state, const std::vector<int>& numbers) {
  for (auto _ : state) {
    VoidPlex plex(kBlockSize);
    InsertAll(plex, numbers);
  }
  state.SetItemsProcessed(state.iterations() * kNumbers);
}

void Get(benchmark::State& state, const std::vector<int>& numbers) {
  VoidPlex plex(kBlockSize);
  InsertAll(plex, InOrder());
  for (auto _ : state)
    for (const int number : numbers) benchmark::DoNotOptimize(plex.Get(number));
  state.SetItemsProcessed(state.iterations() * kNumbers);
}

void Walk(benchmark::State& state) {
  VoidPlex plex(kBlockSize);
  InsertAll(plex, InOrder());
  for (auto _ : state)
    for (int cursor = 0; void* const object = plex.Next(cursor);) benchmark::DoNotOptimize(object);
  state.SetItemsProcessed(state.iterations() * kNumbers);
}

BENCHMARK_CAPTURE(Insert, in_order, InOrder())->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Insert, at_random, AtRandom())->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Get, in_order, InOrder())->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Get, at_random, AtRandom())->Unit(benchmark::kMillisecond);
BENCHMARK(Walk)->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace kestol
