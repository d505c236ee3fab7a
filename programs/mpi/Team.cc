#include "programs/mpi/Team.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <limits>
#include <new>
#include <numeric>
#include <thread>

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
  MPI_Comm_dup(MPI_COMM_WORLD, &failures_);
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

bool Team::IsFirstToFail() {
  using namespace std::chrono;
  constexpr milliseconds kPatience{3000}, kPause{1};
  std::vector<MPI_Request> told(static_cast<std::size_t>(size_), MPI_REQUEST_NULL);
  for (int other = 0; other < size_; ++other)
    if (other != rank_)
      MPI_Isend(nullptr, 0, MPI_BYTE, other, 0, failures_, &told[static_cast<std::size_t>(other)]);
  int first = rank_, heard = 0;
  const auto end = steady_clock::now() + kPatience;
  while (heard < size_ - 1 && steady_clock::now() < end) {
    int isThere = 0;
    MPI_Status from;
    MPI_Iprobe(MPI_ANY_SOURCE, 0, failures_, &isThere, &from);
    if (isThere == 0) {
      std::this_thread::sleep_for(kPause);
      continue;
    }
    MPI_Recv(nullptr, 0, MPI_BYTE, from.MPI_SOURCE, 0, failures_, MPI_STATUS_IGNORE);
    first = std::min(first, from.MPI_SOURCE);
    ++heard;
  }
  endsTogether_ = heard == size_ - 1;
  if (endsTogether_)
    MPI_Waitall(size_, told.data(), MPI_STATUSES_IGNORE);
  else if (first != rank_)
    std::this_thread::sleep_for(kPatience);  // the first one ends all by then
  return first == rank_;
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
