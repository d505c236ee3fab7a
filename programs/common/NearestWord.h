#pragma once

#include <span>
#include <string_view>

namespace kestol {

/// The known word that a mistyped one may have meant: the one with the fewest letters to add, drop,
/// change or exchange, in any case; empty when all are further away than a third of the letters (at
/// least one) or have no letter in common.
std::string_view NearestWord(std::string_view word, std::span<const std::string_view> known);

}  // namespace kestol
