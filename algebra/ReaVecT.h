#pragma once

#include <cassert>
#include <memory>

#include "algebra/VectorOperations.h"

namespace kestol {

class Matriu;

/// Vector of `n` doubles on the heap: right-hand sides, solutions, result arrays. Positions are
/// counted from 1; position 0 means "none". Arithmetic, products, reductions and text:
/// VectorOperations.h; matrix times vector: Matriu.h.
class ReaVecT {
public:
  ReaVecT() = default;

  /// `length` zeros; refuses a negative length.
  explicit ReaVecT(int length);

  /// Copies; the assignment keeps its buffer when the lengths agree.
  ReaVecT(const ReaVecT& other);
  ReaVecT& operator=(const ReaVecT& other);

  /// Takes the buffer over and leaves `other` empty.
  ReaVecT(ReaVecT&& other) noexcept;
  ReaVecT& operator=(ReaVecT&& other) noexcept;

  explicit ReaVecT(const ReaVec3& v);
  ReaVecT& operator=(const ReaVec3& v);

  /// The one column of a matrix; refuses any other number of columns. The buffer of a temporary
  /// matrix is taken over.
  explicit ReaVecT(const Matriu& M);
  explicit ReaVecT(Matriu&& M);
  ReaVecT& operator=(const Matriu& M);
  ReaVecT& operator=(Matriu&& M);

  double& operator()(int i) {
    assert(1 <= i && i <= n);
    return data[i - 1];
  }
  double operator()(int i) const {
    assert(1 <= i && i <= n);
    return data[i - 1];
  }
  double* begin() { return data.get(); }
  double* end() { return data.get() + n; }
  const double* begin() const { return data.get(); }
  const double* end() const { return data.get() + n; }

  /// Keeps the first min(n, newLength) entries and sets those added to `value`; length 0 frees the
  /// buffer, an unchanged one keeps it. Refuses a negative length.
  void Resize(int newLength, double value);

  /// Sets every entry; refuses an empty vector.
  void Fill(double value);

  /// Sets `count` entries from `start` on. A negative `start` counts from the end (-1 is the last
  /// entry), a `count` of 0 reaches to the end. Refuses what does not lie inside the vector.
  void SetRange(double value, int start, int count);

  /// A new vector of the `count` entries from `start` on; the range as for SetRange.
  ReaVecT SubVector(int start, int count) const;

  /// First entry swapped with the last, and so on, in place.
  void Reverse();

  /// Position of the first entry equal to `value`, or 0.
  int Find(double value) const;

  /// Every entry equals `value`; true for an empty vector.
  bool AllEqual(double value) const;

  /// Calls function(double&) on every entry in order.
  template <std::invocable<double&> Function>
  void Apply(Function function) {
    for (double& entry : *this) function(entry);
  }

  int n = 0;                       ///< length
  std::unique_ptr<double[]> data;  ///< n entries; null when n is 0

private:
  struct Range {
    int first, count;  ///< first place, from 0
  };
  Range RangeOf(int start, int count) const;
  void Assign(const double* entries, int length);
};

/// The length of a and b together; beyond the field the heap counts as exhausted.
int JointLength(const ReaVecT& a, const ReaVecT& b);

/// a's entries, then b's.
ReaVecT Concatenate(const ReaVecT& a, const ReaVecT& b);

/// function(a_i, b_i) for each i up to the shorter length.
template <std::invocable<double, double> Function>
ReaVecT Combine(Function function, const ReaVecT& a, const ReaVecT& b) {
  ReaVecT combined(std::min(a.n, b.n));
  std::transform(a.begin(), a.begin() + combined.n, b.begin(), combined.begin(), function);
  return combined;
}

/// The entries of two sorted vectors in order. `compare(a_i, b_j)` below 1 takes the entry of a
/// first.
template <std::invocable<double, double> Compare>
ReaVecT Merge(const ReaVecT& a, const ReaVecT& b, Compare compare) {
  ReaVecT merged(JointLength(a, b));
  const double* fromA = a.begin();
  const double* fromB = b.begin();
  double* place = merged.begin();
  while (fromA != a.end() && fromB != b.end())
    *place++ = compare(*fromA, *fromB) < 1 ? *fromA++ : *fromB++;
  std::copy(fromB, b.end(), std::copy(fromA, a.end(), place));
  return merged;
}

}  // namespace kestol
