#include "algebra/SkyLine.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <new>
#include <numeric>

#include "algebra/LargePages.h"
#include "algebra/Matriu.h"
#include "algebra/ReaVecT.h"
#include "algebra/Tolerances.h"
#include "algebra/Txolesky.h"
#include "main/ErrorChannel.h"
#include "output/InfoFile.h"

namespace kestol {

namespace {

/// Asks for large pages under a large block of memory that begins anywhere.
void PreferLargePagesWithin(void* memory, std::size_t bytes) {
  constexpr std::size_t kLarge = std::size_t{1} << 22;
  constexpr std::size_t kPage = 4096;
  if (bytes >= kLarge && std::align(kPage, kLarge / 2, memory, bytes))
    PreferLargePages(memory, bytes);
}

}  // namespace

SkyLine::SkyLine(int n) : n_(n), heights_(n, 0), columns_(n, nullptr) {}

void SkyLine::AddNodePair(int node1, int node2, int dofsPerNode) {
  const int upper = (std::min(node1, node2) - 1) * dofsPerNode + 1;  // first degree of the one
  const int lower = (std::max(node1, node2) - 1) * dofsPerNode + 1;  // and of the other node
  for (int j = lower; j < lower + dofsPerNode; ++j) AddDegreePair(upper, j);
}

void SkyLine::AddDegreePair(int p, int q) {
  const auto [i, j] = std::minmax(p, q);
  assert(i >= 1 && j <= n_);
  heights_[j - 1] = std::max(heights_[j - 1], j - i + 1);
}

void SkyLine::Allocate(int dofsPerNode) {
  for (int j = 1; j <= n_; ++j) {
    const int dof = (j - 1) % dofsPerNode + 1;
    heights_[j - 1] = std::max(heights_[j - 1], dof);
  }
  storage_.reset();
  // Fresh pages come as zeros from the system; nothing is touched before it is assembled.
  const auto total = static_cast<std::size_t>(NumStored());
  storage_.reset(
      static_cast<double*>(std::calloc(std::max<std::size_t>(total, 1), sizeof(double))));
  if (!storage_) throw std::bad_alloc();
  PreferLargePagesWithin(storage_.get(), total * sizeof(double));

  double* column = storage_.get();
  for (int j = 1; j <= n_; ++j) {
    columns_[j - 1] = column;
    column += heights_[j - 1];
  }
  FindLastColumns();
  factorised_ = false;
}

/// A column that starts in row t can be met by every row from t on, so the last column of row i is
/// the largest one that starts in rows 1..i. Walking a row stops there instead of at n.
void SkyLine::FindLastColumns() {
  lastColumn_.assign(n_, 0);
  for (int j = 1; j <= n_; ++j) lastColumn_[j - heights_[j - 1]] = j;
  std::partial_sum(lastColumn_.begin(), lastColumn_.end(), lastColumn_.begin(),
                   [](int a, int b) { return std::max(a, b); });
}

long long SkyLine::NumStored() const {
  return std::accumulate(heights_.begin(), heights_.end(), 0LL);
}

double& SkyLine::Entry(int i, int j) {
  if (i > j) std::swap(i, j);
  CheckRange(i, j);
  if (IsStored(i, j)) return columns_[j - 1][j - i];
  outside_ = 0.0;
  return outside_;
}

void SkyLine::CheckRange(int i, int j) const {
  if (i < 1 || j > n_) Fatal("error in SkyLine::Entry. Index out of range\n");
}

void SkyLine::SetZero() {
  std::fill_n(storage_.get(), NumStored(), 0.0);
  factorised_ = false;
}

void SkyLine::AddBlock(int firstRow, int firstCol, const Matriu& block) {
  CheckRange(std::min(firstRow, firstCol), firstCol + block.ncols - 1);
  for (int c = 1; c <= block.ncols; ++c) {
    const int j = firstCol + c - 1;
    const int rows = std::min(block.nrows, j - firstRow + 1);             // those with i <= j
    const int outside = std::max(0, j - heights_[j - 1] + 1 - firstRow);  // those above the column
    double* const column = columns_[j - 1];
    for (int r = outside + 1; r <= rows; ++r) column[j - firstRow - r + 1] += block(r, c);
  }
}

/// Calls visit(j, entry) for every stored entry (i, j) of the whole row i, from left to right.
template <class Visit>
void SkyLine::VisitRow(int i, Visit visit) const {
  assert(i >= 1 && i <= n_);
  double* const column = columns_[i - 1];
  for (int k = heights_[i - 1] - 1; k >= 0; --k) visit(i - k, column[k]);
  for (int j = i + 1; j <= lastColumn_[i - 1]; ++j)
    if (IsStored(i, j)) visit(j, columns_[j - 1][j - i]);
}

void SkyLine::FillRow(int i, std::vector<double>& row) const {
  row.assign(n_, 0.0);
  VisitRow(i, [&](int j, double entry) { row[j - 1] = entry; });
}

void SkyLine::Prescribe(int p, double value, ReaVecT& rhs) {
  if (std::abs(value) > kZero) VisitRow(p, [&](int i, double entry) { rhs(i) -= entry * value; });
  Prescribe(p);
  rhs(p) = value;
}

void SkyLine::Prescribe(int p) {
  VisitRow(p, [](int, double& entry) { entry = 0.0; });
  columns_[p - 1][0] = 1.0;
}

double SkyLine::RowTimesVector(int i, const ReaVecT& x) const {
  double sum = 0.0;
  VisitRow(i, [&](int j, double entry) { sum += entry * x(j); });
  return sum;
}

void SkyLine::Times(const ReaVecT& x, ReaVecT& y) const {
  assert(x.n == n_ && !factorised_);
  y.Resize(n_, 0.0);
  for (int j = 1; j <= n_; ++j) {
    const double* const column = columns_[j - 1];  // column[k] is entry (j - k, j)
    const double xj = x(j);
    double sum = column[0] * xj;
    for (int k = 1; k < heights_[j - 1]; ++k) {
      sum += column[k] * x(j - k);
      y(j - k) += column[k] * xj;
    }
    y(j) = sum;  // the columns to come add their part
  }
}

void SkyLine::ScaleAndShift(const ReaVecT& scale, double shift) {
  assert(scale.n == n_ && !factorised_);
  for (int j = 1; j <= n_; ++j) {
    double* const column = columns_[j - 1];
    for (int k = 0; k < heights_[j - 1]; ++k) column[k] *= scale(j - k) * scale(j);
    column[0] += shift;
  }
}

int SkyLine::Factorise(std::ostream* info) {
  if (factorised_) Fatal("error in SkyLine::Solve. Matrix already factorised\n");
  if (const int failed = Txolesky({n_, heights_.data(), columns_.data()}, info)) return failed;
  factorised_ = true;
  Progress(info, "Txolesky finished\n");
  return 0;
}

int SkyLine::Substitute(ReaVecT& f, std::ostream* info) {
  assert(f.n == n_);
  if (!factorised_) Fatal("error in SkyLine::Substitute. Matrix not factorised\n");
  const Profile profile{n_, heights_.data(), columns_.data()};
  Progress(info, "Beginning 1st substitution in LU system\n");
  SubstituteForward(profile, f.begin());
  DivideByDiagonal(profile, f.begin());
  Progress(info, "Beginning 2nd substitution in LU system\n");
  SubstituteBackward(profile, f.begin());
  return 0;
}

}  // namespace kestol
