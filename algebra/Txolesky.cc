#include "algebra/Txolesky.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <new>
#include <vector>

#include "algebra/ProfileBlocks.h"
#include "algebra/Tolerances.h"
#include "output/InfoFile.h"

namespace kestol {

// The factorisation in blocks. The degrees are cut into blocks of equal size; the columns of one
// block are a panel. A panel is brought to its final form block by block from its top downwards,
// with G = D U in place of U, so that no division stands inside a product:
//
//                  panel
//        U  U  U | G        1. load     G_I := K_I
//           U  U | G        2. reduce   G_I -= sum over the blocks H above I of U_HI^T G_H
//              U | G_I      3. solve    G_I := U_II^-T G_I
//                | K        4. store    U_I := D_I^-1 G_I
//                | square
//
// The last block of a panel is its own square. It is reduced alike and then factorised in steps of
// eight rows, so that the pivots appear in increasing order.
//
// Step 2 is nearly all of the work. It is done in tiles: eight columns of U straight from the
// profile times 24 columns of G from a working copy by rows, a sliver. Heights vary. The columns of
// each block are therefore taken in the order of their first rows, both as the columns of slivers
// and as the rows of tiles, so that columns of similar reach go together and little is multiplied
// by the zeros that fill up a tile.

namespace {

constexpr int kRows = kTileRows;
constexpr int kWidth = kTileColumns;
constexpr int kReportEvery = 500;           ///< degrees
constexpr std::align_val_t kCacheLine{64};  ///< boundary of every row of a sliver

struct FreeAligned {
  void operator()(double* buffer) const { ::operator delete[](buffer, kCacheLine); }
};
using AlignedBuffer = std::unique_ptr<double[], FreeAligned>;

AlignedBuffer NewAligned(std::size_t length) {
  return AlignedBuffer(new (kCacheLine) double[length]);
}

/// Degrees, rows and blocks are counted from 0, blocks named by their first row.
class Factorisation {
public:
  Factorisation(const Profile& K, const TileKernel& kernel);
  int Run(std::ostream* info);

private:
  std::size_t PanelLength(int panel) const;
  void OpenPanel(int panel);
  void Load(int block);
  void Reduce(int block, bool isSquare);
  void ReduceGroup(const int* group, int block, int first, int last, int firstSliver);
  void Solve(int block);
  int FactoriseSquare(int block, std::ostream* info);
  void FillSquare(int block);
  int FactoriseTriangle(int row, double* tile, std::ostream* info);
  void ReduceRows(const Sliver* slivers, int count, int block, int row);
  void SolveRows(const Sliver* slivers, int count, int row);

  ProfileBlocks blocks_;
  const Profile& K_;
  const TileKernel& kernel_;
  const int blockSize_;
  const int numSlivers_;
  std::vector<double> pivots_;  // D; 1.0 behind the last degree
  std::vector<Sliver> panel_;   // the highest columns first
  std::vector<Sliver> square_;  // columns in their own order
  AlignedBuffer panelRows_;
  AlignedBuffer squareRows_;
};

Factorisation::Factorisation(const Profile& K, const TileKernel& kernel)
    : blocks_(K),
      K_(blocks_.K),
      kernel_(kernel),
      blockSize_(blocks_.size),
      numSlivers_(blockSize_ / kWidth),
      pivots_(blocks_.top.size(), 1.0),
      panel_(numSlivers_),
      square_(numSlivers_) {
  std::size_t longest = 0;
  for (int panel = 0; panel < K_.n; panel += blockSize_)
    longest = std::max(longest, PanelLength(panel));
  panelRows_ = NewAligned(longest);
  squareRows_ = NewAligned(static_cast<std::size_t>(blockSize_) * blockSize_);
}

/// Numbers in the slivers of a panel: each goes from the block of its highest column to the end of
/// the square.
std::size_t Factorisation::PanelLength(int panel) const {
  std::size_t length = 0;
  for (int column = panel; column < panel + blockSize_; column += kWidth) {
    const int first = blocks_.BlockBegin(blocks_.top[blocks_.byTop[column]]);
    length += static_cast<std::size_t>(panel + blockSize_ - first) * kWidth;
  }
  return length;
}

void Factorisation::OpenPanel(int panel) {
  double* rows = panelRows_.get();
  double* squareRows = squareRows_.get();
  for (int s = 0; s < numSlivers_; ++s) {
    const int* const columns = &blocks_.byTop[panel + s * kWidth];
    const int top = blocks_.top[columns[0]];
    const int first = blocks_.BlockBegin(top);
    panel_[s] = {columns, top, first, rows};
    square_[s] = {&blocks_.natural[panel + s * kWidth], panel, panel, squareRows};
    rows += static_cast<std::ptrdiff_t>(panel + blockSize_ - first) * kWidth;
    squareRows += static_cast<std::ptrdiff_t>(blockSize_) * kWidth;
  }
}

int Factorisation::Run(std::ostream* info) {
  for (int panel = 0; panel < K_.n; panel += blockSize_) {
    OpenPanel(panel);
    for (int block = panel_[0].first; block < panel; block += blockSize_) {
      Load(block);
      Reduce(block, false);
      Solve(block);
    }
    if (const int failed = FactoriseSquare(panel, info)) return failed;
  }
  return 0;
}

void Factorisation::Load(int block) {
  for (const Sliver& sliver : panel_)
    if (sliver.first <= block) blocks_.Load(sliver, block);
}

/// Subtracts from the rows of a block the products with all rows above it, in pieces of so many
/// rows that those of the panel stay in the second cache. Of a square the tiles on and above the
/// diagonal are enough.
void Factorisation::Reduce(int block, bool isSquare) {
  const int* const columns = &blocks_.byTop[block];
  const int top = std::max(blocks_.top[columns[0]], panel_[0].top);
  for (int first = top; first < block; first += ProfileBlocks::kMostRows) {
    const int last = std::min(block, first + ProfileBlocks::kMostRows);
    for (int g = 0; g < blockSize_; g += kRows)
      ReduceGroup(columns + g, block, first, last, isSquare ? g / kWidth : 0);
  }
}

/// The same for eight rows of the block and rows first..last-1 above it.
void Factorisation::ReduceGroup(const int* group, int block, int first, int last, int firstSliver) {
  const int groupFirst = std::max(first, blocks_.top[group[0]]);
  if (groupFirst >= last) return;
  const double* a[kRows];
  blocks_.PointTo(group, groupFirst, last, a);
  int rows[kRows];
  for (int r = 0; r < kRows; ++r) rows[r] = group[r] - block;
  for (int s = firstSliver; s < numSlivers_; ++s) {
    const Sliver& sliver = panel_[s];
    const int common = std::max(groupFirst, sliver.top);
    if (common >= last) return;
    kernel_.subtractProduct(a, sliver.Row(last - 1), last - common, sliver.Row(block), rows);
  }
}

void Factorisation::Solve(int block) {
  int count = 0;  // slivers that reach the block
  while (count < numSlivers_ && panel_[count].first <= block) ++count;
  for (int row = block; row < block + blockSize_; row += kRows) {
    ReduceRows(panel_.data(), count, block, row);
    SolveRows(panel_.data(), count, row);
  }
}

/// Subtracts from eight rows the products with the rows above them in the same block.
void Factorisation::ReduceRows(const Sliver* slivers, int count, int block, int row) {
  const auto tops = blocks_.top.begin() + row;
  const int first = std::max(block, *std::min_element(tops, tops + kRows));
  if (first >= row) return;
  const double* a[kRows];
  blocks_.PointTo(&blocks_.natural[row], first, row, a);
  for (int s = 0; s < count; ++s) {
    const int common = std::max(first, slivers[s].top);
    if (common >= row) return;
    kernel_.subtractProduct(a, slivers[s].Row(row - 1), row - common, slivers[s].Row(row),
                            blocks_.natural.data());
  }
}

/// Finishes eight rows of G with the triangle of U on them, and stores the same rows of U.
void Factorisation::SolveRows(const Sliver* slivers, int count, int row) {
  const int end = row + kRows;
  double u[kRows * kRows] = {};
  for (int i = row; i < std::min(end, K_.n); ++i)
    for (int k = std::max(row, blocks_.top[i]); k < i; ++k)
      u[kRows * (k - row) + i - row] = K_.columns[i][i - k];
  alignas(64) double divided[kRows * kWidth];
  for (int s = 0; s < count && slivers[s].top < end; ++s) {
    kernel_.solveTriangle(u, slivers[s].Row(row));
    kernel_.divideRows(slivers[s].Row(row), &pivots_[row], divided);
    blocks_.Store(slivers[s], row, divided);
  }
}

int Factorisation::FactoriseSquare(int block, std::ostream* info) {
  for (const Sliver& sliver : panel_) std::fill_n(sliver.Row(block), blockSize_ * kWidth, 0.0);
  Reduce(block, true);
  FillSquare(block);
  for (int row = block; row < block + blockSize_; row += kRows) {
    const int s = (row - block) / kWidth;  // the sliver of columns row..row+7
    ReduceRows(&square_[s], numSlivers_ - s, block, row);
    double* const tile = square_[s].Row(row) + (row - block) % kWidth;
    if (const int failed = FactoriseTriangle(row, tile, info)) return failed;
    SolveRows(&square_[s], numSlivers_ - s, row);
  }
  return 0;
}

/// Brings what was subtracted from the square into natural order and adds K. Tiles below the
/// diagonal were left out in the order of the panel; their values stand at the mirrored place.
void Factorisation::FillSquare(int block) {
  std::fill_n(squareRows_.get(), static_cast<std::size_t>(blockSize_) * blockSize_, 0.0);
  const int* const columns = &blocks_.byTop[block];
  for (int q = 0; q < blockSize_; ++q) {
    const double* const reduced = panel_[q / kWidth].Row(block) + q % kWidth;
    for (int p = 0; p <= q; ++p) {
      const auto [i, j] = std::minmax(columns[p], columns[q]);
      if (i < blocks_.top[j] || j >= K_.n) continue;
      square_[(j - block) / kWidth].Row(i)[(j - block) % kWidth] =
          K_.columns[j][j - i] + reduced[(columns[p] - block) * kWidth];
    }
  }
}

/// The 8 x 8 square on the diagonal, entry by entry. Returns the first failing degree, from 1.
int Factorisation::FactoriseTriangle(int row, double* tile, std::ostream* info) {
  const int end = std::min(row + kRows, K_.n);
  const auto g = [&](int i, int j) -> double& { return tile[(i - row) * kWidth + j - row]; };
  for (int i = row; i < end; ++i) {
    const double pivot = g(i, i);
    K_.columns[i][0] = pivots_[i] = pivot;  // d_i
    if ((i + 1) % kReportEvery == 0) Progress(info, "Solving degree %i of %i\n", i + 1, K_.n);
    if (!(std::abs(pivot) >= kZero)) return i + 1;
    for (int j = i + 1; j < end; ++j) {
      if (i < blocks_.top[j]) continue;
      const double u = g(i, j) / pivot;                         // u_ij = g_ij / d_i
      for (int k = i + 1; k <= j; ++k) g(k, j) -= g(i, k) * u;  // g_kj -= g_ik u_ij
      K_.columns[j][j - i] = u;
    }
  }
  return 0;
}

}  // namespace

int Txolesky(const Profile& K, std::ostream* info) {
  return Txolesky(K, info, SupportedTileKernels().front());
}

int Txolesky(const Profile& K, std::ostream* info, const TileKernel& kernel) {
  return Factorisation(K, kernel).Run(info);
}

}  // namespace kestol
