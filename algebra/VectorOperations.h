#pragma once

#include <algorithm>
#include <cmath>
#include <concepts>
#include <functional>
#include <iosfwd>
#include <numeric>

namespace kestol {

class ReaVec3;
class ReaVecT;

/// The operations that both vector types have, written once. A new vector is of the type of its
/// operands; the two types do not mix. Refusals end the run.
template <class V>
concept RealVector = std::same_as<V, ReaVec3> || std::same_as<V, ReaVecT>;

// --- bodies behind the templates -----------------------------------------------------------------

/// Refuses na != nb: "Different lenght vectors na != nb".
void RequireEqualLengths(int na, int nb);
[[noreturn]] void RefuseDivisionByZero();
[[noreturn]] void RefuseVectorProd();
[[noreturn]] void RefuseVectorSize(int length);
void FillEntries(double* entries, int n, double value);
void PrintEntries(std::ostream& stream, const double* entries, int n);
void ReadEntries(std::istream& stream, double* entries, int n);

/// a_i = operation(a_i, b_i); refuses different lengths.
template <RealVector V, class Operation>
V& EachPair(V& a, const V& b, Operation operation) {
  RequireEqualLengths(a.n, b.n);
  std::transform(a.begin(), a.end(), b.begin(), a.begin(), operation);
  return a;
}

/// v_i = operation(v_i).
template <RealVector V, class Operation>
V& EachEntry(V& v, Operation operation) {
  std::transform(v.begin(), v.end(), v.begin(), operation);
  return v;
}

// --- entry by entry; two vectors of different lengths are refused --------------------------------

template <RealVector V>
V& operator+=(V& a, const V& b) {
  return EachPair(a, b, std::plus<double>());
}
template <RealVector V>
V& operator-=(V& a, const V& b) {
  return EachPair(a, b, std::minus<double>());
}
template <RealVector V>
V& operator*=(V& a, const V& b) {
  return EachPair(a, b, std::multiplies<double>());
}
template <RealVector V>
V& operator/=(V& a, const V& b) {
  return EachPair(a, b, std::divides<double>());
}

template <RealVector V>
V& operator+=(V& v, double s) {
  return EachEntry(v, [s](double entry) { return entry + s; });
}
template <RealVector V>
V& operator-=(V& v, double s) {
  return EachEntry(v, [s](double entry) { return entry - s; });
}
template <RealVector V>
V& operator*=(V& v, double s) {
  return EachEntry(v, [s](double entry) { return entry * s; });
}
/// Refuses s = 0.0: "Division by zero.".
template <RealVector V>
V& operator/=(V& v, double s) {
  if (s == 0.0) RefuseDivisionByZero();
  return EachEntry(v, [s](double entry) { return entry / s; });
}

// The left operand comes by value: of a temporary the buffer is taken over.
template <RealVector V>
V operator+(V a, const V& b) {
  a += b;
  return a;
}
template <RealVector V>
V operator-(V a, const V& b) {
  a -= b;
  return a;
}
template <RealVector V>
V operator*(V a, const V& b) {
  a *= b;
  return a;
}
template <RealVector V>
V operator/(V a, const V& b) {
  a /= b;
  return a;
}

template <RealVector V>
V operator+(V v, double s) {
  v += s;
  return v;
}
template <RealVector V>
V operator-(V v, double s) {
  v -= s;
  return v;
}
template <RealVector V>
V operator*(V v, double s) {
  v *= s;
  return v;
}
// Deliberate: only the division in place refuses zero; here it yields infinities.
template <RealVector V>
V operator/(V v, double s) {
  EachEntry(v, [s](double entry) { return entry / s; });
  return v;
}

/// Every entry times -1.0, in place.
template <RealVector V>
V& Negate(V& v) {
  return v *= -1.0;
}
template <RealVector V>
V operator-(V v) {
  Negate(v);
  return v;
}

/// Equal lengths and exactly equal entries.
template <RealVector V>
bool operator==(const V& a, const V& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end());
}

// --- products ------------------------------------------------------------------------------------

/// Sum of a_i b_i from i = 1; refuses different lengths.
template <RealVector V>
double Dot(const V& a, const V& b) {
  RequireEqualLengths(a.n, b.n);
  return std::inner_product(a.begin(), a.end(), b.begin(), 0.0);
}

/// a x b, always of three entries; the third entry of a vector of length 2 counts as 0.0. Refuses
/// other lengths.
template <RealVector V>
V VectorProd(const V& a, const V& b) {
  if (a.n < 2 || a.n > 3 || b.n < 2 || b.n > 3) RefuseVectorProd();
  const double a3 = a.n == 3 ? a(3) : 0.0;
  const double b3 = b.n == 3 ? b(3) : 0.0;
  V product(3);
  product(1) = a(2) * b3 - b(2) * a3;
  product(2) = a3 * b(1) - b3 * a(1);
  product(3) = a(1) * b(2) - b(1) * a(2);
  return product;
}

// --- reductions; 0.0 or position 0 for an empty vector -------------------------------------------

template <RealVector V>
double Sum(const V& v) {
  return std::accumulate(v.begin(), v.end(), 0.0);
}
template <RealVector V>
double SumSquare(const V& v) {
  return std::inner_product(v.begin(), v.end(), v.begin(), 0.0);
}
/// Square root of the sum of squares.
template <RealVector V>
double Norm(const V& v) {
  return std::sqrt(SumSquare(v));
}

/// Position, from 1, of the largest entry; of equal ones the first. A NaN never takes the place of
/// another entry.
template <RealVector V>
int MaximumPosition(const V& v) {
  return v.n == 0 ? 0 : static_cast<int>(std::max_element(v.begin(), v.end()) - v.begin()) + 1;
}
/// The same of the smallest entry.
template <RealVector V>
int MinimumPosition(const V& v) {
  return v.n == 0 ? 0 : static_cast<int>(std::min_element(v.begin(), v.end()) - v.begin()) + 1;
}
template <RealVector V>
double Maximum(const V& v) {
  return v.n == 0 ? 0.0 : v(MaximumPosition(v));
}
template <RealVector V>
double Minimum(const V& v) {
  return v.n == 0 ? 0.0 : v(MinimumPosition(v));
}

// --- text ----------------------------------------------------------------------------------------

/// Each entry as two blanks and the number in scientific notation, in a field of the stream's
/// precision plus its width plus 7; "\n\t(Zero size vector)\n" for an empty vector. Flushes;
/// leaves the stream's flags as they were.
template <RealVector V>
std::ostream& operator<<(std::ostream& stream, const V& v) {
  PrintEntries(stream, v.begin(), v.n);
  return stream;
}

/// Reads the n entries in order; refuses an empty vector.
template <RealVector V>
std::istream& operator>>(std::istream& stream, V& v) {
  ReadEntries(stream, v.begin(), v.n);
  return stream;
}

}  // namespace kestol
