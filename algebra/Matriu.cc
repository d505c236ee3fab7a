#include "algebra/Matriu.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "main/ErrorChannel.h"

Matriu::Matriu(int rows, int columns) {
  if (rows < 0 || columns < 0) Fatal("Can't create a Matriu of size ", rows, ",", columns);
  Redimension(rows, columns);
}

Matriu::Matriu(const Matriu& other) {
  *this = other;
}

Matriu& Matriu::operator=(const Matriu& other) {
  if (this == &other) return *this;
  Redimension(other.nrows, other.ncols);
  std::copy_n(other.data.get(), size, data.get());
  return *this;
}

Matriu::Matriu(Matriu&& other) noexcept
    : nrows(std::exchange(other.nrows, 0)),
      ncols(std::exchange(other.ncols, 0)),
      size(std::exchange(other.size, 0u)),
      data(std::move(other.data)) {}

Matriu& Matriu::operator=(Matriu&& other) noexcept {
  if (this == &other) return *this;
  nrows = std::exchange(other.nrows, 0);
  ncols = std::exchange(other.ncols, 0);
  size = std::exchange(other.size, 0u);
  data = std::move(other.data);
  return *this;
}

void Matriu::Redimension(int rows, int columns) {
  if (rows < 0 || columns < 0) Fatal("Can't redimension to a negative values");
  const std::int64_t entries = std::int64_t{rows} * columns;
  if (entries > UINT32_MAX) HeapExhausted();
  if (entries != size) data = entries > 0 ? std::make_unique<double[]>(entries) : nullptr;
  size = static_cast<unsigned>(entries);
  nrows = rows;
  ncols = columns;
}

void Matriu::Fill(double value) {
  if (size == 0) Fatal("Can't fill with ", value, " a zero size Matriu");
  std::fill_n(data.get(), size, value);
}
