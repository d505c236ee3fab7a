#pragma once

namespace kestol {

/// Lengths, areas, volumes, jacobians, material values and pivots below this count as zero. The
/// test is absolute. Refusals are written `!(x >= kZero)`, so that a NaN is refused as well.
constexpr double kZero = 1e-15;

/// Pivots of the small dense solves below this count as zero.
constexpr double kSmallSolvePivot = 1e-30;

}  // namespace kestol
