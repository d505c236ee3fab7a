#include "direct/DirectSolver.h"

#include <dmumps_c.h>

#include <algorithm>
#include <cassert>
#include <cmath>
#include <new>

#include "algebra/ReaVecT.h"
#include "direct/BlasRoom.h"
#include "main/ErrorChannel.h"

namespace kestol {

namespace {

/// What a call of the library is to do.
enum Job { Begin = -1, End = -2, Analyse = 1, Eliminate = 2, Solution = 3 };

/// The controls ICNTL that differ from what Begin sets; the manual of the library counts from 1.
enum Control {
  ErrorStream = 1,
  WarningStream,
  ReportStream,
  MessageLevel,
  MaximumTransversal = 6,  ///< 0: the diagonal stays where it is
  Ordering = 7,
  PairedOrdering = 12,  ///< 1: the graph is that of single degrees, or of the blocks
  MoreRoom = 14,        ///< per cent above what the analysis expects
  Blocks = 15,          ///< -B: the graph of nodes of B degrees is ordered
  SeekNullPivots = 24,
};
/// Values of Ordering: nested dissection, whose library ends the process when all nodes are coupled
/// with all others; and, for those, where every order is as good, minimum fill.
constexpr int kPord = 4, kMinimumFill = 2;
constexpr int kNullPivotThreshold = 3;  // CNTL

/// A row of which elimination leaves less than this part of the largest one, all rows scaled alike,
/// has lost all digits but two.
constexpr double kNullPivot = 1e-14;

/// What the library takes for itself when it begins and ends; where that is missing it ends the
/// process instead of saying so.
constexpr std::size_t kRoomOfItsOwn = std::size_t{8} << 20;

/// Right-hand sides that pass the factor together, which is read once for them; they are held twice
/// meanwhile.
constexpr std::size_t kAtATime = 16;

/// Codes in INFOG(1) for exhausted memory, and for less room than ICNTL(14) should have asked for.
constexpr int kExhausted[] = {-5, -7, -13, -19, -22, -51, -52, -53};
constexpr int kTooLittleRoom[] = {-8, -9, -11, -12, -14, -15, -17, -18, -20};

template <std::size_t count>
bool IsOneOf(const int (&codes)[count], int code) {
  return std::find(codes, codes + count, code) != codes + count;
}

int CountNodes(const UpperRows& rows) {
  return static_cast<int>(rows.start.size()) - 1;
}

/// Whether every node is coupled with every other.
bool IsComplete(const UpperRows& rows) {
  const long long nodes = CountNodes(rows);
  return static_cast<long long>(rows.column.size()) == nodes * (nodes + 1) / 2;
}

/// The row and the column of every stored value, from 1. Below the diagonal, in the blocks on it,
/// the values are zeros: they add nothing to the mirrored place that the library takes them for.
struct Places {
  std::vector<int> row, column;

  Places(const UpperRows& rows, int B) {
    row.reserve(rows.column.size() * B * B);
    column.reserve(rows.column.size() * B * B);
    for (int node = 0; node < CountNodes(rows); ++node) {
      for (int b = rows.start[node]; b < rows.start[node + 1]; ++b) {
        for (int r = 1; r <= B; ++r) {
          row.insert(row.end(), B, node * B + r);
          for (int c = 1; c <= B; ++c) column.push_back(rows.column[b] * B + c);
        }
      }
    }
  }
};

}  // namespace

/// An instance of the library.
class DirectSolver::Mumps {
public:
  Mumps(const UpperRows& rows, int B);
  ~Mumps() { Run(End); }
  Mumps(const Mumps&) = delete;
  Mumps& operator=(const Mumps&) = delete;

  // These return the code of how they ended, negative when they failed.
  int Factorise(const UpperRows& rows, int B, const double* values);
  int Substitute(double* f, int count);  // `count` vectors, one behind the other

  std::vector<int> NullPivots() const;
  int NumNegativePivots() const { return state_.infog[11]; }  // INFOG(12)

private:
  int& Set(Control control) { return state_.icntl[control - 1]; }
  int Run(Job job);
  int Call(Job job);
  int CallWithRoom(Job job);

  DMUMPS_STRUC_C state_{};
  bool isAnalysed_ = false;
};

DirectSolver::Mumps::Mumps(const UpperRows& rows, int B) {
  constexpr int kAllProcesses = -987654;
  TakeBlasRoom();
  ::operator delete(::operator new(kRoomOfItsOwn));
  state_.par = 1;  // the calling process takes part
  state_.sym = 2;  // symmetric, pivots of any sign
  state_.comm_fortran = kAllProcesses;
  Call(Begin);
  state_.n = CountNodes(rows) * B;
  for (const Control stream : {ErrorStream, WarningStream, ReportStream}) Set(stream) = 0;
  Set(MessageLevel) = 0;
  Set(MaximumTransversal) = 0;
  Set(Ordering) = IsComplete(rows) ? kMinimumFill : kPord;
  Set(PairedOrdering) = 1;
  Set(Blocks) = B > 1 ? -B : 0;
  Set(SeekNullPivots) = 1;
  state_.cntl[kNullPivotThreshold - 1] = kNullPivot;
}

int DirectSolver::Mumps::Run(Job job) {
  state_.job = job;
  dmumps_c(&state_);
  return state_.infog[0];
}

int DirectSolver::Mumps::Call(Job job) {
  const int code = Run(job);
  if (IsOneOf(kExhausted, code)) throw std::bad_alloc();
  return code;
}

/// The same with more and more room, as long as that is what is missing.
int DirectSolver::Mumps::CallWithRoom(Job job) {
  constexpr int kMost = 10000;
  int code = Call(job);
  while (IsOneOf(kTooLittleRoom, code)) {
    if (Set(MoreRoom) > kMost) throw std::bad_alloc();
    Set(MoreRoom) *= 2;
    code = Call(job);
  }
  return code;
}

int DirectSolver::Mumps::Factorise(const UpperRows& rows, int B, const double* values) {
  Places places(rows, B);
  state_.nnz = static_cast<MUMPS_INT8>(places.row.size());
  state_.irn = places.row.data();
  state_.jcn = places.column.data();
  state_.a = const_cast<double*>(values);  // the library reads them
  int code = isAnalysed_ ? 0 : Call(Analyse);
  isAnalysed_ = code >= 0;
  if (isAnalysed_) code = CallWithRoom(Eliminate);
  state_.irn = state_.jcn = nullptr;
  state_.a = nullptr;
  return code;
}

int DirectSolver::Mumps::Substitute(double* f, int count) {
  state_.nrhs = count;
  state_.lrhs = state_.n;
  state_.rhs = f;
  return CallWithRoom(Solution);
}

std::vector<int> DirectSolver::Mumps::NullPivots() const {
  const int count = state_.infog[27];  // INFOG(28)
  std::vector<int> degrees(state_.pivnul_list, state_.pivnul_list + count);
  std::sort(degrees.begin(), degrees.end());
  return degrees;
}

DirectSolver::DirectSolver(int numDegrees) : NodeBlockMatrix(numDegrees) {}

DirectSolver::~DirectSolver() = default;

void DirectSolver::Allocate(int dofsPerNode) {
  mumps_.reset();
  isFactorised_ = false;
  NodeBlockMatrix::Allocate(dofsPerNode);
}

void DirectSolver::SetZero() {
  isFactorised_ = false;
  NodeBlockMatrix::SetZero();
}

int DirectSolver::Factorise(std::ostream* /*info*/) {
  constexpr int kBreakdown = -1;
  isFactorised_ = false;
  const auto isFinite = [](double x) { return std::isfinite(x); };
  if (!std::all_of(Values().begin(), Values().end(), isFinite)) return kBreakdown;
  if (NumDegrees() > 0) {
    if (!mumps_) mumps_ = std::make_unique<Mumps>(Rows(), BlockSize());
    if (mumps_->Factorise(Rows(), BlockSize(), Values().data()) < 0) return kBreakdown;
  }
  const std::vector<int> nullPivots = NullPivots();
  isFactorised_ = nullPivots.empty();
  return isFactorised_ ? 0 : nullPivots.front();
}

void DirectSolver::RequireFactor() const {
  if (!isFactorised_) Fatal("error in DirectSolver::Substitute. Matrix not factorised\n");
}

int DirectSolver::Substitute(ReaVecT& f, std::ostream* /*info*/) {
  assert(f.n == NumDegrees());
  RequireFactor();
  return mumps_ ? mumps_->Substitute(f.begin(), 1) : 0;
}

int DirectSolver::SubstituteAll(std::vector<ReaVecT>& block, std::ostream* /*info*/) {
  RequireFactor();
  const std::size_t n = NumDegrees();
  std::vector<double> some(std::min(kAtATime, block.size()) * n);
  for (std::size_t done = 0; mumps_ && done < block.size();) {
    const std::size_t count = std::min(kAtATime, block.size() - done);
    for (std::size_t v = 0; v < count; ++v)
      std::copy(block[done + v].begin(), block[done + v].end(), some.begin() + v * n);
    const int code = mumps_->Substitute(some.data(), static_cast<int>(count));
    if (code != 0) return code;
    for (std::size_t v = 0; v < count; ++v, ++done)
      std::copy_n(some.begin() + v * n, n, block[done].begin());
  }
  return 0;
}

std::vector<int> DirectSolver::NullPivots() const {
  return mumps_ ? mumps_->NullPivots() : std::vector<int>();
}

int DirectSolver::NegativePivots() const {
  return mumps_ ? mumps_->NumNegativePivots() : 0;
}

}  // namespace kestol
