#pragma once

#include <span>

#include "algebra/ReaVecT.h"

namespace kestol {

/// a . b of vectors of one length; the order of the sum is not that of the entries.
double DotOf(const ReaVecT& a, const ReaVecT& b);

double LengthOf(const ReaVecT& x);

/// y := y + factor x.
void AddTo(ReaVecT& y, double factor, const ReaVecT& x);

/// Takes from x its components along the orthonormal vectors of `basis`, one after the other.
void TakeOut(ReaVecT& x, std::span<const ReaVecT> basis);

}  // namespace kestol
