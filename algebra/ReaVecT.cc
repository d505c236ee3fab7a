#include "algebra/ReaVecT.h"

#include <cstdint>
#include <limits>
#include <new>
#include <utility>

#include "algebra/Matriu.h"
#include "algebra/ReaVec3.h"
#include "main/ErrorChannel.h"

namespace kestol {

namespace {

/// Null for an empty vector.
std::unique_ptr<double[]> NewEntries(int length) {
  if (length < 0) RefuseVectorSize(length);
  if (length == 0) return nullptr;
  return std::make_unique<double[]>(length);
}

int LengthOfColumn(const Matriu& M) {
  if (M.ncols != 1) Fatal("error: Assigning Vector=Matrix where M(num cols)=", M.ncols, "\n");
  return M.nrows;
}

}  // namespace

ReaVecT::ReaVecT(int length) : n(length), data(NewEntries(length)) {}

ReaVecT::ReaVecT(const ReaVecT& other) {
  Assign(other.data.get(), other.n);
}

ReaVecT& ReaVecT::operator=(const ReaVecT& other) {
  if (this != &other) Assign(other.data.get(), other.n);
  return *this;
}

ReaVecT::ReaVecT(ReaVecT&& other) noexcept
    : n(std::exchange(other.n, 0)), data(std::move(other.data)) {}

ReaVecT& ReaVecT::operator=(ReaVecT&& other) noexcept {
  if (this != &other) {
    n = std::exchange(other.n, 0);
    data = std::move(other.data);
  }
  return *this;
}

ReaVecT::ReaVecT(const ReaVec3& v) {
  Assign(v.data, v.n);
}

ReaVecT& ReaVecT::operator=(const ReaVec3& v) {
  Assign(v.data, v.n);
  return *this;
}

ReaVecT::ReaVecT(const Matriu& M) {
  *this = M;
}

ReaVecT::ReaVecT(Matriu&& M) {
  *this = std::move(M);
}

ReaVecT& ReaVecT::operator=(const Matriu& M) {
  Assign(M.data.get(), LengthOfColumn(M));
  return *this;
}

ReaVecT& ReaVecT::operator=(Matriu&& M) {
  n = LengthOfColumn(M);
  Matriu column = std::move(M);  // leaves the source 0 x 0
  data = std::move(column.data);
  return *this;
}

void ReaVecT::Resize(int newLength, double value) {
  if (newLength == n) return;
  std::unique_ptr<double[]> resized = NewEntries(newLength);
  const int kept = std::min(n, newLength);
  std::copy_n(data.get(), kept, resized.get());
  std::fill_n(resized.get() + kept, newLength - kept, value);
  data = std::move(resized);
  n = newLength;
}

void ReaVecT::Fill(double value) {
  FillEntries(data.get(), n, value);
}

void ReaVecT::SetRange(double value, int start, int count) {
  const Range range = RangeOf(start, count);
  std::fill_n(data.get() + range.first, range.count, value);
}

ReaVecT ReaVecT::SubVector(int start, int count) const {
  const Range range = RangeOf(start, count);
  ReaVecT part;
  part.Assign(data.get() + range.first, range.count);
  return part;
}

void ReaVecT::Reverse() {
  std::reverse(begin(), end());
}

int ReaVecT::Find(double value) const {
  const double* const found = std::find(begin(), end(), value);
  return found == end() ? 0 : static_cast<int>(found - begin()) + 1;
}

bool ReaVecT::AllEqual(double value) const {
  return std::all_of(begin(), end(), [value](double entry) { return entry == value; });
}

ReaVecT::Range ReaVecT::RangeOf(int start, int count) const {
  const std::int64_t first = start > 0 ? start - std::int64_t{1} : std::int64_t{start} + n;
  const std::int64_t last = count == 0 ? n - std::int64_t{1} : first + count - 1;
  if (first > last || first < 0 || count < 0 || last >= n) Fatal("Index ", last, " out of range.");
  return {static_cast<int>(first), static_cast<int>(last - first + 1)};
}

void ReaVecT::Assign(const double* entries, int length) {
  if (n != length) data = NewEntries(length);
  n = length;
  std::copy_n(entries, length, data.get());
}

int JointLength(const ReaVecT& a, const ReaVecT& b) {
  const std::int64_t length = std::int64_t{a.n} + b.n;
  if (length > std::numeric_limits<int>::max()) throw std::bad_alloc();
  return static_cast<int>(length);
}

ReaVecT Concatenate(const ReaVecT& a, const ReaVecT& b) {
  ReaVecT both(JointLength(a, b));
  std::copy(b.begin(), b.end(), std::copy(a.begin(), a.end(), both.begin()));
  return both;
}

}  // namespace kestol
