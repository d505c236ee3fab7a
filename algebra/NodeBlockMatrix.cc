#include "algebra/NodeBlockMatrix.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <numeric>

#include "algebra/Matriu.h"
#include "algebra/ReaVecT.h"
#include "algebra/Tolerances.h"
#include "main/ErrorChannel.h"
#include "output/InfoFile.h"

namespace kestol {

namespace {

/// to += the upper triangle of a square block.
void AddUpperTriangle(const double* block, int size, double* to) {
  for (int r = 0; r < size; ++r)
    for (int c = r; c < size; ++c) to[r * size + c] += block[r * size + c];
}

/// y += the product of a block on the diagonal, of which the upper triangle counts.
void AddDiagonalProduct(int B, const double* block, const double* x, double* y) {
  for (int r = 0; r < B; ++r) {
    y[r] += block[r * B + r] * x[r];
    for (int c = r + 1; c < B; ++c) {
      y[r] += block[r * B + c] * x[c];
      y[c] += block[r * B + c] * x[r];
    }
  }
}

/// y = K x. One pass over the blocks serves both triangles: y_I += K_IJ x_J and y_J += K_IJ^T x_I.
/// The products of the first sum are added up entry by entry along the whole row of blocks, and by
/// rows only behind it, so that both sums run over entries that lie side by side.
template <int B>
void Multiply(const UpperRows& rows, const double* block, const double* x, double* y) {
  const int nodes = static_cast<int>(rows.start.size()) - 1;
  std::fill_n(y, static_cast<std::size_t>(nodes) * B, 0.0);
  for (int node = 0; node < nodes; ++node) {
    const double* const xi = x + static_cast<std::ptrdiff_t>(node) * B;
    double* const yi = y + static_cast<std::ptrdiff_t>(node) * B;
    AddDiagonalProduct(B, block, xi, yi);
    block += B * B;
    double products[B * B] = {};
    for (int b = rows.start[node] + 1; b < rows.start[node + 1]; ++b, block += B * B) {
      const double* const xj = x + static_cast<std::ptrdiff_t>(rows.column[b]) * B;
      double* const yj = y + static_cast<std::ptrdiff_t>(rows.column[b]) * B;
      double mirrored[B] = {};
      for (int r = 0; r < B; ++r) {
        for (int c = 0; c < B; ++c) {
          products[r * B + c] += block[r * B + c] * xj[c];
          mirrored[c] += block[r * B + c] * xi[r];
        }
      }
      for (int c = 0; c < B; ++c) yj[c] += mirrored[c];
    }
    for (int r = 0; r < B; ++r)
      yi[r] += std::accumulate(products + r * B, products + r * B + B, 0.0);
  }
}

/// The same for nodes of any size.
void Multiply(int B, const UpperRows& rows, const double* block, const double* x, double* y) {
  const int nodes = static_cast<int>(rows.start.size()) - 1;
  std::fill_n(y, static_cast<std::size_t>(nodes) * B, 0.0);
  for (int node = 0; node < nodes; ++node) {
    const double* const xi = x + static_cast<std::ptrdiff_t>(node) * B;
    double* const yi = y + static_cast<std::ptrdiff_t>(node) * B;
    AddDiagonalProduct(B, block, xi, yi);
    block += B * B;
    for (int b = rows.start[node] + 1; b < rows.start[node + 1]; ++b) {
      const double* const xj = x + static_cast<std::ptrdiff_t>(rows.column[b]) * B;
      double* const yj = y + static_cast<std::ptrdiff_t>(rows.column[b]) * B;
      for (int r = 0; r < B; ++r) {
        for (int c = 0; c < B; ++c, ++block) {
          yi[r] += *block * xj[c];
          yj[c] += *block * xi[r];
        }
      }
    }
  }
}

}  // namespace

void NodeBlockMatrix::AddNodePair(int node1, int node2, int /*dofsPerNode*/) {
  pairs_.Add(node1 - 1, node2 - 1);
}

void NodeBlockMatrix::Allocate(int dofsPerNode) {
  if (n_ % dofsPerNode != 0)
    Fatal("error in NodeBlockMatrix::Allocate. ", n_, " degrees in nodes of ", dofsPerNode, "\n");
  values_ = {};
  dofs_ = dofsPerNode;
  rows_ = pairs_.TakeRows(NumNodes());
  FindLowerRows();
  values_.assign(PlaceOf(static_cast<int>(rows_.column.size())), 0.0);
}

/// The same blocks by their columns: what a walk along a whole row of the matrix needs.
void NodeBlockMatrix::FindLowerRows() {
  const int nodes = NumNodes();
  lowerStart_.assign(nodes + 1, 0);
  const auto forEachLower = [&](auto visit) {
    for (int row = 0; row < nodes; ++row)
      for (int b = rows_.start[row] + 1; b < rows_.start[row + 1]; ++b)
        visit(row, rows_.column[b], b);
  };
  forEachLower([&](int, int column, int) { ++lowerStart_[column + 1]; });
  std::partial_sum(lowerStart_.begin(), lowerStart_.end(), lowerStart_.begin());
  lowerRow_.resize(lowerStart_.back());
  lowerBlock_.resize(lowerStart_.back());
  std::vector<int> next(lowerStart_.begin(), lowerStart_.end() - 1);
  forEachLower([&](int row, int column, int b) {
    lowerRow_[next[column]] = row;
    lowerBlock_[next[column]++] = b;
  });
}

/// Which block couples two nodes, row <= column, counted from 0; -1 when none does.
int NodeBlockMatrix::FindBlock(int row, int column) const {
  if (row < 0 || column >= NumNodes()) return -1;
  const auto first = rows_.column.begin() + rows_.start[row];
  const auto last = rows_.column.begin() + rows_.start[row + 1];
  const auto place = std::lower_bound(first, last, column);
  return place == last || *place != column ? -1 : static_cast<int>(place - rows_.column.begin());
}

double& NodeBlockMatrix::Entry(int i, int j) {
  if (i > j) std::swap(i, j);
  const int block = i < 1 ? -1 : FindBlock((i - 1) / dofs_, (j - 1) / dofs_);
  if (block < 0) Fatal("error in NodeBlockMatrix::Entry. (", i, ",", j, ") is not stored\n");
  return BlockValues(block)[(i - 1) % dofs_ * dofs_ + (j - 1) % dofs_];
}

void NodeBlockMatrix::SetZero() {
  std::fill(values_.begin(), values_.end(), 0.0);
}

void NodeBlockMatrix::AddBlock(int firstRow, int firstCol, const Matriu& block) {
  const auto begins = [this](int degree) { return (degree - 1) % dofs_ == 0; };
  const bool isWhole = block.nrows == dofs_ && block.ncols == dofs_ && begins(firstRow) &&
                       begins(firstCol) && firstRow >= 1 && firstRow <= firstCol;
  const int place = isWhole ? FindBlock((firstRow - 1) / dofs_, (firstCol - 1) / dofs_) : -1;
  if (place >= 0) {
    double* const to = BlockValues(place);
    const double* const from = block.data.get();
    if (firstRow == firstCol) return AddUpperTriangle(from, dofs_, to);
    for (int k = 0; k < dofs_ * dofs_; ++k) to[k] += from[k];
    return;
  }
  for (int r = 1; r <= block.nrows; ++r) {
    for (int c = 1; c <= block.ncols; ++c) {
      const int i = firstRow + r - 1;
      const int j = firstCol + c - 1;
      if (i <= j) Entry(i, j) += block(r, c);
    }
  }
}

/// Calls visit(j, entry) for every stored entry (i, j) of the whole row `dof`, from left to right.
template <class Matrix, class Visit>
void NodeBlockMatrix::VisitRow(Matrix& K, int dof, Visit visit) {
  assert(dof >= 1 && dof <= K.n_);
  const int B = K.dofs_;
  const int node = (dof - 1) / B;
  const int d = (dof - 1) % B;
  for (int k = K.lowerStart_[node]; k < K.lowerStart_[node + 1]; ++k) {
    auto* const block = K.BlockValues(K.lowerBlock_[k]);
    for (int r = 0; r < B; ++r) visit(K.lowerRow_[k] * B + r + 1, block[r * B + d]);
  }
  auto* const diagonal = K.BlockValues(K.rows_.start[node]);
  for (int r = 0; r < d; ++r) visit(node * B + r + 1, diagonal[r * B + d]);
  for (int c = d; c < B; ++c) visit(node * B + c + 1, diagonal[d * B + c]);
  for (int b = K.rows_.start[node] + 1; b < K.rows_.start[node + 1]; ++b) {
    auto* const block = K.BlockValues(b);
    for (int c = 0; c < B; ++c) visit(K.rows_.column[b] * B + c + 1, block[d * B + c]);
  }
}

void NodeBlockMatrix::Prescribe(int dof, double value, ReaVecT& rhs) {
  if (std::abs(value) > kZero)
    VisitRow(*this, dof, [&](int j, double entry) { rhs(j) -= entry * value; });
  VisitRow(*this, dof, [](int, double& entry) { entry = 0.0; });
  Entry(dof, dof) = 1.0;
  rhs(dof) = value;
}

double NodeBlockMatrix::RowTimesVector(int dof, const ReaVecT& x) const {
  double sum = 0.0;
  VisitRow(*this, dof, [&](int j, double entry) { sum += entry * x(j); });
  return sum;
}

void NodeBlockMatrix::Times(const ReaVecT& x, ReaVecT& y) const {
  assert(x.n == n_ && &x != &y);
  y.Resize(n_, 0.0);
  const double* const values = values_.data();
  if (dofs_ == 3) return Multiply<3>(rows_, values, x.begin(), y.begin());
  if (dofs_ == 6) return Multiply<6>(rows_, values, x.begin(), y.begin());
  Multiply(dofs_, rows_, values, x.begin(), y.begin());
}

void NodeBlockMatrix::ScaleAndShift(const ReaVecT& scale, double shift) {
  assert(scale.n == n_);
  for (int node = 0; node < NumNodes(); ++node) {
    const double* const si = scale.begin() + static_cast<std::ptrdiff_t>(node) * dofs_;
    for (int b = rows_.start[node]; b < rows_.start[node + 1]; ++b) {
      const double* const sj = scale.begin() + static_cast<std::ptrdiff_t>(rows_.column[b]) * dofs_;
      double* const block = BlockValues(b);
      for (int r = 0; r < dofs_; ++r)
        for (int c = 0; c < dofs_; ++c) block[r * dofs_ + c] *= si[r] * sj[c];
    }
    double* const diagonal = BlockValues(rows_.start[node]);
    for (int d = 0; d < dofs_; ++d) diagonal[d * dofs_ + d] += shift;
  }
}

int NodeBlockMatrix::Factorise(std::ostream* /*info*/) {
  Fatal("error NodeBlockMatrix::Factorise not implemented\n");
}

int NodeBlockMatrix::Substitute(ReaVecT& /*rhs*/, std::ostream* /*info*/) {
  Fatal("error NodeBlockMatrix::Substitute not implemented\n");
}

void NodeBlockMatrix::Print(std::ostream& stream) const {
  stream << "\nprinting NodeBlockMatrix size=" << n_ << "x" << n_ << "\n";
  for (int i = 1; i <= n_; ++i) {
    const char* separator = "";
    VisitRow(*this, i, [&](int j, double entry) {
      if (j < i) return;
      stream << separator << "(" << i << "," << j << ")=" << entry;
      separator = "    ";
    });
    stream << "\n";
  }
  stream << "\n";
}

void NodeBlockMatrix::CopyFromYouToMat(Matriu& dense) const {
  dense.Redimension(n_, n_);
  dense.Fill(0.0);
  for (int i = 1; i <= n_; ++i)
    VisitRow(*this, i, [&](int j, double entry) { dense(i, j) = entry; });
}

void NodeBlockMatrix::WriteForVemo(std::ostream& /*stream*/) const {
  Fatal("error NodeBlockMatrix::WriteForVemo not implemented\n");
}

void NodeBlockMatrix::PrintInfo(std::ostream& stream) const {
  const std::size_t blocks = rows_.column.size();
  const std::size_t bytes =
      values_.size() * sizeof(double) + (blocks + 2 * lowerRow_.size()) * sizeof(int);
  Progress(&stream,
           "\nINFORMATION ABOUT STIFFNESS MATRIX\n"
           "%s"
           "Degrees of freedom= %i\n"
           "Total number of positions= %lli\n"
           "Amount of memory= %.1lfMb\n\n",
           Title(), n_, static_cast<long long>(values_.size()),
           static_cast<double>(bytes) / kMegabyte);
}

}  // namespace kestol
