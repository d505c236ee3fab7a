#include "algebra/ReaVec3.h"

#include "algebra/ReaVecT.h"

namespace kestol {

ReaVec3::ReaVec3(const ReaVecT& v) : n(v.n) {
  if (v.n > 3) RequireEqualLengths(3, v.n);
  std::copy(v.begin(), v.end(), data);
}

double DistanceSquared(const ReaVec3& a, const ReaVec3& b) {
  return SumSquare(a - b);
}

}  // namespace kestol
