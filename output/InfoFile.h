#pragma once

#include <ostream>

namespace kestol {

/// Writes one printf-style text to the information stream and flushes it, so that a long run can
/// be watched. Does nothing when `info` is null.
[[gnu::format(printf, 2, 3)]] void Progress(std::ostream* info, const char* format, ...);

}  // namespace kestol
