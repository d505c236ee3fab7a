#pragma once

#include <span>
#include <string_view>

namespace kestol {

/// How many letters apart two words are, in any case: letters changed, left out, put in, or two
/// neighbours exchanged.
int LettersApart(std::string_view a, std::string_view b);

/// The word that was probably meant by `written`: the nearest one, at most `apart` letters away and
/// sharing more letters with it than not, of two letters one. Empty when there is none.
std::string_view NearestWord(std::string_view written, std::span<const std::string_view> words,
                             int apart = 2);

}  // namespace kestol
