#include "algebra/Matriu.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

#include "algebra/ReaVec3.h"
#include "algebra/ReaVecT.h"
#include "main/ErrorChannel.h"

namespace {

// rows * columns, neither negative; a product beyond the field counts as an exhausted heap.
unsigned EntryCount(int rows, int columns) {
  const std::int64_t count = std::int64_t{rows} * columns;
  if (count > std::numeric_limits<unsigned>::max()) HeapExhausted();
  return static_cast<unsigned>(count);
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

void Matriu::Assign(const double* entries, int rows, int columns) {
  Redimension(rows, columns);
  std::copy_n(entries, size, data.get());
}
