#include "programs/mpi/Team.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <new>
#include <numeric>

namespace kestol {

namespace {

/// Where the part of each process begins, and behind the last one.
std::vector<int> StartsOf(const std::vector<int>& counts) {
  std::vector<int> starts(counts.size() + 1, 0);
  std::partial_sum(counts.begin(), counts.end(), starts.begin() + 1);
  return starts;
}

template <class T>
std::vector<T> GatherEverywhere(std::span<const T> mine, const std::vector<int>& counts,
                                MPI_Datatype type) {
  const std::vector<int> starts = StartsOf(counts);
  std::vector<T> all(static_cast<std::size_t>(starts.back()));
  MPI_Allgatherv(mine.data(), static_cast<int>(mine.size()), type, all.data(), counts.data(),
                 starts.data(), type, MPI_COMM_WORLD);
  return all;
}

void End() {
  int ended = 0;
  MPI_Finalized(&ended);
  if (ended == 0) MPI_Finalize();
}

}  // namespace

Team::Team(int* argc, char*** argv) {
  MPI_Init(argc, argv);
  // Also for a command line that ends the program by itself.
  std::atexit(End);
  MPI_Comm_rank(MPI_COMM_WORLD, &rank_);
  MPI_Comm_size(MPI_COMM_WORLD, &size_);
}

Team::~Team() {
  End();
}

int Team::FirstWith(bool mine) const {
  const int rank = mine ? rank_ : size_;
  int first = rank;
  MPI_Allreduce(&rank, &first, 1, MPI_INT, MPI_MIN, MPI_COMM_WORLD);
  return first == size_ ? -1 : first;
}

double Team::Sum(double mine) const {
  double sum = mine;
  MPI_Allreduce(&mine, &sum, 1, MPI_DOUBLE, MPI_SUM, MPI_COMM_WORLD);
  return sum;
}

double Team::Largest(double mine) const {
  double largest = mine;
  MPI_Allreduce(&mine, &largest, 1, MPI_DOUBLE, MPI_MAX, MPI_COMM_WORLD);
  return largest;
}

int Team::FromFirst(int value) const {
  MPI_Bcast(&value, 1, MPI_INT, 0, MPI_COMM_WORLD);
  return value;
}

/// How many items every process has; all together must fit the counts of MPI.
std::vector<int> Team::Counts(std::size_t mine) const {
  const auto count = static_cast<long long>(mine);
  long long total = count;
  MPI_Allreduce(&count, &total, 1, MPI_LONG_LONG, MPI_SUM, MPI_COMM_WORLD);
  if (total > std::numeric_limits<int>::max()) throw std::bad_alloc();
  const int own = static_cast<int>(mine);
  std::vector<int> counts(static_cast<std::size_t>(size_));
  MPI_Allgather(&own, 1, MPI_INT, counts.data(), 1, MPI_INT, MPI_COMM_WORLD);
  return counts;
}

std::vector<int> Team::GatherAll(std::span<const int> mine) const {
  return GatherEverywhere(mine, Counts(mine.size()), MPI_INT);
}

std::vector<double> Team::GatherAll(std::span<const double> mine) const {
  return GatherEverywhere(mine, Counts(mine.size()), MPI_DOUBLE);
}

std::vector<double> Team::GatherToFirst(std::span<const double> mine) const {
  const std::vector<int> counts = Counts(mine.size());
  const std::vector<int> starts = StartsOf(counts);
  std::vector<double> all(IsFirst() ? static_cast<std::size_t>(starts.back()) : 0);
  MPI_Gatherv(mine.data(), static_cast<int>(mine.size()), MPI_DOUBLE, all.data(), counts.data(),
              starts.data(), MPI_DOUBLE, 0, MPI_COMM_WORLD);
  return all;
}

int Team::Status(int mine) const {
  // The others wait for this process in the midst of their work.
  if (mine != 0 && size_ > 1 && !endsTogether_) MPI_Abort(MPI_COMM_WORLD, mine);
  int status = mine;
  MPI_Allreduce(&mine, &status, 1, MPI_INT, MPI_MAX, MPI_COMM_WORLD);
  return status;
}

}  // namespace kestol
