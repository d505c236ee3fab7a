#pragma once

#include <string_view>

namespace kestol {

/// The page docs/check-codes.md as text: a heading "## CODE" and its paragraphs per code.
std::string_view CodesPage();

}  // namespace kestol
