#include "algebra/SparseMatrix.h"

#include <algorithm>
#include <cassert>
#include <cstdlib>
#include <limits>
#include <new>

#include "algebra/Matriu.h"
#include "main/ErrorChannel.h"

namespace kestol {

namespace {

int SumOf(const std::vector<int>& lengths) {
  long long sum = 0;
  for (const int length : lengths) {
    if (length < 0) Fatal("Sparse Matrix size must be greater than 0");
    sum += length;
  }
  if (sum < 1) Fatal("Sparse Matrix size must be greater than 0");
  if (sum > std::numeric_limits<int>::max() - SparseMatrix::kPadding) throw std::bad_alloc();
  return static_cast<int>(sum);
}

/// The place of the only `wanted` among `count` numbers, or -1. Looks at all of them: without an
/// early exit, and hence without a branch misprediction, the search is a vector loop that the
/// processor overlaps with the next one.
int PlaceOf(int wanted, const int* numbers, int count) {
  int place = -1;
  for (int k = 0; k < count; ++k) place = numbers[k] == wanted ? k : place;
  return place;
}

/// Which of the node blocks of a row has its first column at `firstCol`, the first unclaimed one
/// when it is new; -1 when the row is full.
int FindOrClaimBlock(int* columns, int blocks, int firstCol) {
  if (const int b = PlaceOf(firstCol, columns, blocks); b >= 0) return b;
  int* const unclaimed = std::find(columns, columns + blocks, -1);
  if (unclaimed == columns + blocks) return -1;
  *unclaimed = firstCol;
  return static_cast<int>(unclaimed - columns);
}

/// Whether M at (i, j) consists of node blocks of B rows, and the block and its mirror share no
/// rows, so that claiming one after the other is claiming entry by entry.
template <int B>
bool IsWholeBlocks(int i, int j, const Matriu& M) {
  const bool areAligned = i % B == 0 && j % B == 0 && M.nrows % B == 0 && M.ncols % B == 0;
  return areAligned && (i == j || i + M.nrows <= j || j + M.ncols <= i);
}

/// to += the node block whose entry (r, c) is block[r * rowStride + c * columnStride].
template <int B>
void AddColumns(const double* block, int rowStride, int columnStride, double* to) {
  for (int c = 0; c < B; ++c, to += B, block += columnStride)
    for (int r = 0; r < B; ++r) to[r] += block[r * rowStride];
}

}  // namespace

SparseMatrix::SparseMatrix(int n, const std::vector<int>& rowLengths, int blockSizeOfNodes)
    : nnz(SumOf(rowLengths)), rows(n), cols(n), blockSize(blockSizeOfNodes) {
  assert(blockSize == 1 || blockSize == 3 || blockSize == 6);
  assert(static_cast<int>(rowLengths.size()) == n && n % blockSize == 0);
  values.assign(static_cast<std::size_t>(nnz) + kPadding, 0.0);
  colIndex.assign(nnz / (blockSize * blockSize), -1);
  rowStart.resize(n + 1);
  rowStart[0] = 0;
  for (int i = 0; i < n; ++i) {
    assert(rowLengths[i] % blockSize == 0 && rowLengths[i] == rowLengths[i - i % blockSize]);
    rowStart[i + 1] = rowStart[i] + rowLengths[i];
  }
}

void SparseMatrix::ClearStructure() {
  ClearValues();
  std::fill(rowStart.begin(), rowStart.end(), 0);
  std::fill(colIndex.begin(), colIndex.end(), -1);
}

void SparseMatrix::ClearValues() {
  std::fill(values.begin(), values.end(), 0.0);
}

void SparseMatrix::CheckBounds(int i, int j) const {
  if (i < 0 || i >= rows || j < 0 || j >= cols)
    Fatal("Sparse Matrix accessing exception -- out of bounds.");
}

/// Which slot of row i has column j, or -1.
int SparseMatrix::FindSlot(int i, int j) const {
  const int inNode = j % blockSize;
  const int* const column = Columns(i);
  const int blocks = Length(i) / blockSize;
  for (int b = 0; b < blocks && column[b] >= 0; ++b)
    if (column[b] == j - inNode) return b * blockSize + inNode;
  return -1;
}

/// Which slot of row i has column j, the first unclaimed one when j is new; -1 when the row is
/// full.
int SparseMatrix::FindOrClaim(int i, int j) {
  if (const int k = FindSlot(i, j); k >= 0) return k;
  SplitBlocks();
  int* const column = Columns(i);
  for (int k = 0; k < Length(i); ++k) {
    if (column[k] >= 0) continue;
    column[k] = j;
    return k;
  }
  return -1;
}

void SparseMatrix::Add(int i, int j, double a) {
  CheckBounds(i, j);
  const int k = FindOrClaim(i, j);
  if (k < 0) Fatal("Wrong Row ", i, " definition: Row length ", Length(i));
  values[Place(i, k)] += a;
}

void SparseMatrix::AddBlock(int i, int j, const Matriu& M) {
  if (M.nrows < 1 || M.ncols < 1) return;
  CheckBounds(i, j);
  CheckBounds(i + M.nrows - 1, j + M.ncols - 1);
  if (blockSize == 3 && IsWholeBlocks<3>(i, j, M)) return AddNodeBlocks<3>(i, j, M);
  if (blockSize == 6 && IsWholeBlocks<6>(i, j, M)) return AddNodeBlocks<6>(i, j, M);
  for (int r = 0; r < M.nrows; ++r) {
    for (int c = 0; c < M.ncols; ++c) {
      Add(i + r, j + c, M(r + 1, c + 1));
      if (i != j) Add(j + c, i + r, M(r + 1, c + 1));
    }
  }
}

/// Adds M block by block, and to the mirrored place. Both places are found before either is
/// written to, so that their cache misses overlap.
template <int B>
void SparseMatrix::AddNodeBlocks(int i, int j, const Matriu& M) {
  for (int r = 0; r < M.nrows; r += B) {
    for (int c = 0; c < M.ncols; c += B) {
      const double* const block = M.data.get() + r * M.ncols + c;
      double* const upper = NodeBlock<B>(i + r, j + c);
      double* const lower = i == j ? nullptr : NodeBlock<B>(j + c, i + r);
      AddColumns<B>(block, M.ncols, 1, upper);
      if (lower != nullptr) AddColumns<B>(block, 1, M.ncols, lower);
    }
  }
}

/// The values of the node block at (firstRow, firstCol), column after column; claimed when it is
/// new.
template <int B>
double* SparseMatrix::NodeBlock(int firstRow, int firstCol) {
  const int start = rowStart[firstRow];
  int* const columns = colIndex.data() + start / (B * B);
  const int b = FindOrClaimBlock(columns, (rowStart[firstRow + 1] - start) / B, firstCol);
  if (b < 0) Fatal("Wrong Row ", firstRow, " definition: Row length ", Length(firstRow));
  return values.data() + start + b * (B * B);
}

/// Every slot gets a column number of its own, and the rows of a node part.
void SparseMatrix::SplitBlocks() {
  if (blockSize == 1) return;
  LargeVector<double> splitValues(values.size(), 0.0);
  std::vector<int> splitColumns(nnz);
  for (int i = 0; i < rows; ++i) {
    for (int k = 0; k < Length(i); ++k) {
      splitValues[rowStart[i] + k] = values[Place(i, k)];
      splitColumns[rowStart[i] + k] = ColumnOf(i, k);
    }
  }
  values = std::move(splitValues);
  colIndex = std::move(splitColumns);
  blockSize = 1;
}

void SparseMatrix::SetDiagonal(int i) {
  CheckBounds(i, i);
  const int k = FindOrClaim(i, i);
  if (k < 0) Fatal("Wrong Row ", i, " boundary condition");
  values[Place(i, k)] = 1.0;
}

void SparseMatrix::ReplaceByUnitRow(int i) {
  CheckBounds(i, i);
  for (int k = 0; k < Length(i); ++k) {
    const int column = ColumnOf(i, k);
    values[Place(i, k)] = column == i || column < 0 ? 1.0 : 0.0;
  }
}

double SparseMatrix::RowTimesVector(int i, const double* x) const {
  double sum = 0.0;
  ForEachEntry(i, [&](int column, double value) { sum += value * x[column]; });
  return sum;
}

double SparseMatrix::Read(int i, int j) const {
  CheckBounds(i, j);
  const int k = FindSlot(i, j);
  return k < 0 ? 0.0 : values[Place(i, k)];
}

double& SparseMatrix::Reference(int i, int j) {
  CheckBounds(i, j);
  const int k = FindSlot(i, j);
  if (k < 0)
    Fatal("Sparse Matrix element (", i, ",", j, ") not in sparse structure -- cannot assign.");
  return values[Place(i, k)];
}

void SparseMatrix::Print(std::ostream& stream) const {
  for (int i = 0; i < rows; ++i) {
    const char* separator = "";
    ForEachEntry(i, [&](int column, double value) {
      stream << separator << "(" << i << "," << column << ")=" << value;
      separator = "    ";
    });
    stream << "\n";
  }
}

int SparseMatrix::UnitSlot(int i) const {
  const int blocks = Length(i) / blockSize;
  const int* const column = Columns(i);
  if (blocks == 0 || column[blocks - 1] >= 0) return -1;  // no slot is left unclaimed
  const auto claimed = static_cast<int>(std::find(column, column + blocks, -1) - column);
  const int k = claimed * blockSize;
  return values[Place(i, k)] != 0.0 && FindSlot(i, i) < 0 ? k : -1;
}

double SparseMatrix::Diagonal(int i) const {
  const int own = FindSlot(i, i);
  const int k = own >= 0 ? own : UnitSlot(i);
  return k < 0 ? 0.0 : values[Place(i, k)];
}

}  // namespace kestol
