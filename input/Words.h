#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "input/TextInput.h"

namespace kestol {

// The lexical layer of the deck: characters, words, numbers, lines. White space is blank, tab,
// carriage return, newline, vertical tab and form feed everywhere.

inline bool IsSpace(int c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

/// `word` with the letters A-Z made small.
std::string LowerCase(std::string_view word);

/// Skips white space, ':' and '=', and comments from '#' to the line end: what may stand before a
/// record of a list.
void SkipToRecord(TextInput& input);

/// Skips white space; what follows is a word or the end of the text.
void SkipSpace(TextInput& input);

/// Skips white space and takes the next word; empty at the end of the text.
std::string ReadWord(TextInput& input);

/// Skips white space and takes an integer: an optional sign directly followed by a digit. Anything
/// else takes nothing (besides the white space) and gives none. A value that does not fit 32 bits
/// ends the run with "error: number out of range in input file\n".
std::optional<int> ReadInteger(TextInput& input);

/// Skips white space and takes the longest decimal number as strtod reads it; none, with nothing
/// taken, when there is no number. May give infinities and NaN.
std::optional<double> ReadReal(TextInput& input);

/// Takes the rest of the line, the '\n' included in what is taken but not in what is given; a
/// trailing '\r' is dropped. None when the text had already ended. Valid until the next call on
/// `input`.
std::optional<std::string_view> ReadRestOfLine(TextInput& input);

/// Drops the rest of the line, '\n' included; false when the text had already ended.
bool SkipRestOfLine(TextInput& input);

/// Takes words until one that, in lower case, contains `word`; at the end of the text refuses with
/// "can't find word ***word*** in input file\n".
void FindWord(TextInput& input, std::string_view word);

/// The same for a word that, in lower case, equals `word`.
void FindWordExactly(TextInput& input, std::string_view word);

// --- pieces of a line -------------------------------------------------------------------------
// Each takes what it reads off the front of `text`, after leading white space, and gives none (or
// false) with `text` unchanged when it cannot.

/// A number as strtod reads it.
std::optional<double> TakeReal(std::string_view& text);

/// `count` finite numbers into `values`; false when there are fewer, or one that is not finite.
/// What was taken before the failure stays taken.
bool TakeReals(std::string_view& text, double* values, int count);

/// One decimal digit.
std::optional<int> TakeDigit(std::string_view& text);

/// The longest leading integer of the text as "%i" reads it (0x: hexadecimal, 0: octal); 0 for
/// text that is not a number. Out of 32 bits is fatal as in ReadInteger.
int IntegerOf(std::string_view text);

/// `text` behind the white space, ':' and '=' at its front.
std::string_view BehindSigns(std::string_view text);

/// A token of a key and value list: the next run of characters other than white space (and other
/// than ':' and '=' for keys); empty at the end of the text.
std::string_view TakeKey(std::string_view& text);
std::string_view TakeValue(std::string_view& text);

/// The number that a value holds: the longest leading number, 0 without one.
double RealOf(std::string_view value);

/// Whether `word` begins with `prefix`, to the letter.
inline bool StartsWith(std::string_view word, std::string_view prefix) {
  return word.substr(0, prefix.size()) == prefix;
}
/// The same in any case.
bool StartsWithAnyCase(std::string_view word, std::string_view prefix);

}  // namespace kestol
