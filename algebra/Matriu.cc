#include "algebra/Matriu.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <new>
#include <utility>

#include "algebra/MatriuRefusals.h"
#include "algebra/ReaVec3.h"
#include "algebra/ReaVecT.h"
#include "main/ErrorChannel.h"

namespace kestol {

namespace {

/// rows * columns, neither negative; a product beyond the field counts as an exhausted heap.
unsigned EntryCount(int rows, int columns) {
  const std::int64_t count = std::int64_t{rows} * columns;
  if (count > std::numeric_limits<unsigned>::max()) throw std::bad_alloc();
  return static_cast<unsigned>(count);
}

/// Rows or columns that hold `count` more behind the first `before`, and not less than `present`.
int GrownTo(int present, int before, int count) {
  const std::int64_t last = std::int64_t{before} + count;
  if (last > std::numeric_limits<int>::max()) throw std::bad_alloc();
  return std::max(present, static_cast<int>(last));
}

/// Copies all of `block` into M, its first entry to (row, col).
void CopyBlock(const Matriu& block, int row, int col, Matriu& M) {
  for (int i = 1; i <= block.nrows; ++i)
    std::copy_n(&block.data[std::size_t(i - 1) * block.ncols], block.ncols, &M(row + i - 1, col));
}

void RefuseToConcatenate(const Matriu& A, const Matriu& B) {
  if (A.size == 0 || B.size == 0) Fatal("Can't concatenate a zero size Matriu");
}

}  // namespace

Matriu::Matriu(int rows, int columns) {
  if (rows < 0 || columns < 0) Fatal("Can't create a Matriu of size ", rows, ",", columns);
  Redimension(rows, columns);
}

Matriu::Matriu(const Matriu& other) {
  Assign(other.data.get(), other.nrows, other.ncols);
}

Matriu& Matriu::operator=(const Matriu& other) {
  if (this != &other) Assign(other.data.get(), other.nrows, other.ncols);
  return *this;
}

Matriu::Matriu(Matriu&& other) noexcept
    : nrows(std::exchange(other.nrows, 0)),
      ncols(std::exchange(other.ncols, 0)),
      size(std::exchange(other.size, 0)),
      data(std::move(other.data)) {}

Matriu& Matriu::operator=(Matriu&& other) noexcept {
  if (this != &other) {
    nrows = std::exchange(other.nrows, 0);
    ncols = std::exchange(other.ncols, 0);
    size = std::exchange(other.size, 0);
    data = std::move(other.data);
  }
  return *this;
}

Matriu::Matriu(const ReaVecT& column) {
  *this = column;
}

Matriu::Matriu(const ReaVec3& column) {
  *this = column;
}

Matriu& Matriu::operator=(const ReaVecT& column) {
  Assign(column.begin(), column.n, 1);
  return *this;
}

Matriu& Matriu::operator=(const ReaVec3& column) {
  Assign(column.begin(), column.n, 1);
  return *this;
}

void Matriu::Fill(double value) {
  if (size == 0) Fatal("Can't fill with ", value, " a zero size Matriu");
  std::fill(begin(), end(), value);
}

void Matriu::Redimension(int rows, int columns) {
  if (rows < 0 || columns < 0) Fatal("Can't redimension to a negative values");
  const unsigned newSize = EntryCount(rows, columns);
  if (newSize != size) data = newSize == 0 ? nullptr : std::make_unique<double[]>(newSize);
  nrows = rows;
  ncols = columns;
  size = newSize;
}

bool Matriu::IsZero() const {
  return size != 0 && std::all_of(begin(), end(), [](double entry) { return entry == 0.0; });
}

Matriu Matriu::Identity(int n) {
  if (n < 1) Fatal("Can't construct an identity Matriu of size ", n);
  Matriu identity(n, n);
  for (int i = 1; i <= n; ++i) identity(i, i) = 1.0;
  return identity;
}

Matriu Matriu::subMatriu(int rowStart, int rowEnd, int colStart, int colEnd) const {
  if (rowStart < 1 || colStart < 1 || rowEnd > nrows || colEnd > ncols || rowStart > rowEnd ||
      colStart > colEnd)
    Fatal("subMatriu incorrect size :\n\tMatriu size nrows=", nrows, ", ncols=", ncols,
          "\n\tsubMatriu start: row=", rowStart, ", col=", colStart, ", end: row=", rowEnd,
          ", col=", colEnd);
  Matriu part(rowEnd - rowStart + 1, colEnd - colStart + 1);
  for (int i = 1; i <= part.nrows; ++i)
    std::copy_n(&data[PlaceOf(rowStart + i - 1, colStart)], part.ncols, &part(i, 1));
  return part;
}

void Matriu::PlaceBlock(int row, int col, const Matriu& block) {
  if (row < 1 || col < 1) Fatal("Can't place a block at row=", row, ", col=", col);
  if (block.size == 0) return;
  if (&block == this) return PlaceBlock(row, col, Matriu(block));
  const int rows = GrownTo(nrows, row - 1, block.nrows);
  const int columns = GrownTo(ncols, col - 1, block.ncols);
  if (rows != nrows || columns != ncols) {
    const Matriu old = std::exchange(*this, Matriu(rows, columns));
    if (old.size != 0) CopyBlock(old, 1, 1, *this);
  }
  CopyBlock(block, row, col, *this);
}

void Matriu::Assign(const double* entries, int rows, int columns) {
  Redimension(rows, columns);
  std::copy_n(entries, size, data.get());
}

Matriu Transpose(const Matriu& A) {
  Matriu transpose(A.ncols, A.nrows);
  for (int i = 1; i <= A.nrows; ++i)
    for (int j = 1; j <= A.ncols; ++j) transpose(j, i) = A(i, j);
  return transpose;
}

Matriu HorizontalConcatenation(const Matriu& A, const Matriu& B) {
  RefuseToConcatenate(A, B);
  if (A.nrows != B.nrows)
    RefuseShapes("Horizontal concatenation with diferent number of rows\n", A, B);
  Matriu both(A.nrows, GrownTo(0, A.ncols, B.ncols));
  CopyBlock(A, 1, 1, both);
  CopyBlock(B, 1, A.ncols + 1, both);
  return both;
}

Matriu VerticalConcatenation(const Matriu& A, const Matriu& B) {
  RefuseToConcatenate(A, B);
  if (A.ncols != B.ncols)
    RefuseShapes("Vertical concatenation with diferent number of columns\n", A, B);
  Matriu both(GrownTo(0, A.nrows, B.nrows), A.ncols);
  CopyBlock(A, 1, 1, both);
  CopyBlock(B, A.nrows + 1, 1, both);
  return both;
}

}  // namespace kestol
