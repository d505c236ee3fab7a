#include "algebra/ReaVecT.h"

#include <algorithm>
#include <utility>

#include "main/ErrorChannel.h"

ReaVecT::ReaVecT(int length) {
  if (length < 0) Fatal("Can't create a vector of size ", length);
  Resize(length, 0.0);
}

ReaVecT::ReaVecT(const ReaVecT& other) {
  *this = other;
}

ReaVecT& ReaVecT::operator=(const ReaVecT& other) {
  if (this == &other) return *this;
  if (n != other.n) {
    data = other.n > 0 ? std::make_unique<double[]>(other.n) : nullptr;
    n = other.n;
  }
  std::copy(other.begin(), other.end(), begin());
  return *this;
}

ReaVecT::ReaVecT(ReaVecT&& other) noexcept
    : n(std::exchange(other.n, 0)), data(std::move(other.data)) {}

ReaVecT& ReaVecT::operator=(ReaVecT&& other) noexcept {
  if (this == &other) return *this;
  n = std::exchange(other.n, 0);
  data = std::move(other.data);
  return *this;
}

void ReaVecT::Resize(int newLength, double value) {
  if (newLength < 0) Fatal("Can't create a vector of size ", newLength);
  if (newLength == n) return;
  std::unique_ptr<double[]> fresh = newLength > 0 ? std::make_unique<double[]>(newLength) : nullptr;
  const int kept = std::min(n, newLength);
  std::copy_n(data.get(), kept, fresh.get());
  std::fill(fresh.get() + kept, fresh.get() + newLength, value);
  data = std::move(fresh);
  n = newLength;
}

void ReaVecT::Fill(double value) {
  if (n == 0) Fatal("Can't fill with ", value, " a zero lenght vector.");
  std::fill(begin(), end(), value);
}
