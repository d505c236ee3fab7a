#include "algebra/SparseSolver.h"

#include <algorithm>
#include <cassert>
#include <limits>

#include "algebra/BlockKernels.h"
#include "algebra/ConjugateGradient.h"
#include "algebra/DiagPreconditioner.h"
#include "algebra/ILUPreconditioner.h"
#include "algebra/ReaVecT.h"
#include "algebra/SparseKernels.h"
#include "main/ErrorChannel.h"
#include "output/InfoFile.h"

namespace kestol {

namespace {

constexpr double kDefaultTolerance1 = 1e-10;
constexpr double kDefaultTolerance2 = 1e-6;
constexpr long long kLeastDefaultLimit = 1000;

/// Very thin plates need about n iterations.
int DefaultLimit(int n) {
  constexpr long long kMost = std::numeric_limits<int>::max();
  return static_cast<int>(std::min(std::max(kLeastDefaultLimit, 10LL * n), kMost));
}

bool HasPositiveDiagonal(const SparseMatrix& A) {
  for (int i = 0; i < A.rows; ++i)
    if (!(A.Diagonal(i) > 0.0)) return false;
  return true;
}

}  // namespace

SparseSolver::SparseSolver(int numDegrees)
    : SparseSolver(numDegrees, kDefaultTolerance1, kDefaultTolerance2, DefaultLimit(numDegrees)) {}

SparseSolver::SparseSolver(int numDegrees, double target, double accepted, int limit)
    : n(numDegrees), tolerance1(target), tolerance2(accepted), MaxIterations(limit) {}

SparseSolver::~SparseSolver() = default;

void SparseSolver::SetInitialValues(const ReaVecT& values) {
  assert(values.n >= n);
  start_.assign(values.begin(), values.begin() + n);
}

void SparseSolver::AddNodePair(int node1, int node2, int dofsPerNode) {
  if (node1 == node2) return;
  adjacency_.resize(n / dofsPerNode);
  AddNeighbour(node1, node2);
  AddNeighbour(node2, node1);
}

void SparseSolver::AddNeighbour(int node, int neighbour) {
  std::vector<int>& neighbours = adjacency_[node - 1];
  if (std::find(neighbours.begin(), neighbours.end(), neighbour) != neighbours.end()) return;
  if (neighbours.size() == MAXNUMNODESAROUNDNODE)
    Fatal("error: increase parameter MAXNUMNODESAROUNDNODE node=", node, "\n");
  neighbours.push_back(neighbour);
}

void SparseSolver::Allocate(int dofsPerNode) {
  const int nodes = n / dofsPerNode;
  adjacency_.resize(nodes);
  std::vector<int> rowLengths(n, 0);
  for (int node = 0; node < nodes; ++node) {
    const int length = (static_cast<int>(adjacency_[node].size()) + 1) * dofsPerNode;
    std::fill_n(rowLengths.begin() + node * dofsPerNode, dofsPerNode, length);
  }
  adjacency_ = {};
  const bool hasKernels = BlockKernelsFor(dofsPerNode) != nullptr && n % dofsPerNode == 0;
  matrix_ = std::make_unique<SparseMatrix>(n, rowLengths, hasKernels ? dofsPerNode : 1);
  NeedStart();
}

/// A starting vector of zeros, unless there is one.
void SparseSolver::NeedStart() {
  if (start_.empty()) start_.assign(n, 0.0);
}

double& SparseSolver::Entry(int i, int j) {
  return matrix_->Reference(i - 1, j - 1);
}

void SparseSolver::SetZero() {
  matrix_->ClearValues();
  prescribed_.clear();
  preconditioner_.reset();
}

void SparseSolver::AddBlock(int firstRow, int firstCol, const Matriu& block) {
  matrix_->AddBlock(firstRow - 1, firstCol - 1, block);
}

void SparseSolver::Prescribe(int dof, double value, ReaVecT& rhs) {
  // Deliberate: column `dof` stays, and the right-hand side is not corrected for the value.
  matrix_->ReplaceByUnitRow(dof - 1);
  NeedStart();
  start_[dof - 1] = value;
  prescribed_.push_back(dof);
  rhs(dof) = value;
}

double SparseSolver::RowTimesVector(int dof, const ReaVecT& vector) const {
  return matrix_->RowTimesVector(dof - 1, vector.begin());
}

void SparseSolver::Times(const ReaVecT& vector, ReaVecT& y) const {
  assert(vector.n == n);
  y.Resize(n, 0.0);
  Multiply(*matrix_, vector.begin(), y.begin());
}

void SparseSolver::ScaleAndShift(const ReaVecT& /*scale*/, double /*shift*/) {
  Fatal("error SparseSolver::ScaleAndShift not implemented\n");
}

int SparseSolver::Factorise(std::ostream* /*info*/) {
  if (!HasDiagonals()) return -1;
  BuildPreconditioner();
  return 0;
}

int SparseSolver::Substitute(ReaVecT& rhs, std::ostream* info) {
  assert(rhs.n == n);
  if (!preconditioner_) Fatal("error in SparseSolver::Substitute. Matrix not factorised\n");
  std::vector<double> solution = StartFor(rhs);
  int limit = MaxIterations;
  double residual = tolerance1;
  const int flag = ConjugateGradient(*matrix_, solution.data(), rhs.begin(), *preconditioner_,
                                     limit, residual, info);
  const int result = Accept(residual, flag, info);
  if (result == 0) std::copy(solution.begin(), solution.end(), rhs.begin());
  return result;
}

int SparseSolver::Solve(ReaVecT& rhs, std::ostream* info) {
  const int result = StiffnessMatrix::Solve(rhs, info);
  preconditioner_.reset();
  start_ = {};  // whatever came, the next solution starts anew
  return result;
}

/// The columns of prescribed degrees stay in the matrix: only a start at their values is the
/// prescribed system.
std::vector<double> SparseSolver::StartFor(const ReaVecT& rhs) const {
  std::vector<double> start = start_;
  start.resize(n, 0.0);
  for (const int dof : prescribed_) start[dof - 1] = rhs(dof);
  return start;
}

/// What `Substitute` returns for the residual reached.
int SparseSolver::Accept(double residual, int flag, std::ostream* info) const {
  if (!(residual >= 0.0)) return -1;
  if (flag == 0) return 0;
  if (residual <= tolerance2) {
    Progress(info, "After %i Iterations, accepted tolerance of %lf\n", MaxIterations, residual);
    return 0;
  }
  Progress(info, "Not Solved after %i Iterations\n", MaxIterations);
  return -std::max(MaxIterations, 1);
}

bool SparseSolver::HasDiagonals() const {
  for (int i = 0; i < n; ++i)
    if (matrix_->Diagonal(i) == 0.0) return false;
  return true;
}

void SparseSolver::BuildPreconditioner() {
  auto factors = std::make_unique<ILUPreconditioner>(*matrix_);
  const bool isTrusted = factors->IsPositive() || !HasPositiveDiagonal(*matrix_);
  preconditioner_ = std::move(factors);
  if (isTrusted) return;
  preconditioner_.reset();
  preconditioner_ = std::make_unique<DiagPreconditioner>(*matrix_);
}

void SparseSolver::Print(std::ostream& stream) const {
  stream << "\nprinting Sparse Matrix size=" << n << "x" << n << std::endl;
  matrix_->Print(stream);
  stream << std::endl;
}

void SparseSolver::CopyFromYouToMat(Matriu& /*dense*/) const {
  Fatal("error SparseSolver::CopyFromYouToMat not implemented\n");
}

void SparseSolver::WriteForVemo(std::ostream& /*stream*/) const {
  Fatal("error SparseSolver::WriteForVemo not implemented\n");
}

void SparseSolver::PrintInfo(std::ostream& stream) const {
  // Words of 4 bytes: a value and a column number for every slot, a number for every row.
  const double megabytes = (3.0 * matrix_->nnz + n) * 4 / kMegabyte;
  Progress(&stream,
           "\nINFORMATION ABOUT STIFFNESS MATRIX\n"
           "Sparse matrix storage with Conjugate gradients\n"
           "Degrees of freedom= %i\n"
           "Total number of positions= %i\n"
           "Amount of memory= %.1lfMb\n\n",
           n, matrix_->nnz, megabytes);
}

}  // namespace kestol
