// Reading a deck from a file: time, and the memory of what was read.
//
// The argument is the number of nodes; there are two beams a node. "InOrder" is the usual deck:
// numbers ascend and beams join near neighbours. "AtRandom" lists nodes and elements in any order
// and joins nodes from all over the model.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "input/Project.h"
#include "input/ProjectReader.h"
#include "input/TextInput.h"

namespace kestol {

namespace {

enum class Numbering { InOrder, AtRandom };

std::vector<int> NumbersUpTo(int n, Numbering numbering) {
  std::vector<int> numbers(n);
  std::iota(numbers.begin(), numbers.end(), 1);
  if (numbering == Numbering::AtRandom)
    std::shuffle(numbers.begin(), numbers.end(), std::mt19937(1));
  return numbers;
}

/// Another node than `a`: a neighbour, or any.
int OtherNode(int a, int nodeCount, Numbering numbering, std::mt19937& random) {
  if (numbering == Numbering::InOrder) return a < nodeCount ? a + 1 : 1;
  const int b = static_cast<int>(random() % static_cast<unsigned>(nodeCount)) + 1;
  return b != a ? b : b % nodeCount + 1;
}

/// A deck in a file, which is removed with the object.
class DeckFile {
public:
  DeckFile(int nodeCount, int beamCount, Numbering numbering) {
    std::FILE* file = std::fopen(name_.c_str(), "w");
    if (file == nullptr) std::abort();
    std::mt19937 random(2);
    std::fputs("PROBLEM reader\nTYPE 3d\n\nmesh\n", file);
    std::fputs("  dimension = 3   elemtype Linear   nnode = 2\n  coordinates\n", file);
    for (const int n : NumbersUpTo(nodeCount, numbering))
      std::fprintf(file, "    %i  %.7g %.7g %.7g\n", n, 0.37 * (n % 100), 0.41 * (n / 100 % 100),
                   3.5 * (n / 10000));
    std::fputs("  end coordinates\n  elements\n", file);
    for (const int e : NumbersUpTo(beamCount, numbering)) {
      const int a = (e - 1) % nodeCount + 1;
      std::fprintf(file, "    %i  %i %i  %i\n", e, a, OtherNode(a, nodeCount, numbering, random),
                   1 + e % 2);
    }
    std::fputs("  end elements\n\n", file);
    std::fputs("materials\n  1  E=2e11\n  2  E=3e10\nend materials\n", file);
    std::fclose(file);
  }
  ~DeckFile() { std::filesystem::remove(name_); }
  DeckFile(const DeckFile&) = delete;
  DeckFile& operator=(const DeckFile&) = delete;

  std::unique_ptr<Project> Read() const {
    auto project = std::make_unique<Project>(100);
    TextInput input(std::fopen(name_.c_str(), "r"));
    ReadProject(*project, input);
    return project;
  }
  std::size_t Size() const { return std::filesystem::file_size(name_); }

private:
  std::string name_ = std::filesystem::temp_directory_path() / "kestol-bench-reader.dat";
};

/// Bytes of the heap in use, the allocator's own included.
double HeapInUse() {
  const struct mallinfo2 info = mallinfo2();
  return static_cast<double>(info.uordblks + info.hblkhd);
}

/// What a model as read takes.
double HeapOf(const DeckFile& file) {
  const double before = HeapInUse();
  const auto project = file.Read();
  return HeapInUse() - before;
}

template <Numbering numbering>
void ReadDeck(benchmark::State& state) {
  const int nodeCount = static_cast<int>(state.range(0)), beamCount = 2 * nodeCount;
  const double heapOfNodes = HeapOf(DeckFile(nodeCount, 0, numbering));
  const DeckFile file(nodeCount, beamCount, numbering);
  const double heap = HeapOf(file);
  std::unique_ptr<Project> project;
  for (auto _ : state) {
    project = file.Read();
    state.PauseTiming();
    project.reset();
    state.ResumeTiming();
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(file.Size()));
  state.SetComplexityN(state.range(0));
  state.counters["bytes/node"] = heapOfNodes / nodeCount;
  state.counters["bytes/beam"] = (heap - heapOfNodes) / beamCount;
}

BENCHMARK(ReadDeck<Numbering::InOrder>)
    ->RangeMultiplier(10)
    ->Range(1000, 1000000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);
BENCHMARK(ReadDeck<Numbering::AtRandom>)
    ->RangeMultiplier(10)
    ->Range(1000, 1000000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);

}  // namespace

}  // namespace kestol
