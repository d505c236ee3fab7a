#include "algebra/Txolesky.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <new>
#include <numeric>
#include <vector>

#include "algebra/Zero.h"
#include "output/InfoFile.h"

// The factorisation in blocks. The degrees are cut into blocks of equal size; the columns of one
// block are the panel. A panel is brought to its final form from its top block row downwards, with
// G = D U in place of U, so that no division stands inside a product:
//
//              panel
//        U U U | K          1. load       G_I := K_I
//          U U | K          2. reduce     G_I -= sum over K above I of U_KI^T G_K
//            U | G_I <-     3. solve      G_I := U_II^-T G_I
//              | .          4. store      U_I := D_I^-1 G_I
//              | square
//
// The last block row of a panel is its own square, which is reduced alike and then factorised in
// steps of eight rows; the pivots appear in increasing order. Step 2 is nearly all of the work. It
// is done in tiles of 8 x 24: eight columns of U straight from the profile, 24 columns of G from a
// working copy by rows (a sliver).
//
// Heights vary. The columns of each block are therefore taken in the order of their first rows,
// both as the columns of slivers and as the rows of tiles, so that columns of similar reach go
// together; what is missing within a tile is filled with zeros.

namespace {

constexpr int kRows = kTileRows;
constexpr int kWidth = kTileColumns;

/// Rows of U and G that are multiplied at a time: a sliver of them stays in the nearest caches.
constexpr int kChunk = 256;

/// Largest block; a panel of it and 256 rows fits the second cache.
constexpr int kLargestBlock = 4 * kWidth;

struct FreeAligned {
  void operator()(double* buffer) const { ::operator delete[](buffer, std::align_val_t(64)); }
};
using AlignedBuffer = std::unique_ptr<double[], FreeAligned>;

AlignedBuffer NewAligned(std::size_t length) {
  return AlignedBuffer(new (std::align_val_t(64)) double[length]);
}

/// Working copy of 24 columns, row after row, from row `first` on.
struct Sliver {
  const int* columns;
  int top;    // the first row that any of the columns has
  int first;  // the first row of the block of `top`
  double* rows;

  double* Row(int i) const { return rows + static_cast<std::ptrdiff_t>(i - first) * kWidth; }
};

/// Degrees and rows are counted from 0 in here. The last block is filled up with columns that have
/// nothing above the diagonal.
class Factorisation {
public:
  Factorisation(const Profile& K, const TileKernel& kernel);
  int Run(std::ostream* info);

private:
  void SortBlocks();
  int BlockBegin(int i) const;
  std::size_t PanelLength(int block) const;
  void OpenPanel(int block);
  void Load(int block);
  void Reduce(int block, bool isSquare);
  void Solve(int block);
  int FactoriseSquare(int block, std::ostream* info);
  void FillSquare(int begin);
  int FactoriseTriangle(int row, double* tile, std::ostream* info);
  void ReduceRows(const Sliver* slivers, int count, int begin, int row);
  void SolveRows(const Sliver* slivers, int count, int row);
  void PointTo(const int* group, int first, int last, const double** a);

  Profile K_;
  const TileKernel& kernel_;
  int blockSize_;
  int numBlocks_;
  int numSlivers_;
  std::vector<int> top_;      // first stored row of each column
  std::vector<int> natural_;  // 0, 1, 2, ...
  std::vector<int> byTop_;    // the columns of each block, the highest ones first
  std::vector<double> pivots_;
  std::vector<Sliver> panel_;
  std::vector<Sliver> square_;
  AlignedBuffer panelRows_;
  AlignedBuffer squareRows_;
  std::vector<double> padded_;
};

/// Wide blocks make the products efficient and cost work on zeros above low columns.
int BlockSize(const Profile& K) {
  const double total = std::accumulate(K.heights, K.heights + K.n, 0.0);
  const double mean = total / std::max(K.n, 1);
  if (mean < 100) return kWidth;
  return mean < 500 ? 2 * kWidth : kLargestBlock;
}

Factorisation::Factorisation(const Profile& K, const TileKernel& kernel)
    : K_(K),
      kernel_(kernel),
      blockSize_(BlockSize(K)),
      numBlocks_((K.n + blockSize_ - 1) / blockSize_),
      numSlivers_(blockSize_ / kWidth),
      top_(static_cast<std::size_t>(numBlocks_) * blockSize_),
      natural_(top_.size()),
      pivots_(top_.size(), 1.0),
      panel_(numSlivers_),
      square_(numSlivers_),
      padded_(static_cast<std::size_t>(kRows) * kChunk) {
  std::iota(natural_.begin(), natural_.end(), 0);
  top_ = natural_;
  for (int j = 0; j < K.n; ++j) top_[j] = j - K.heights[j] + 1;
  SortBlocks();

  std::size_t longest = 0;
  for (int block = 0; block < numBlocks_; ++block) longest = std::max(longest, PanelLength(block));
  panelRows_ = NewAligned(longest);
  squareRows_ = NewAligned(static_cast<std::size_t>(blockSize_) * blockSize_);
}

void Factorisation::SortBlocks() {
  byTop_ = natural_;
  for (auto begin = byTop_.begin(); begin != byTop_.end(); begin += blockSize_) {
    std::stable_sort(begin, begin + blockSize_, [&](int i, int j) { return top_[i] < top_[j]; });
  }
}

/// The first row of the block that row i lies in.
int Factorisation::BlockBegin(int i) const {
  return i / blockSize_ * blockSize_;
}

/// Numbers in the slivers of a panel: each goes from the block of its highest column to the end of
/// the panel.
std::size_t Factorisation::PanelLength(int block) const {
  const int begin = block * blockSize_;
  std::size_t length = 0;
  for (int first = begin; first < begin + blockSize_; first += kWidth) {
    const int rows = begin + blockSize_ - BlockBegin(top_[byTop_[first]]);
    length += static_cast<std::size_t>(rows) * kWidth;
  }
  return length;
}

void Factorisation::OpenPanel(int block) {
  const int begin = block * blockSize_;
  double* rows = panelRows_.get();
  double* squareRows = squareRows_.get();
  for (int s = 0; s < numSlivers_; ++s) {
    const int* const columns = &byTop_[begin + s * kWidth];
    const int top = top_[columns[0]];
    const int first = BlockBegin(top);
    panel_[s] = {columns, top, first, rows};
    square_[s] = {&natural_[begin + s * kWidth], begin, begin, squareRows};
    rows += static_cast<std::ptrdiff_t>(begin + blockSize_ - first) * kWidth;
    squareRows += static_cast<std::ptrdiff_t>(blockSize_) * kWidth;
  }
}

int Factorisation::Run(std::ostream* info) {
  for (int block = 0; block < numBlocks_; ++block) {
    OpenPanel(block);
    for (int above = panel_[0].first / blockSize_; above < block; ++above) {
      Load(above);
      Reduce(above, false);
      Solve(above);
    }
    if (const int failed = FactoriseSquare(block, info)) return failed;
  }
  return 0;
}

void Factorisation::Load(int block) {
  const int begin = block * blockSize_;
  const int end = begin + blockSize_;
  for (const Sliver& sliver : panel_) {
    if (sliver.first > begin) continue;
    for (int lane = 0; lane < kWidth; ++lane) {
      const int j = sliver.columns[lane];
      const int stored = std::clamp(top_[j], begin, end);
      double* to = sliver.Row(begin) + lane;
      for (int i = begin; i < stored; ++i, to += kWidth) *to = 0.0;
      for (int i = stored; i < end; ++i, to += kWidth) *to = K_.columns[j][j - i];
    }
  }
}

/// Subtracts from the rows of `block` the products with all rows above it. Of a square the tiles on
/// and above the diagonal are enough.
void Factorisation::Reduce(int block, bool isSquare) {
  const int begin = block * blockSize_;
  const int* const columns = &byTop_[begin];
  int last = 0;
  for (int first = std::max(top_[columns[0]], panel_[0].top); first < begin; first = last) {
    last = std::min(begin, (first / kChunk + 1) * kChunk);
    for (int g = 0; g < blockSize_; g += kRows) {
      const int groupFirst = std::max(first, top_[columns[g]]);
      if (groupFirst >= last) break;
      const double* a[kRows];
      int rows[kRows];
      PointTo(columns + g, groupFirst, last, a);
      for (int r = 0; r < kRows; ++r) rows[r] = columns[g + r] - begin;
      for (int s = isSquare ? g / kWidth : 0; s < numSlivers_; ++s) {
        const Sliver& sliver = panel_[s];
        const int common = std::max(groupFirst, sliver.top);
        if (common >= last) break;
        kernel_.subtractProduct(a, sliver.Row(last - 1), last - common, sliver.Row(begin), rows);
      }
    }
  }
}

/// Points a[r] to rows first..last-1 of eight columns of U, read from the last row upwards. Columns
/// that begin below `first` are copied and filled up with zeros.
void Factorisation::PointTo(const int* group, int first, int last, const double** a) {
  for (int r = 0; r < kRows; ++r) {
    const int j = group[r];
    if (top_[j] <= first) {
      a[r] = K_.columns[j] + (j - last + 1);
      continue;
    }
    double* const copy = &padded_[static_cast<std::size_t>(r) * kChunk];
    const int stored = std::max(0, last - top_[j]);
    if (stored > 0) std::copy_n(K_.columns[j] + (j - last + 1), stored, copy);
    std::fill(copy + stored, copy + (last - first), 0.0);
    a[r] = copy;
  }
}

void Factorisation::Solve(int block) {
  const int begin = block * blockSize_;
  int count = 0;  // slivers that reach the block
  while (count < numSlivers_ && panel_[count].first <= begin) ++count;
  for (int row = begin; row < begin + blockSize_; row += kRows) {
    ReduceRows(panel_.data(), count, begin, row);
    SolveRows(panel_.data(), count, row);
  }
}

/// Subtracts from eight rows the products with the rows above them in the same block.
void Factorisation::ReduceRows(const Sliver* slivers, int count, int begin, int row) {
  const int* const group = &natural_[row];
  const int first = std::max(begin, *std::min_element(&top_[row], &top_[row] + kRows));
  if (first >= row) return;
  const double* a[kRows];
  PointTo(group, first, row, a);
  for (int s = 0; s < count; ++s) {
    const int common = std::max(first, slivers[s].top);
    if (common >= row) continue;
    kernel_.subtractProduct(a, slivers[s].Row(row - 1), row - common, slivers[s].Row(row),
                            natural_.data());
  }
}

/// Finishes eight rows of G with the triangle of U on them, and stores the same rows of U.
void Factorisation::SolveRows(const Sliver* slivers, int count, int row) {
  const int end = row + kRows;
  double u[kRows * kRows] = {};
  for (int i = row; i < std::min(end, K_.n); ++i) {
    for (int k = std::max(row, top_[i]); k < i; ++k) {
      u[kRows * (k - row) + i - row] = K_.columns[i][i - k];
    }
  }
  alignas(64) double divided[kRows * kWidth];
  for (int s = 0; s < count; ++s) {
    if (slivers[s].top >= end) continue;
    kernel_.solveTriangle(u, slivers[s].Row(row));
    kernel_.divideRows(slivers[s].Row(row), &pivots_[row], divided);
    for (int lane = 0; lane < kWidth; ++lane) {
      const int j = slivers[s].columns[lane];
      if (j < end) continue;
      for (int i = std::max(row, top_[j]); i < end; ++i) {
        K_.columns[j][j - i] = divided[kWidth * (i - row) + lane];
      }
    }
  }
}

int Factorisation::FactoriseSquare(int block, std::ostream* info) {
  const int begin = block * blockSize_;
  for (const Sliver& sliver : panel_) std::fill_n(sliver.Row(begin), blockSize_ * kWidth, 0.0);
  Reduce(block, true);
  FillSquare(begin);
  for (int row = begin; row < begin + blockSize_; row += kRows) {
    const int s = (row - begin) / kWidth;  // the sliver of the columns row..row+7
    ReduceRows(&square_[s], numSlivers_ - s, begin, row);
    double* const tile = square_[s].Row(row) + (row - begin) % kWidth;
    if (const int failed = FactoriseTriangle(row, tile, info)) return failed;
    SolveRows(&square_[s], numSlivers_ - s, row);
  }
  return 0;
}

/// Brings what was subtracted from the square into natural order and adds K. Tiles below the
/// diagonal were left out in the order of the panel; their values stand at the mirrored place.
void Factorisation::FillSquare(int begin) {
  std::fill_n(squareRows_.get(), static_cast<std::size_t>(blockSize_) * blockSize_, 0.0);
  for (int q = 0; q < blockSize_; ++q) {
    const Sliver& sliver = panel_[q / kWidth];
    for (int p = 0; p <= q; ++p) {
      const auto [i, j] = std::minmax(byTop_[begin + p], byTop_[begin + q]);
      if (i < top_[j] || j >= K_.n) continue;
      square_[(j - begin) / kWidth].Row(i)[(j - begin) % kWidth] =
          K_.columns[j][j - i] + sliver.Row(byTop_[begin + p])[q % kWidth];
    }
  }
}

/// The 8 x 8 square on the diagonal, entry by entry. Returns the first failing degree, from 1.
int Factorisation::FactoriseTriangle(int row, double* tile, std::ostream* info) {
  const int end = std::min(row + kRows, K_.n);
  const auto g = [&](int i, int j) -> double& { return tile[(i - row) * kWidth + j - row]; };
  for (int i = row; i < end; ++i) {
    const double pivot = g(i, i);
    K_.columns[i][0] = pivots_[i] = pivot;
    if ((i + 1) % 500 == 0) Progress(info, "Solving degree %i of %i\n", i + 1, K_.n);
    if (!(std::abs(pivot) >= kZero)) return i + 1;
    for (int j = i + 1; j < end; ++j) {
      if (i < top_[j]) continue;
      const double u = g(i, j) / pivot;
      for (int k = i + 1; k <= j; ++k) g(k, j) -= g(i, k) * u;
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
