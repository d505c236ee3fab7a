#pragma once

#include <mpi.h>

#include <exception>
#include <span>
#include <vector>

namespace kestol {

/// Thrown on the processes that have nothing to say: another one tells what went wrong.
struct ToldElsewhere {};

/// The processes of one run. MPI begins with it and ends with it; without mpirun it is one process.
class Team {
public:
  Team(int* argc, char*** argv);
  ~Team();
  Team(const Team&) = delete;
  Team& operator=(const Team&) = delete;

  int Rank() const { return rank_; }
  int Size() const { return size_; }
  bool IsFirst() const { return rank_ == 0; }

  /// Runs `step` on every process. When it throws on some, the first of them keeps its exception
  /// and all others get ToldElsewhere: one mistake makes one message.
  template <class Step>
  void Together(Step step) {
    std::exception_ptr thrown;
    try {
      step();
    } catch (...) {
      thrown = std::current_exception();
    }
    const int teller = FirstWith(thrown != nullptr);
    if (teller < 0) return;
    endsTogether_ = true;
    if (teller == rank_) std::rethrow_exception(thrown);
    throw ToldElsewhere();
  }

  /// Runs `step` on the first process alone; the others wait and share its failure.
  template <class Step>
  void FirstAlone(Step step) {
    Together([&] {
      if (IsFirst()) step();
    });
  }

  /// For a failure outside Together, which the processes meet alike as a rule: waits a moment for
  /// the others to fail too. True on the first of those that do, which is the one to tell it.
  bool IsFirstToFail();

  /// The lowest rank for which `mine` holds; -1 when there is none.
  int FirstWith(bool mine) const;
  bool Any(bool mine) const { return FirstWith(mine) >= 0; }

  double Sum(double mine) const;
  double Largest(double mine) const;
  double Smallest(double mine) const { return -Largest(-mine); }

  /// What the first process holds, on all of them.
  int FromFirst(int value) const;

  /// The parts of all processes, one behind the other in the order of the ranks, on every process.
  std::vector<int> GatherAll(std::span<const int> mine) const;
  std::vector<double> GatherAll(std::span<const double> mine) const;
  /// The same on the first process; empty on the others.
  std::vector<double> GatherToFirst(std::span<const double> mine) const;

  /// The run's exit status: the largest of all. A process that failed while the others still work
  /// ends them.
  int Status(int mine) const;

private:
  std::vector<int> Counts(std::size_t mine) const;

  int rank_ = 0, size_ = 1;
  MPI_Comm failures_ = MPI_COMM_NULL;  ///< apart from the work, which some may go on with
  bool endsTogether_ = false;
};

}  // namespace kestol
