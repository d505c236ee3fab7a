#pragma once

#include <string_view>

namespace kestol {

// The page as the build embeds it: what stands before its data, and what stands behind.
std::string_view PageHead();
std::string_view PageTail();

}  // namespace kestol
